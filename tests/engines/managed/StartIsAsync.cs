using System.Threading.Tasks;

public static class Plugin
{
    public static async void Start()
    {
        await Task.Yield();
    }
}
