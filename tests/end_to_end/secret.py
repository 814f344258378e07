"""A secret, and where it lies about."""

import base64
import re
from pathlib import Path


class Secret:
    """A text that must be found in no file, in any of its forms."""

    def __init__(self, text):
        #: The ways in which it may lie about.
        self.forms = {
            "UTF-8": text.encode(),
            "UTF-16": text.encode("utf-16-le"),
            # The last letters depend on what follows.
            "Base64": base64.b64encode(text.encode())[:-4],
            "reversed": text[::-1].encode(),
        }

    def holders(self, folder):
        """The files below a folder that hold one of its forms, as `file: form`."""
        found = []
        for path in Path(folder).rglob("*"):
            if path.is_file() and not path.is_symlink():
                content = path.read_bytes()
                found += [f"{path}: {name}" for name, form in self.forms.items() if form in content]
        return found

    def copies_in_memory(self, process_id):
        """How often each form lies in the writable memory of a process."""
        copies = dict.fromkeys(self.forms, 0)
        with open(f"/proc/{process_id}/mem", "rb", buffering=0) as memory:
            for line in Path(f"/proc/{process_id}/maps").read_text(encoding="utf-8").splitlines():
                match = re.match(r"(\w+)-(\w+) rw", line)
                if not match:
                    continue
                start, end = (int(number, 16) for number in match.groups())
                try:
                    memory.seek(start)
                    content = memory.read(end - start)
                except (OSError, OverflowError, ValueError):
                    continue # mapped, but not to be read
                for name, form in self.forms.items():
                    copies[name] += content.count(form)
        return copies
