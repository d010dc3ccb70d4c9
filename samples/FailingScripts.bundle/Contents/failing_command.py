"""FAILPYTHON: an error in a command ends the command, not the host."""

import kest


def fail():
    kest.print("looking for the seventh of two\n")
    return ["first", "second"][6]


kest.register_command("FAILPYTHON", fail)
