using System.Reflection;
using System.Runtime.CompilerServices;

namespace KestEngine
{
    // What the engine's C++ side does for this one.
    static class Native
    {
        [MethodImpl(MethodImplOptions.InternalCall)]
        internal static extern void Print(string text);

        [MethodImpl(MethodImplOptions.InternalCall)]
        internal static extern string HostVersion();

        [MethodImpl(MethodImplOptions.InternalCall)]
        internal static extern bool IsHostThread();

        // Makes `found` what `asking` gets for its reference of this index, if that is not decided yet.
        [MethodImpl(MethodImplOptions.InternalCall)]
        internal static extern void BindReference(Assembly asking, int index, Assembly found);

        // The folder of the framework's assemblies.
        [MethodImpl(MethodImplOptions.InternalCall)]
        internal static extern string FrameworkFolder();

        // Registers command `number` with the host.
        [MethodImpl(MethodImplOptions.InternalCall)]
        internal static extern bool RegisterCommand(string name, int number);
    }
}
