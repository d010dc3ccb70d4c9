using System.Threading;

public static class Plugin
{
    public static void Start()
    {
        Thread.Sleep(1);
        Kest.Print("slept\n");
    }
}
