using System;
using System.Collections.Generic;
using System.IO;
using System.Reflection;
using System.Runtime.CompilerServices;

namespace KestEngine
{
    // Loads assemblies and runs their entry.
    static class Loader
    {
        const string Expected =
            "expected is one public class named Plugin with the method \"public static void Start()\"";

        // Loads the assembly at `path` and runs its entry. Where its path is no text, `path` is null and the file is
        // read under the name `opened`. Returns null when that worked; else why not, in one line, and below it
        // the details.
        internal static string Load(string path, string opened)
        {
            var registered = new List<int>();
            List<int> outer = Commands.ListIn(registered);
            string missingBefore = Resolver.Missing;
            Resolver.Missing = null;
            string problem = Guard.Run(() => EntryOf(Open(path, opened))());
            if (problem != null)
            {
                Commands.Forget(registered);
                problem = Resolver.WithHint(problem);
            }
            Resolver.Missing = missingBefore;
            Commands.ListIn(outer);
            return problem;
        }

        static Assembly Open(string path, string opened)
        {
            try
            {
                return path != null ? Assembly.LoadFile(path) : Assembly.Load(File.ReadAllBytes(opened));
            }
            catch (BadImageFormatException exception)
            {
                throw new PlainException("it is no managed assembly (" + exception.Message + ")");
            }
        }

        static Action EntryOf(Assembly assembly)
        {
            Resolver.Remember(assembly);
            List<Type> classes = TypesOf(assembly).FindAll(
                type => type.IsPublic && type.IsClass && type.Name == "Plugin");
            if (classes.Count == 0)
            {
                throw new PlainException("it has no public class named Plugin; " + Expected);
            }
            if (classes.Count > 1)
            {
                List<string> names = classes.ConvertAll(type => type.FullName);
                names.Sort(StringComparer.Ordinal);
                throw new PlainException("it has several public classes named Plugin (" + string.Join(", ", names) +
                                         "); " + Expected);
            }
            MethodInfo start = classes[0].GetMethod("Start", BindingFlags.Public | BindingFlags.Static, null,
                                                    Type.EmptyTypes, null);
            if (start == null || start.ReturnType != typeof(void) || start.IsGenericMethodDefinition ||
                IsAsync(start))
            {
                throw new PlainException("its class " + classes[0].FullName +
                                         " has no method \"public static void Start()\" that is not async");
            }
            return (Action)Delegate.CreateDelegate(typeof(Action), start);
        }

        static bool IsAsync(MethodInfo method)
        {
            try
            {
                return method.IsDefined(typeof(AsyncStateMachineAttribute), false);
            }
            catch (Exception) // another attribute's assembly is missing: the method may do without it
            {
                return false;
            }
        }

        // Types that need what is not there are left out, as long as there are others: the entry may do without them.
        static List<Type> TypesOf(Assembly assembly)
        {
            try
            {
                return new List<Type>(assembly.GetTypes());
            }
            catch (ReflectionTypeLoadException exception)
            {
                List<Type> types = new List<Type>(exception.Types).FindAll(type => type != null);
                if (types.Exists(type => type.Name == "Plugin") || exception.LoaderExceptions.Length == 0)
                {
                    return types;
                }
                throw exception.LoaderExceptions[0];
            }
        }
    }
}
