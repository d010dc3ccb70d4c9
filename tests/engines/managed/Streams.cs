using System;

public static class Plugin
{
    public static void Start()
    {
        Console.WriteLine("out {0}", 1);
        Kest.Print("print\n");
        Console.Error.WriteLine("error");
        Console.Write("a");
        Console.Write('b');
        Console.Write(12.5);
        foreach (char unit in "\U0001F600")
        {
            Console.Write(unit);
        }
        Console.WriteLine("\u56FE\u7EB8 \uD800!");
        Console.WriteLine(Console.ReadLine() == null ? "end of input" : "input");
        Console.WriteLine(Console.Read());
        Console.SetOut(System.IO.TextWriter.Null);
        Console.SetError(System.IO.TextWriter.Null);
        Console.WriteLine("lost");
    }
}
