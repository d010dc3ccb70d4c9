// Loaded when the host starts: registers SHEETCHECK, which says whether the sheets of a drawing are numbered without gap.
public static class Plugin
{
    public static void Start()
    {
        Kest.RegisterCommand("SHEETCHECK", Check);
        Kest.Print("Revision list: ready on host version " + Kest.HostVersion() + "\n");
    }

    static void Check()
    {
        int[] sheets = { 1, 2, 3, 5, 6, 9 };
        for (int i = 1; i < sheets.Length; ++i)
        {
            for (int missing = sheets[i - 1] + 1; missing < sheets[i]; ++missing)
            {
                Kest.Print("sheet " + missing + " is missing\n");
            }
        }
    }
}
