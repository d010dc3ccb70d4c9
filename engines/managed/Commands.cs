using System;
using System.Collections.Generic;

namespace KestEngine
{
    // The commands that the host knows by number. Only the host's thread comes here.
    static class Commands
    {
        static readonly Dictionary<int, Action> actions = new Dictionary<int, Action>();
        static readonly Dictionary<string, int> numbers = new Dictionary<string, int>();
        static int last;
        static List<int> registered; // by the innermost load; null: none goes on

        internal static bool Register(string name, Action command)
        {
            if (!Native.IsHostThread())
            {
                throw new InvalidOperationException("commands are registered on the host's thread, as in Start()");
            }
            int number = ++last;
            actions.Add(number, command);
            if (!Native.RegisterCommand(name, number))
            {
                actions.Remove(number);
                return false;
            }
            // The same name again: the host has just let go of the command before. (In other letters it may still
            // have it: that is up to its locale.)
            int replaced;
            if (numbers.TryGetValue(name, out replaced))
            {
                actions.Remove(replaced);
            }
            numbers[name] = number;
            registered?.Add(number);
            return true;
        }

        // From now on, what is registered is listed in `ofLoad`, if that is not null. Returns what it was before.
        internal static List<int> ListIn(List<int> ofLoad)
        {
            List<int> outer = registered;
            registered = ofLoad;
            return outer;
        }

        internal static void Forget(List<int> forgotten)
        {
            forgotten.ForEach(number => actions.Remove(number));
            foreach (var name in new List<string>(numbers.Keys))
            {
                if (forgotten.Contains(numbers[name]))
                {
                    numbers.Remove(name);
                }
            }
        }

        // Runs a command. Returns null when it returned; else why not, in one line, and below it the details.
        internal static string Run(int number)
        {
            Action action;
            if (!actions.TryGetValue(number, out action))
            {
                return "the component of this command is no longer there";
            }
            return Guard.Run(action);
        }
    }
}
