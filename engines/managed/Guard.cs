using System;
using System.Globalization;
using System.Threading;

namespace KestEngine
{
    // Runs foreign code on the host's thread.
    static class Guard
    {
        static string ending; // how the code tried to end the process; else null

        // Returns null when `code` returned; else why not, in one line, and below it the details. Culture and console
        // are what they were afterwards.
        internal static string Run(Action code)
        {
            CultureInfo culture = CultureInfo.CurrentCulture;
            CultureInfo uiCulture = CultureInfo.CurrentUICulture;
            string outerEnding = ending; // of code that has this run in it
            ending = null;
            string problem = null;
            try
            {
                code();
            }
            catch (Exception exception)
            {
                if (exception is ThreadAbortException)
                {
                    Thread.ResetAbort(); // otherwise it goes on at the end of this block
                }
                problem = ErrorText.Of(exception);
            }
            TakeInterruption();
            Thread.CurrentThread.CurrentCulture = culture;
            Thread.CurrentThread.CurrentUICulture = uiCulture;
            HostWriter.Install();
            bool isSwallowed = ending != null &&
                               (problem == null || !problem.StartsWith(ending, StringComparison.Ordinal));
            problem = isSwallowed ? ending : problem;
            ending = outerEnding;
            return problem;
        }

        // An interruption that the code asked for and did not meet would befall what runs next.
        static void TakeInterruption()
        {
            try
            {
                Thread.Sleep(0);
            }
            catch (ThreadInterruptedException)
            {
            }
        }

        // Environment.Exit() comes here. The exception ends the assembly's run; code that catches it has failed all the
        // same.
        static Exception EndingOf(int status)
        {
            return Ending("the assembly tried to end the process with status " + status);
        }

        // Environment.FailFast() comes here.
        static Exception FailureOf(string message)
        {
            return Ending(ErrorText.OneLine("the assembly tried to end the process: " + message));
        }

        static Exception Ending(string how)
        {
            if (Native.IsHostThread())
            {
                ending = how;
            }
            return new EndingException(how);
        }

        internal static void Start()
        {
            HostWriter.Install();
            Console.SetIn(System.IO.TextReader.Null);
            AppDomain.CurrentDomain.UnhandledException += (sender, failure) =>
                Kest.Print("A thread of an assembly failed: " +
                           ErrorText.Of(failure.ExceptionObject as Exception) + "\n");
            Resolver.Install();
        }
    }
}
