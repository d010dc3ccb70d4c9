public static class Plugin
{
    static string nothing;

    public static void Start()
    {
        Kest.Print(nothing.Trim());
    }
}
