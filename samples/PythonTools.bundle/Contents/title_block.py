"""Loaded when the host starts: registers TITLEBLOCK, which prints the title block of today's drawing."""

import datetime

import kest

WIDTH = 44


def title_block(day):
    """The lines of a title block for a drawing made on `day`."""
    rows = (
        ("Office", "Nordhof Drafting Office"),
        ("Drawing", f"ND-{day:%Y}-{day:%j}"),
        ("Date", day.isoformat()),
        ("Host", kest.host_version()),
    )
    rule = "+" + "-" * WIDTH + "+"
    yield rule
    for label, value in rows:
        yield "|" + f" {label:<9}{value}".ljust(WIDTH)[:WIDTH] + "|"
    yield rule


def print_title_block():
    for line in title_block(datetime.date.today()):
        kest.print(line + "\n")


kest.register_command("TITLEBLOCK", print_title_block)
kest.print("Python tools: ready, TITLEBLOCK prints a title block\n")
