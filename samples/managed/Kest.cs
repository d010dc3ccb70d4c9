// What a host offers to managed assemblies, declared for the compiler alone: an assembly is compiled against this one
// and, in the host, finds the host's own under the same name.
using System;

public static class Kest
{
    // Registers a command; letter case does not matter. False when the name is empty or taken.
    public static bool RegisterCommand(string name, Action command)
    {
        throw OnlyDeclared();
    }

    // Prints to the host's console as it stands; the caller supplies line ends.
    public static void Print(string text)
    {
        throw OnlyDeclared();
    }

    // The host's version text.
    public static string HostVersion()
    {
        throw OnlyDeclared();
    }

    static Exception OnlyDeclared()
    {
        return new PlatformNotSupportedException("this Kest.dll is for the compiler; the host has the real one");
    }
}
