// Nuts, for the assemblies of other bundles, which refer to this one. Dimensions in millimetres.
public static class Nuts
{
    public static readonly int[] Threads = { 6, 8, 10, 12, 16 };

    static readonly int[] Widths = { 10, 13, 16, 18, 24 };
    static readonly double[] Heights = { 5.2, 6.8, 8.4, 10.8, 14.8 };

    public static int WidthAcrossFlats(int thread)
    {
        return Widths[System.Array.IndexOf(Threads, thread)];
    }

    public static double Height(int thread)
    {
        return Heights[System.Array.IndexOf(Threads, thread)];
    }
}

public static class Plugin
{
    public static void Start()
    {
        Kest.Print("Standard parts: " + Nuts.Threads.Length + " nuts\n");
    }
}
