"""A certificate authority for one test run, and a server certificate signed by it."""

import subprocess
from dataclasses import dataclass
from pathlib import Path


@dataclass(frozen=True)
class Identity:
    """Files in PEM format: the authority to trust, the server's certificate and its key."""

    authority: Path
    certificate: Path
    key: Path


def create(folder, host):
    """Makes both in `folder`; they are valid for `host` and for one day."""
    folder = Path(folder)
    identity = Identity(folder / "authority.pem", folder / "server.pem", folder / "server.key")
    authority_key = folder / "authority.key"
    request = folder / "server.csr"
    extensions = folder / "server.ext"
    extensions.write_text(
        f"subjectAltName=DNS:{host}\nbasicConstraints=CA:FALSE\nextendedKeyUsage=serverAuth\n",
        encoding="ascii",
    )
    new_key = ["-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes"]
    _openssl("req", "-x509", *new_key, "-keyout", authority_key, "-out", identity.authority,
             "-subj", "/CN=Talvo test authority", "-days", "1",
             "-addext", "keyUsage=critical,keyCertSign")
    _openssl("req", "-new", *new_key, "-keyout", identity.key, "-out", request,
             "-subj", f"/CN={host}")
    _openssl("x509", "-req", "-in", request, "-CA", identity.authority, "-CAkey", authority_key,
             "-CAcreateserial", "-out", identity.certificate, "-days", "1", "-extfile", extensions)
    return identity


def _openssl(*arguments):
    subprocess.run(["openssl", *arguments], check=True, capture_output=True)
