"""Where the project's files are, and how the checks of this folder read them."""

from contextlib import contextmanager
from pathlib import Path
import re
from tempfile import TemporaryDirectory

ROOT = Path(__file__).resolve().parents[2]

#: Folders that hold no source of the project.
IGNORED_FOLDERS = {".git", "build", ".cache", "__pycache__"}


def files(root, suffixes):
    """Every file below `root` with one of the suffixes, in a stable order."""
    return sorted(
        path
        for path in Path(root).rglob("*")
        if path.is_file()
        and path.suffix in suffixes
        and not IGNORED_FOLDERS & set(path.relative_to(root).parts[:-1])
    )


def without_comments(text):
    """C++ or QML source with comments and the contents of strings blanked out.

    Every character keeps its place, so line numbers stay true.
    """
    pattern = re.compile(
        r'"(?:\\.|[^"\\\n])*"' r"|'(?:\\.|[^'\\\n])*'" r"|//[^\n]*" r"|/\*.*?\*/", re.DOTALL
    )

    def blank(match):
        token = match.group()
        if token[0] in "\"'":
            return token[0] + " " * (len(token) - 2) + token[-1]
        return re.sub(r"[^\n]", " ", token)

    return pattern.sub(blank, text)


def line_of(text, offset):
    """The 1-based line on which the character at `offset` stands."""
    return text.count("\n", 0, offset) + 1


@contextmanager
def project_of_one_view(qml):
    """The root of a project in which this is the only view."""
    with TemporaryDirectory() as scratch:
        path = Path(scratch) / "Talvo" / "Views" / "Planted.qml"
        path.parent.mkdir(parents=True)
        path.write_text(qml, encoding="utf-8")
        yield Path(scratch)
