using System.Threading;

// Leaves an interruption of the host's thread behind.
public static class Plugin
{
    public static void Start()
    {
        Thread.CurrentThread.Interrupt();
    }
}
