"""The program under test, and what its tests from outside have in common."""

import os
import struct
import subprocess
import tempfile
import time
import unittest

PROGRAM = os.environ["VRELIO_PROGRAM"]
SANITIZED = os.environ.get("VRELIO_SANITIZE", "") != ""
REPOSITORY = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
# The sample data, which need not be there.
DATA = os.environ.get("VRELIO_TEST_DATA") or os.path.join(REPOSITORY, "..", "shared", "data")
TIME_LIMIT = 60
# A sanitizer needs the memory for itself.
MEMORY = [] if SANITIZED else ["--max-memory", "128MiB"]


def run(*arguments, **options):
    return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, timeout=TIME_LIMIT, **options)


def wait_until(condition):
    deadline = time.monotonic() + TIME_LIMIT
    while not condition():
        if time.monotonic() > deadline:
            raise TimeoutError("what the test waits for does not happen")
        time.sleep(0.002)


def put(content, position, form, *values):
    """The content with numbers in place of its bytes from a position on."""
    content = bytearray(content)
    struct.pack_into(form, content, position, *values)
    return bytes(content)


class FolderTestCase(unittest.TestCase):
    """A test with a folder of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)
        return self.path(name)

    @staticmethod
    def content(path):
        with open(path, "rb") as file:
            return file.read()
