"""Runs a test of tests/end_to_end in its long form."""

import os
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def run(test, **settings):
    """Runs one end-to-end test with these settings in its environment; ends with its exit code."""
    environment = {
        "TALVO_EXECUTABLE": str(ROOT / "build/release/bin/talvo"),
        "PYTHONDONTWRITEBYTECODE": "1",
        **os.environ,
        **{name: str(value) for name, value in settings.items()},
    }
    command = ["/usr/bin/python3", str(ROOT / "tests/end_to_end/run.py"), test]
    sys.exit(subprocess.run(command, env=environment).returncode)
