using System;
using System.Collections.Generic;
using System.IO;
using System.Reflection;

namespace KestEngine
{
    // Finds the assemblies that the host's ones refer to, where the runtime does not find them itself.
    static class Resolver
    {
        static readonly List<Assembly> known = new List<Assembly>(); // the last one loaded is the last

        // The simple name of the first assembly that was not found since this was null.
        internal static string Missing;

        internal static void Install()
        {
            AppDomain.CurrentDomain.AssemblyResolve += (sender, request) => Find(request);
        }

        // Takes in `assembly` and what stands in its folder of that to which it refers. The runtime would look among
        // all loaded assemblies first, and give every bundle the copy that the first bundle has brought.
        internal static void Remember(Assembly assembly)
        {
            lock (known)
            {
                if (known.Contains(assembly))
                {
                    return;
                }
                known.Add(assembly);
            }
            AssemblyName[] references = assembly.GetReferencedAssemblies();
            for (int i = 0; i < references.Length; ++i)
            {
                Assembly found = FindBeside(assembly, references[i].Name);
                if (found != null)
                {
                    Native.BindReference(assembly, i, found);
                }
            }
        }

        // First in the folder of the assembly that asks, then among what other bundles have brought.
        static Assembly Find(ResolveEventArgs request)
        {
            string name = new AssemblyName(request.Name).Name;
            if (name == "Kest")
            {
                return typeof(Kest).Assembly;
            }
            Assembly found = FindBeside(request.RequestingAssembly, name) ?? FindKnown(name);
            if (found == null && Missing == null && !name.EndsWith(".resources", StringComparison.Ordinal))
            {
                Missing = name;
            }
            return found;
        }

        // Null for a copy of what the framework or the host has: their types must be the same for all.
        static Assembly FindBeside(Assembly asking, string name)
        {
            if (asking == null || string.IsNullOrEmpty(asking.Location) || name == "Kest" ||
                File.Exists(Path.Combine(Native.FrameworkFolder(), name + ".dll")))
            {
                return null;
            }
            string path = Path.Combine(Path.GetDirectoryName(asking.Location), name + ".dll");
            if (!File.Exists(path))
            {
                return null;
            }
            Assembly found = Assembly.LoadFile(path);
            Remember(found);
            return found;
        }

        static Assembly FindKnown(string name)
        {
            lock (known)
            {
                return known.FindLast(assembly => assembly.GetName().Name == name);
            }
        }

        // `problem`, the first line followed by the Debian package that lacks, where a part of the framework was not
        // found: the runtime is packaged in many pieces.
        internal static string WithHint(string problem)
        {
            string package = Missing == null ? null : PackageOf(Missing);
            if (package == null)
            {
                return problem;
            }
            int end = problem.IndexOf('\n');
            return problem.Insert(end < 0 ? problem.Length : end, " (the package " + package + " may be missing)");
        }

        // Those that are not named as the others are.
        static readonly Dictionary<string, string> OddPackages = new Dictionary<string, string>
        {
            { "Mono.CSharp", "libmono-csharp4.0c-cil" },
            { "Mono.Data.Sqlite", "libmono-sqlite4.0-cil" },
            { "System.ServiceModel", "libmono-system-servicemodel4.0a-cil" },
            { "System.ServiceModel.Internals", "libmono-system-servicemodel-internals0.0-cil" },
            { "System.Windows.Forms.DataVisualization",
              "libmono-system-windows-forms-datavisualization4.0a-cil" },
            { "WindowsBase", "libmono-windowsbase4.0-cil" },
            { "netstandard", "mono-devel" },
        };

        static string PackageOf(string assembly)
        {
            string odd;
            if (OddPackages.TryGetValue(assembly, out odd))
            {
                return odd;
            }
            string name = assembly.ToLowerInvariant().Replace('.', '-');
            if (name.StartsWith("mono-", StringComparison.Ordinal))
            {
                name = name.Substring("mono-".Length);
            }
            else if (name != "system" && !name.StartsWith("system-", StringComparison.Ordinal) &&
                     !name.StartsWith("microsoft-", StringComparison.Ordinal))
            {
                return null;
            }
            return "libmono-" + name + "4.0-cil";
        }
    }
}
