using System;
using System.Globalization;
using System.Threading;

public static class Plugin
{
    public static void Start()
    {
        Kest.Print(CultureInfo.CurrentCulture.Name + "|" + CultureInfo.CurrentUICulture.Name + "\n");
        Thread.CurrentThread.CurrentCulture = new CultureInfo("de-DE");
        Thread.CurrentThread.CurrentUICulture = new CultureInfo("tr-TR");
        Environment.CurrentDirectory = "/";
    }
}
