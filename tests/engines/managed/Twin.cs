public static class Plugin
{
    public static void Start()
    {
#if OTHER
        Kest.RegisterCommand("other", () => Kest.Print("the other\n"));
#else
        Kest.RegisterCommand("one", () => Kest.Print("the one\n"));
#endif
    }
}
