// What the host offers to assemblies that it loads. An assembly refers to this one, "Kest", and does not bring it
// along. Its entry is the method "public static void Start()" of a public class named Plugin.
using System;
using KestEngine;

/// <summary>The host that has loaded the assembly.</summary>
public static class Kest
{
    /// <summary>Registers a command, on the host's thread. When the assembly is loaded again, it replaces its own
    /// commands.</summary>
    /// <param name="name">The command's name; letter case does not matter.</param>
    /// <param name="command">What the command does. An exception that leaves it is shown to the user.</param>
    /// <returns>Whether the host accepted it: the name is not empty and not another component's.</returns>
    /// <exception cref="ArgumentNullException">An argument is null.</exception>
    /// <exception cref="InvalidOperationException">The calling thread is one of the assembly's own.</exception>
    public static bool RegisterCommand(string name, Action command)
    {
        if (name == null)
        {
            throw new ArgumentNullException(nameof(name));
        }
        if (command == null)
        {
            throw new ArgumentNullException(nameof(command));
        }
        return Commands.Register(name, command);
    }

    /// <summary>Prints to the host's console as it stands; the caller supplies line ends. What other threads print
    /// appears when the host next runs something of an assembly.</summary>
    /// <param name="text">The text; null prints nothing.</param>
    public static void Print(string text)
    {
        if (!string.IsNullOrEmpty(text))
        {
            Native.Print(text);
        }
    }

    /// <summary>The host's version text.</summary>
    public static string HostVersion()
    {
        return Native.HostVersion();
    }
}
