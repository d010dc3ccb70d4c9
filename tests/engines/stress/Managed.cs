// An assembly that is copied under many names: its command bears the name of its file.
using System;
using System.IO;
using System.Reflection;

public static class Plugin
{
    public static void Start()
    {
        string name = Path.GetFileNameWithoutExtension(Assembly.GetExecutingAssembly().Location);
        Kest.RegisterCommand(name, () => Kest.Print(name + " ran\n"));
        if (name.Contains("BAD"))
        {
            throw new InvalidOperationException(name);
        }
    }
}
