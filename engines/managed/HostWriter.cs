using System;
using System.IO;
using System.Text;

namespace KestEngine
{
    // Console.Out and Console.Error: the host's console.
    class HostWriter : TextWriter
    {
        static readonly HostWriter output = new HostWriter();
        static TextWriter installed;
        char highSurrogate;

        HostWriter() : base(System.Globalization.CultureInfo.InvariantCulture)
        {
            CoreNewLine = new[] { '\n' };
        }

        // Makes it the console, if it is not.
        internal static void Install()
        {
            if (installed == null || Console.Out != installed)
            {
                Console.SetOut(output);
                installed = Console.Out; // a synchronised wrapper
            }
            if (Console.Error != installed)
            {
                Console.SetError(installed);
            }
        }

        public override Encoding Encoding
        {
            get { return Encoding.UTF8; }
        }

        // One character beyond U+FFFF comes in two calls.
        public override void Write(char unit)
        {
            if (char.IsHighSurrogate(unit))
            {
                highSurrogate = unit;
                return;
            }
            Kest.Print(char.IsLowSurrogate(unit) && highSurrogate != 0 ? new string(new[] { highSurrogate, unit })
                                                                       : unit.ToString());
            highSurrogate = '\0';
        }

        public override void Write(char[] units, int start, int count)
        {
            Kest.Print(new string(units, start, count));
        }

        public override void Write(string text)
        {
            Kest.Print(text);
        }

        public override void WriteLine(string text)
        {
            Kest.Print(text + "\n");
        }
    }
}
