"""Hexagon head screws, for the scripts of other bundles. Dimensions in millimetres."""

# thread: (width across flats, height of the head)
SCREWS = {6: (10, 4.0), 8: (13, 5.3), 10: (16, 6.4), 12: (18, 7.5), 16: (24, 10.0)}


def clearance_hole(thread):
    """The medium clearance hole for a thread."""
    return {6: 6.6, 8: 9.0, 10: 11.0, 12: 13.5, 16: 17.5}[thread]
