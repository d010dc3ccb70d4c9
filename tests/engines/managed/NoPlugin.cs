class Plugin
{
    public static void Start()
    {
    }
}

public class Outer
{
    public static class Plugin
    {
        public static void Start()
        {
        }
    }
}
