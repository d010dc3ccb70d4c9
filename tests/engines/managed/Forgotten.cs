using System;
using System.Collections.Generic;

// Registers a hundred commands at each start, and fails the first time. Tells how many objects live on of the commands
// that were registered two starts ago.
public static class Plugin
{
    static List<WeakReference> older = new List<WeakReference>();
    static List<WeakReference> last = new List<WeakReference>();
    static int starts;

    public static void Start()
    {
        GC.Collect();
        GC.WaitForPendingFinalizers();
        GC.Collect();
        int living = older.FindAll(reference => reference.IsAlive).Count;
        Kest.Print(older.Count + ", most are gone: " + (living < 10) + "\n");
        older = last;
        last = new List<WeakReference>();
        for (int i = 0; i < 100; ++i)
        {
            Register((starts == 0 ? "forgotten-" : "replaced-") + i);
        }
        if (++starts == 1)
        {
            throw new InvalidOperationException("first time");
        }
    }

    static void Register(string name)
    {
        var drawing = new object();
        last.Add(new WeakReference(drawing));
        Kest.RegisterCommand(name, () => Kest.Print(name + " " + (drawing != null) + "\n"));
    }
}
