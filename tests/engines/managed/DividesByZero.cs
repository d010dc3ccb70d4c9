public static class Plugin
{
    static int zero;

    public static void Start()
    {
        Kest.Print((7 / zero).ToString());
    }
}
