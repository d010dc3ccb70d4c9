public static class Plugin
{
    public static int Start()
    {
        return 1;
    }
}
