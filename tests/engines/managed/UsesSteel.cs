public static class Plugin
{
    public static void Start()
    {
        Kest.Print("the user has " + Steel.Grade + "\n");
        Kest.RegisterCommand("grade", () => Kest.Print(Steel.Grade + "\n"));
    }
}
