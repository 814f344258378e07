"""Inside the namespaces: furnishes them, starts the desktop and runs the named test modules."""

import sys
import tempfile
import unittest

import certificates
import namespace
import scenario
from completion_service import HOST
from desktop import Desktop


def main():
    # A desktop's service that has been ended may still be taking down a file system of its own there.
    with tempfile.TemporaryDirectory(prefix="talvo-", ignore_cleanup_errors=True) as scratch:
        identity = certificates.create(scratch, HOST)
        namespace.furnish(scratch, HOST, identity.authority)
        with Desktop(scratch) as desktop:
            scenario.world = scenario.World(desktop, identity, scratch)
            program = unittest.main(
                module=None, argv=["end_to_end", "--verbose", *sys.argv[1:]], exit=False, warnings="ignore"
            )
            return 0 if program.result.testsRun and program.result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
