// 明细：列出零件明细表的各列。The columns of a parts table.
public static class Plugin
{
    static readonly string[] 各列 = { "序号", "代号", "名称", "数量", "材料" };

    public static void Start()
    {
        Kest.RegisterCommand("明细", 列出);
    }

    static void 列出()
    {
        Kest.Print("明细表：" + string.Join("、", 各列) + "\n");
    }
}
