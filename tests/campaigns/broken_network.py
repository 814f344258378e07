#!/usr/bin/env python3
"""Every fault of the network with the real program, and how long its main thread stalled.

    tests/campaigns/broken_network.py

As the test of the suite, with the silence that lasts until its limit of a minute.
"""

import campaign

if __name__ == "__main__":
    campaign.run("test_broken_network", TALVO_LONG=1)
