#!/usr/bin/env python3
"""Sends the real program a flood of text and prints how long its main thread stalled.

    tests/campaigns/hostile_replies.py "one million blocks"

The argument is a part of a flood's name in tests/end_to_end/test_hostile_replies.py.
"""

import sys

import campaign

if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    campaign.run("test_hostile_replies.HostileReplies.test_no_flood_freezes_the_window",
                 TALVO_FLOOD=sys.argv[1])
