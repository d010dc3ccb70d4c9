using System.Runtime.CompilerServices;

public static class Plugin
{
    public static void Start()
    {
        Endless(1);
    }

    [MethodImpl(MethodImplOptions.NoInlining)]
    static int Endless(int depth)
    {
        return Endless(depth + 1) + 1;
    }
}
