namespace Rooms
{
    public class Plugin
    {
        public void Start()
        {
        }

        static void Start(int level)
        {
        }
    }
}
