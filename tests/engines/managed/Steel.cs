#if LATER
[assembly: System.Reflection.AssemblyVersion("2.0.0.0")]
#else
[assembly: System.Reflection.AssemblyVersion("1.0.0.0")]
#endif

public static class Steel
{
    public static string Grade
    {
#if OTHER || LATER
        get { return "S355"; }
#else
        get { return "S235"; }
#endif
    }
}
