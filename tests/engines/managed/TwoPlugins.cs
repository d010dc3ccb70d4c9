namespace Second
{
    public static class Plugin
    {
        public static void Start()
        {
        }
    }
}

namespace First
{
    public static class Plugin
    {
        public static void Start()
        {
        }
    }
}
