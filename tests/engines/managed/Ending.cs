public static class Plugin
{
    public static void Start()
    {
        Kest.RegisterCommand("never", () => Kest.Print("never\n"));
        System.Environment.Exit(3);
    }
}
