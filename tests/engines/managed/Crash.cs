using System.Runtime.InteropServices;

// A fault in native code: nobody can go on from there.
public static class Plugin
{
    [DllImport("libc")]
    static extern int strlen(System.IntPtr text);

    public static void Start()
    {
        Kest.Print(strlen(new System.IntPtr(1)).ToString());
    }
}
