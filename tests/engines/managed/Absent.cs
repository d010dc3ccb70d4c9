public static class Absent
{
    public static void Use()
    {
    }
}
