"""The list of installed files, in which names in braces stand for what differs between builds."""

import os
import pathlib

LIST = pathlib.Path(__file__).resolve().parent / "installed_files.txt"
NAMES = dict(pair.split("=") for pair in os.environ["VRELIO_NAMES"].split(","))


def listed_files():
    """The files that are to be there, below the prefix."""
    return sorted(line.format(**NAMES) for line in LIST.read_text(encoding="utf-8").splitlines())


def files_below(folder):
    """All files and links below a folder."""
    folder = pathlib.Path(folder)
    return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_symlink() or not path.is_dir())
