// FAILMANAGED: an error in a command ends the command, not the host.
public static class Plugin
{
    static readonly string Nothing = null;

    public static void Start()
    {
        Kest.RegisterCommand("FAILMANAGED", Fail);
    }

    static void Fail()
    {
        Kest.Print("measuring nothing\n");
        Kest.Print(Nothing.Length + "\n");
    }
}
