using System;
using System.Collections.Generic;
using System.Reflection;
using System.Text;

namespace KestEngine
{
    // A failure that is told by its message alone: where it was thrown says nothing.
    class PlainException : Exception
    {
        internal PlainException(string message) : base(message)
        {
        }
    }

    // What comes of an attempt to end the process.
    class EndingException : PlainException
    {
        internal EndingException(string message) : base(message)
        {
        }
    }

    static class ErrorText
    {
        const int MostLines = 200; // a stack overflow has thousands

        // The runtime has one object for all stack overflows, whose trace goes on growing: so many lines are old.
        static int linesOfOverflows;

        // `exception` in one line, with those that caused it; below it the details, if there are any. No line end.
        internal static string Of(Exception exception)
        {
            while (exception is TargetInvocationException && exception.InnerException != null)
            {
                exception = exception.InnerException;
            }
            if (exception == null)
            {
                return "an object was thrown that is no exception";
            }
            var text = new StringBuilder();
            for (Exception cause = exception; cause != null; cause = cause.InnerException)
            {
                text.Append(text.Length > 0 ? " ---> " : "").Append(Headline(cause));
            }
            string headlines = text.ToString();
            string details = exception.GetType() == typeof(PlainException) ? "" : Details(exception, headlines);
            return OneLine(headlines) + (details.Length > 0 ? "\n" + details : "");
        }

        internal static string OneLine(string text)
        {
            var line = new StringBuilder();
            foreach (char unit in text)
            {
                bool isSpace = char.IsControl(unit) || unit == ' ' || unit == '\u2028' || unit == '\u2029';
                if (!isSpace)
                {
                    line.Append(unit);
                }
                else if (line.Length > 0 && line[line.Length - 1] != ' ')
                {
                    line.Append(' ');
                }
            }
            return line.ToString().TrimEnd();
        }

        static string Headline(Exception exception)
        {
            string message;
            try
            {
                message = exception.Message;
            }
            catch (Exception)
            {
                message = "(its message could not be had)";
            }
            if (exception is PlainException)
            {
                return message;
            }
            string name = exception.GetType().FullName;
            return string.IsNullOrEmpty(message) ? name : name + ": " + message;
        }

        // What the exception says at length, without the headlines that it begins with, and without this engine's own
        // methods.
        static string Details(Exception exception, string headlines)
        {
            string text;
            try
            {
                text = exception.ToString() ?? "";
            }
            catch (Exception)
            {
                text = exception.StackTrace ?? "";
            }
            foreach (string prefix in new[] { headlines, exception.GetType().FullName + ": " + headlines })
            {
                if (text == prefix || text.StartsWith(prefix + "\n", StringComparison.Ordinal))
                {
                    text = text.Substring(prefix.Length);
                }
            }
            var lines = new List<string>(text.Trim('\n', '\r').Split('\n'));
            if (exception is StackOverflowException)
            {
                int known = Math.Min(linesOfOverflows, lines.Count);
                linesOfOverflows = lines.Count;
                lines.RemoveRange(0, known);
            }
            lines.RemoveAll(line => line.StartsWith("  at KestEngine.", StringComparison.Ordinal));
            string shown = string.Join("\n", lines.GetRange(0, Math.Min(lines.Count, MostLines))).TrimEnd();
            return lines.Count <= MostLines ? shown
                                            : shown + "\n  ... and " + (lines.Count - MostLines) + " lines more";
        }
    }
}
