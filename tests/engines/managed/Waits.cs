using System;
using System.Diagnostics;

// Starts a process that ends when its standard input does; the command CLOSE ends that, and WAIT waits for the process.
public static class Plugin
{
    static Process child;

    public static void Start()
    {
        child = Process.Start(new ProcessStartInfo("cat") { UseShellExecute = false, RedirectStandardInput = true });
        Kest.RegisterCommand("ID", () => Kest.Print(child.Id.ToString()));
        Kest.RegisterCommand("CLOSE", () => child.StandardInput.Close());
        Kest.RegisterCommand("WAIT", () => Kest.Print("ended: " + child.WaitForExit(60000)));
    }
}
