#!/usr/bin/env python3
"""Kills the program over and over in the midst of sends, renames and deletes on a 16 MB archive.

    tests/campaigns/kill_while_saving.py --count 300 [--seed 1]

Prints when the kills came and what was lost. TALVO_EXECUTABLE is the program, else that of the
release preset.
"""

import argparse

import campaign


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--count", type=int, default=300, help="how many kills")
    parser.add_argument("--seed", type=int, help="of the random moments")
    arguments = parser.parse_args()
    settings = {"TALVO_KILLS": arguments.count}
    if arguments.seed is not None:
        settings["TALVO_SEED"] = arguments.seed
    campaign.run("test_saving.Saving", **settings)


if __name__ == "__main__":
    main()
