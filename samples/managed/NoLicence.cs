// Cannot be loaded: its entry throws.
using System;

public static class Plugin
{
    public static void Start()
    {
        throw new InvalidOperationException("there is no licence for this assembly");
    }
}
