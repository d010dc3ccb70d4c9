"""SCREWS: the screws that another bundle, StandardParts, knows. The module standard_screws is that bundle's."""

import kest
import standard_screws


def print_screws():
    for thread, (width, head) in standard_screws.SCREWS.items():
        hole = standard_screws.clearance_hole(thread)
        kest.print(f"screw M{thread}: {width} across flats, head {head}, hole {hole}\n")


kest.register_command("SCREWS", print_screws)
