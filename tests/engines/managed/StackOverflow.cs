using System.Runtime.CompilerServices;

public static class Plugin
{
    public static void Start()
    {
        Deeper(1);
    }

    [MethodImpl(MethodImplOptions.NoInlining)]
    static int Deeper(int depth)
    {
        return Deeper(depth + 1) + 1;
    }
}
