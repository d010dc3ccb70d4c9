"""图层：图层的颜色与线宽。The layers of a drawing with their colours and line widths."""

import kest

图层 = {"轮廓": ("白", 0.5), "中心线": ("红", 0.25), "尺寸": ("绿", 0.25)}


def 列出图层():
    for 名称, (颜色, 线宽) in 图层.items():
        kest.print(f"图层“{名称}”：{颜色}，{线宽} 毫米\n")


kest.register_command("图层", 列出图层)
