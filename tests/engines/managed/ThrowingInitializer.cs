using System;

public static class Plugin
{
    static Plugin()
    {
        throw new FormatException("bad table");
    }

    public static void Start()
    {
    }
}
