using System;

public static class Plugin
{
    public static void Start()
    {
        Kest.RegisterCommand("never", () => Kest.Print("never\n"));
        throw new InvalidOperationException("no licence\nfor this seat");
    }
}
