using System;

// A copy of the host's assembly that a bundle carries.
public static class Kest
{
    public static bool RegisterCommand(string name, Action command)
    {
        throw new NotSupportedException("the bundle's copy is in use");
    }

    public static void Print(string text)
    {
        throw new NotSupportedException("the bundle's copy is in use");
    }

    public static string HostVersion()
    {
        throw new NotSupportedException("the bundle's copy is in use");
    }
}
