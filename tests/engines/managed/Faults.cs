using System;
using System.Runtime.CompilerServices;

// Each command ends in another way.
public static class Plugin
{
    static int zero;
    static string nothing;

    static class NeverReady
    {
        internal static readonly int Value = Compute();

        static int Compute()
        {
            throw new FormatException("bad table");
        }
    }

    class Mute : Exception
    {
        public override string Message
        {
            get { throw new Exception("mute"); }
        }
    }

    public static void Start()
    {
        Kest.RegisterCommand("divide", () => Kest.Print((7 / zero).ToString()));
        Kest.RegisterCommand("null", () => Kest.Print(nothing.Trim()));
        Kest.RegisterCommand("overflow", () => Deeper(1));
        Kest.RegisterCommand("initializer", () => Kest.Print(NeverReady.Value.ToString()));
        Kest.RegisterCommand("invoke", () => typeof(Plugin).GetMethod("Fail").Invoke(null, null));
        Kest.RegisterCommand("mute", () => { throw new Mute(); });
        Kest.RegisterCommand("abort", () => System.Threading.Thread.CurrentThread.Abort());
        Kest.RegisterCommand("exit", () => Environment.Exit(3));
        Kest.RegisterCommand("failfast", () => Environment.FailFast("disk on fire"));
        Kest.RegisterCommand("swallow", Swallow);
        Kest.RegisterCommand("fine", () => Kest.Print("fine\n"));
    }

    public static void Fail()
    {
        throw new ArgumentException("wrong scale");
    }

    static void Swallow()
    {
        try
        {
            Environment.Exit(0);
        }
        catch (Exception)
        {
            Kest.Print("swallowed\n");
        }
    }

    [MethodImpl(MethodImplOptions.NoInlining)]
    static int Deeper(int depth)
    {
        return Deeper(depth + 1) + 1;
    }
}
