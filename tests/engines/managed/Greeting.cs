public static class Plugin
{
    static int starts;

    public static void Start()
    {
        ++starts;
        Kest.Print("start " + starts + " of " + typeof(Plugin).Assembly.Location + "\n");
        bool isNew = Kest.RegisterCommand("greet", () => Kest.Print("Hello, host " + Kest.HostVersion() + "\n"));
        Kest.Print("registered: " + isNew + "\n");
    }
}
