namespace Maßstäbe
{
    public class Plugin
    {
        public static void Start()
        {
            Kest.Print(System.IO.Path.GetFileName(typeof(Plugin).Assembly.Location) + " 图纸 😀\n");
            Kest.RegisterCommand("标注", Beschriften);
        }

        static void Beschriften()
        {
            throw new System.Exception("Größe fehlt 😀");
        }
    }
}
