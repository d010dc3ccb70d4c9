using System.Diagnostics;
using System.IO;

// Starts a process that ends when the pipe "go" beside this assembly has been written; the command WAIT waits for it.
public static class Plugin
{
    static Process child;

    public static void Start()
    {
        string pipe = Path.Combine(Path.GetDirectoryName(typeof(Plugin).Assembly.Location), "go");
        child = Process.Start(new ProcessStartInfo("cat", pipe) { UseShellExecute = false, RedirectStandardOutput = true });
        Kest.RegisterCommand("WAIT", () => Kest.Print("ended: " + child.WaitForExit(60000)));
        Kest.Print(child.Id.ToString());
    }
}
