#!/usr/bin/env python3
"""Archives from elsewhere with the real program: 200 MB of one string, a million sessions and others.

    tests/campaigns/odd_archives.py

As the test of the suite, with the big ones as big as they are meant to be. Needs 2 GB of memory.
"""

import campaign

if __name__ == "__main__":
    campaign.run("test_odd_archives", TALVO_LONG=1)
