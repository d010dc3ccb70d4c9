// REVISIONS: prints the next revision letters of a drawing. I, O, Q, S, X and Z are left out: they are mistaken for
// digits or for each other.
using System.Collections.Generic;

public static class Plugin
{
    const string Letters = "ABCDEFGHJKLMNPRTUVWY";

    // Called once, when the assembly is loaded.
    public static void Start()
    {
        Kest.RegisterCommand("REVISIONS", PrintRevisions);
    }

    static void PrintRevisions()
    {
        Kest.Print("Revisions: " + string.Join(" ", Revisions(24)) + "\n");
    }

    // A, B, ... Y, AA, AB, ...: like counting, without a zero.
    static IEnumerable<string> Revisions(int count)
    {
        for (int number = 1; number <= count; ++number)
        {
            string name = "";
            for (int rest = number; rest > 0; rest = (rest - 1) / Letters.Length)
            {
                name = Letters[(rest - 1) % Letters.Length] + name;
            }
            yield return name;
        }
    }
}
