"""`cmake --install` lays out a standard prefix, in which desktops find one application under one name."""

import configparser
import os
import struct
import subprocess
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path
from tempfile import TemporaryDirectory

ROOT = Path(__file__).resolve().parents[2]
ID = "com.talvo.Talvo"
ICON_SIZES = (16, 24, 32, 48, 64, 128, 256, 512)

EXPECTED = {
    "bin/talvo",
    f"share/applications/{ID}.desktop",
    f"share/metainfo/{ID}.metainfo.xml",
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    *(f"share/icons/hicolor/{size}x{size}/apps/{ID}.png" for size in ICON_SIZES),
    "share/man/man1/talvo.1",
    "share/man/tr/man1/talvo.1",
    "share/doc/talvo/README.md",
    "share/doc/talvo/README.tr.md",
    "share/doc/talvo/CHANGELOG.md",
    "share/doc/talvo/LICENSE",
    "share/doc/talvo/docs/screenshots/conversation-dark.png",
    "share/doc/talvo/docs/screenshots/plan-light.png",
}


def run(*command):
    """Standard output and error of a command, and whether it ended with 0."""
    result = subprocess.run(command, capture_output=True, text=True, timeout=120, check=False)
    return result.returncode == 0, result.stdout + result.stderr


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls._scratch = TemporaryDirectory()
        cls.addClassCleanup(cls._scratch.cleanup)
        cls.prefix = Path(cls._scratch.name)
        worked, said = run(os.environ["TALVO_CMAKE"], "--install", os.environ["TALVO_BUILD"],
                           "--prefix", str(cls.prefix))
        if not worked:
            raise AssertionError(said)

    def desktop_entry(self):
        reader = configparser.ConfigParser(interpolation=None, delimiters=("=",))
        reader.optionxform = str
        reader.read(self.prefix / f"share/applications/{ID}.desktop", encoding="utf-8")
        return reader["Desktop Entry"]

    def metadata(self):
        return ElementTree.parse(self.prefix / f"share/metainfo/{ID}.metainfo.xml").getroot()

    def test_exactly_the_expected_files(self):
        laid_out = {str(path.relative_to(self.prefix))
                    for path in self.prefix.rglob("*") if not path.is_dir()}
        self.assertEqual(laid_out, EXPECTED)

    def test_the_program_can_be_started_and_nothing_else(self):
        executable = {str(path.relative_to(self.prefix)) for path in self.prefix.rglob("*")
                      if path.is_file() and os.access(path, os.X_OK) and path.stat().st_mode & 0o111}
        self.assertEqual(executable, {"bin/talvo"})

    def test_each_icon_has_the_size_of_its_folder(self):
        for size in ICON_SIZES:
            icon = self.prefix / f"share/icons/hicolor/{size}x{size}/apps/{ID}.png"
            header = icon.read_bytes()[:24]
            self.assertEqual(header[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(struct.unpack(">II", header[16:24]), (size, size))

    def test_the_desktop_entry_is_valid(self):
        worked, said = run("desktop-file-validate", str(self.prefix / f"share/applications/{ID}.desktop"))
        self.assertEqual((worked, said), (True, ""))

    def test_the_metadata_are_valid(self):
        worked, said = run("appstreamcli", "validate", "--no-net",
                           str(self.prefix / f"share/metainfo/{ID}.metainfo.xml"))
        self.assertTrue(worked, said)

    def test_the_desktop_entry_speaks_turkish_and_english(self):
        entry = self.desktop_entry()
        for key in ("Name", "GenericName", "Comment", "Keywords"):
            self.assertTrue(entry.get(key), key)
            self.assertTrue(entry.get(f"{key}[tr]"), f"{key}[tr]")

    def test_one_identifier_everywhere(self):
        metadata = self.metadata()
        self.assertEqual(self.desktop_entry()["Icon"], ID)
        self.assertEqual(metadata.findtext("id"), ID)
        self.assertEqual(metadata.findtext("launchable"), f"{ID}.desktop")
        self.assertEqual(metadata.findtext("icon"), ID)
        # The window says it in the program itself, with the file names of the desktop entry.
        self.assertIn(ID.encode("utf-16-le"), (self.prefix / "bin/talvo").read_bytes())

    def test_one_version_everywhere(self):
        project = (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")
        version = project.partition("project(Talvo VERSION ")[2].split()[0]
        self.assertEqual(self.metadata().find("releases/release").get("version"), version)
        for page in ("man/man1", "man/tr/man1"):
            title = (self.prefix / f"share/{page}/talvo.1").read_text(encoding="utf-8").splitlines()[0]
            self.assertIn(f'"Talvo {version}"', title)
        changes = (ROOT / "packaging/linux/deb/changelog").read_text(encoding="utf-8")
        self.assertTrue(changes.startswith(f"talvo ({version}-1) "))

    def test_manual_pages_have_no_faults(self):
        for page in ("man/man1/talvo.1", "man/tr/man1/talvo.1"):
            worked, said = run("groff", "-man", "-Kutf8", "-Tutf8", "-ww", "-z",
                               str(self.prefix / f"share/{page}"))
            self.assertEqual((worked, said), (True, ""), page)

    def test_no_turkish_word_is_divided_by_english_rules(self):
        worked, said = run("groff", "-man", "-Kutf8", "-Tutf8", "-rLL=40n",
                           str(self.prefix / "share/man/tr/man1/talvo.1"))
        self.assertTrue(worked, said)
        self.assertIn("Groq", said)
        self.assertNotIn("\N{HYPHEN}\n", said)

    def test_manual_pages_name_the_same_in_both_languages(self):
        def named(page):
            """The files, variables and exit codes, each the head of a paragraph of its own."""
            lines = (self.prefix / f"share/{page}").read_text(encoding="utf-8").splitlines()
            return [head for tag, head in zip(lines, lines[1:]) if tag == ".TP"]

        self.assertGreater(len(named("man/man1/talvo.1")), 7)
        self.assertEqual(named("man/man1/talvo.1"), named("man/tr/man1/talvo.1"))


if __name__ == "__main__":
    unittest.main()
