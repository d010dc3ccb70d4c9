public static class Plugin
{
    public static void Start()
    {
        Absent.Use();
    }
}
