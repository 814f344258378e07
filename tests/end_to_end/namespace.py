"""A small world of its own for the program under test.

User, mount, network and process namespaces: inside, api.groq.com is this machine's loopback, the
trust store holds one test authority, and nothing can leave the machine. So the program is tested as
it is, with no switch for tests in it; outside, nothing changes.
"""

import os
import subprocess
import sys
from pathlib import Path

SEPARATE = ["--net", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"]

#: Ways in, the first that works is taken: as root, who then has other users beside him, and as any user.
WAYS = [
    ["unshare", *SEPARATE],
    ["unshare", "--user", "--map-root-user", *SEPARATE],
]


def find_way():
    """The way in and None, or None and why there is none here."""
    refusal = ""
    for way in WAYS:
        probe = subprocess.run(
            [*way, "mount", "--bind", "/etc", "/etc"],
            stdin=subprocess.DEVNULL, capture_output=True, text=True,
        )
        if probe.returncode == 0:
            return way, None
        refusal = probe.stderr.strip() or "unshare failed"
    return None, refusal


def enter(way, script, *arguments):
    """Runs a Python script inside, as process 1 there, and gives back its exit code."""
    command = [*way, sys.executable, str(script), *arguments]
    return subprocess.run(command, stdin=subprocess.DEVNULL).returncode


def furnish(scratch, host, authority):
    """Inside: the loopback device, the name of the service and the trust store."""
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True)

    hosts = Path(scratch) / "hosts"
    hosts.write_text(f"127.0.0.1 localhost {host}\n", encoding="ascii")
    if not Path("/etc/hosts").exists():
        _see_to_a_hosts_file(Path(scratch) / "etc")
    subprocess.run(["mount", "--bind", hosts, "/etc/hosts"], check=True)

    # The whole folder, since a TLS library may look certificates up there by their hashes.
    trusted = Path(scratch) / "trusted"
    trusted.mkdir()
    certificate = Path(authority).read_bytes()
    (trusted / "ca-certificates.crt").write_bytes(certificate)
    subject_hash = subprocess.run(
        ["openssl", "x509", "-noout", "-hash", "-in", authority],
        check=True, capture_output=True, text=True,
    ).stdout.strip()
    (trusted / f"{subject_hash}.0").write_bytes(certificate)
    subprocess.run(["mount", "--bind", trusted, os.path.realpath("/etc/ssl/certs")], check=True)


def _see_to_a_hosts_file(etc):
    """A freshly made Debian has none, and a file can be mounted only over another: a copy of the whole
    folder, which has one, takes its place here."""
    subprocess.run(["cp", "--archive", "/etc", etc], check=True)
    (etc / "hosts").touch()
    subprocess.run(["mount", "--bind", etc, "/etc"], check=True)
