using System;

public static class Plugin
{
    public static void Start()
    {
        Kest.Print("empty: " + Kest.RegisterCommand("", () => { }) + "\n");
        Try(() => Kest.RegisterCommand(null, () => { }));
        Try(() => Kest.RegisterCommand("x", null));
        Kest.Print(null);
        Kest.Print("greet: " + Kest.RegisterCommand("GREET", () => Kest.Print("not mine\n")) + "\n");
    }

    static void Try(Action action)
    {
        try
        {
            action();
        }
        catch (ArgumentNullException exception)
        {
            Kest.Print("null: " + exception.ParamName + "\n");
        }
    }
}
