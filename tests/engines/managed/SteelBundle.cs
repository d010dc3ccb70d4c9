public static class Plugin
{
    public static void Start()
    {
        Kest.Print("the bundle has " + Steel.Grade + "\n");
    }
}
