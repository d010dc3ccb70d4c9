// NUTS: the nuts that another bundle, StandardParts, knows. The class Nuts is in that bundle's assembly.
using System.Globalization;

public static class Plugin
{
    public static void Start()
    {
        Kest.RegisterCommand("NUTS", PrintNuts);
    }

    static void PrintNuts()
    {
        foreach (int thread in Nuts.Threads)
        {
            Kest.Print(string.Format(CultureInfo.InvariantCulture, "nut M{0}: {1} across flats, height {2}\n", thread,
                Nuts.WidthAcrossFlats(thread), Nuts.Height(thread)));
        }
    }
}
