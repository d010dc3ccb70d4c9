using System;
using System.Threading;

// Threads that fail, and one that never ends.
public static class Plugin
{
    static string nothing;
    static int finalized;

    class Dying
    {
        ~Dying()
        {
            Interlocked.Increment(ref finalized);
            nothing.Trim();
        }
    }

    public static void Start()
    {
        bool isRefused = false;
        RunAndWait(() => { throw new InvalidOperationException("alone"); });
        RunAndWait(() => nothing.Trim());
        RunAndWait(() => Environment.Exit(4));
        RunAndWait(() => Kest.Print("from a thread\n"));
        RunAndWait(() =>
        {
            try
            {
                Kest.RegisterCommand("elsewhere", () => { });
            }
            catch (InvalidOperationException exception)
            {
                Kest.Print(exception.Message + "\n");
                isRefused = true;
            }
        });
        RunAndWait(() => { for (int i = 0; i < 100; ++i) { new Dying(); } });
        GC.Collect();
        GC.WaitForPendingFinalizers();
        Kest.Print("finalized: " + (finalized > 0) + "\n");
        Kest.Print("refused: " + isRefused + "\n");
        new Thread(() => { for (;;) { Thread.Sleep(1); } }).Start();
    }

    static void RunAndWait(ThreadStart work)
    {
        var thread = new Thread(work);
        thread.Start();
        thread.Join();
    }
}
