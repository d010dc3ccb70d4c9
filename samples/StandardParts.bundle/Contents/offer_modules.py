"""Offers the modules in the folder "shared" to the scripts of other bundles.

What lies beside a script is the script's own. A folder that a script adds to sys.path is there for all that come after.
"""

import pathlib
import sys

import kest

sys.path.append(str(pathlib.Path(__file__).with_name("shared")))

import standard_screws  # noqa: E402, it lies in that folder

kest.print(f"Standard parts: {len(standard_screws.SCREWS)} screws\n")
