"""vrel repack from outside: everything stays but the storing of samples and the dead bytes."""

import glob
import json
import os
import random
import signal
import subprocess
import time
import unittest

import vbf_records
from vbf_records import Stack
from vrel_program import DATA, FolderTestCase, PROGRAM, TIME_LIMIT, run


# Repeats enough to become smaller.
SAMPLES = random.Random(5).randbytes(1000) * 200
RAW = Stack((1000, 100), SAMPLES, data_type=4, name=b"raw \xff", description=b"words", labels=(b"X", b"Zeit"),
            tags={b"key": b"value", b"\xff": b""}, column_labels={1: [b"%d" % i for i in range(100)]},
            units=(([(1, 1)] + [(2, -4)] * 8, 1e-6),), metadata=b"no xml")
ZIPPED = Stack((1000, 200), SAMPLES, level=1, block=50000, name=b"zipped")
EMPTY = Stack((5, 5), b"", has_data=0, name=b"zeros")
ENTRIES = {b"ome_xml": b"<OME/>\n<!-- kept -->", b"other": b"\xff\x00"}


class RepackCommandTest(FolderTestCase):
    def setUp(self):
        super().setUp()
        self.output = os.path.join(self.folder, "new.vbf")

    def repack(self, path, *options):
        result = run("repack", path, "--output", self.output, "--force", *options)
        self.assertEqual((result.returncode, result.stdout), (0, b""), result.stderr)

    @staticmethod
    def describe(path):
        return json.loads(run("info", "--json", path).stdout)

    @staticmethod
    def samples(path, index):
        result = run("export", path, "--stack", str(index), "--output", "-")
        return result.returncode, result.stdout

    def expect_same(self, path, recompressed=False):
        """Descriptions and samples of both files are the same."""
        before, after = self.describe(path), self.describe(self.output)
        for file in (before, after):
            for stack in file["stacks"]:
                del stack["positions"]
                if recompressed:
                    del stack["compression"], stack["flush"]
        self.assertEqual(before, after)
        for index in range(len(before["stacks"])):
            self.assertEqual(self.samples(path, index), self.samples(self.output, index))

    def test_a_file_without_dead_bytes_stays_byte_for_byte(self):
        for version in (1, 2):
            content = vbf_records.file([RAW, ZIPPED, EMPTY], b"about \xff", version, ENTRIES)
            self.repack(self.write("file.vbf", content))
            self.assertEqual(self.content(self.output), content)

    def test_dead_bytes_go(self):
        content = vbf_records.file([RAW, ZIPPED], b"about", 2, ENTRIES)
        self.repack(self.write("file.vbf", content + b"dead bytes"))
        self.assertEqual(self.content(self.output), content)

    def test_the_unfinished_stack_of_a_killed_writer_goes(self):
        self.repack(self.write("file.vbf", vbf_records.killed([ZIPPED], RAW, version=1)))
        self.assertEqual(self.content(self.output), vbf_records.file([ZIPPED], version=1))

    def test_samples_are_compressed(self):
        path = self.write("file.vbf", vbf_records.file([RAW, ZIPPED, EMPTY], b"about", 2, ENTRIES))
        self.repack(path, "--compress", "9")
        self.expect_same(path, recompressed=True)
        raw, zipped, empty = self.describe(self.output)["stacks"]
        self.assertEqual(raw["compression"], {"type": 1, "level": 9})
        self.assertLess(raw["positions"]["data_length"], len(SAMPLES) / 10)
        self.assertEqual(raw["flush"]["block_size"], 200000)
        self.assertEqual((zipped["flush"]["block_size"], len(zipped["flush"]["positions"])), (50000, 4))
        self.assertEqual(empty["positions"]["data_length"], 0)

    def test_samples_become_raw(self):
        path = self.write("file.vbf", vbf_records.file([RAW, ZIPPED], b"about", 2, ENTRIES))
        self.repack(path, "--compress", "0")
        self.expect_same(path, recompressed=True)
        for stack in self.describe(self.output)["stacks"]:
            self.assertEqual((stack["compression"]["type"], stack["positions"]["data_length"]), (0, len(SAMPLES)))
            self.assertEqual(stack["flush"], {"block_size": 0, "positions": []})

    def test_flush_points_are_moved_in_streams_alone(self):
        path = self.write("file.vbf", vbf_records.file([RAW, ZIPPED], version=1))
        self.repack(path, "--flush", "70000")
        self.expect_same(path, recompressed=True)
        raw, zipped = self.describe(self.output)["stacks"]
        self.assertEqual(raw["compression"]["type"], 0)
        self.assertEqual((zipped["compression"], zipped["flush"]["block_size"], len(zipped["flush"]["positions"])),
                         ({"type": 1, "level": 1}, 70000, 2))
        self.repack(path, "--flush", "0", "--compress", "2")
        for stack in self.describe(self.output)["stacks"]:
            self.assertEqual((stack["compression"]["level"], stack["flush"]["positions"]), (2, []))

    def test_older_stacks_keep_their_version(self):
        stacks = [Stack((3,), b"abc", version=version) for version in range(6)]
        path = self.write("file.vbf", vbf_records.file(stacks, version=1))
        self.repack(path)
        self.assertEqual([stack["format_version"] for stack in self.describe(self.output)["stacks"]], list(range(6)))
        self.expect_same(path)

    def test_sample_files_keep_all_they_say(self):
        files = sorted(glob.glob(os.path.join(DATA, "vbf", "good", "*.vbf")))
        if not files:
            self.skipTest(f"no sample data in {DATA}")
        for path in files:
            for options in ([], ["--compress", "1", "--flush", "1000"]):
                with self.subTest(path, options=options):
                    self.repack(path, *options)
                    verified = run("verify", self.output)
                    self.assertEqual(verified.returncode, 0, verified.stdout)
                    self.expect_same(path, recompressed=bool(options))

    def test_a_damaged_file_is_refused_and_leaves_nothing(self):
        content = bytearray(vbf_records.file([RAW, ZIPPED]))
        content[content.rfind(b"VREL_BF_STACK\n")] = 0
        path = self.write("file.vbf", content)
        result = run("repack", path, "--output", self.output)
        self.assertEqual(result.returncode, 4)
        self.assertEqual(result.stderr.decode(), f"vrel: {path}: Stack header not in vbf format!\n"
                         f"vrel: {path}: warning: 'vrel recover' saves what can still be read\n")
        self.assertEqual(os.listdir(self.folder), ["file.vbf"])

    def test_a_damaged_stream_is_refused_when_it_is_read(self):
        content = bytearray(vbf_records.file([ZIPPED], version=1))
        content[26 + 368 + 6 + 100] ^= 0xFF
        result = run("repack", self.write("file.vbf", content), "--output", self.output, "--compress", "6")
        self.assertEqual(result.returncode, 4)
        self.assertIn(b"vrel recover", result.stderr)
        self.assertEqual(os.listdir(self.folder), ["file.vbf"])

    def test_an_existing_file_is_not_replaced(self):
        path = self.write("file.vbf", vbf_records.file([RAW]))
        self.write("new.vbf", b"mine")
        result = run("repack", path, "--output", self.output)
        self.assertEqual((result.returncode, self.content(self.output)), (3, b"mine"))
        self.assertIn(f"vrel: {self.output}: Output file exists already".encode(), result.stderr)

    def test_a_file_can_be_replaced_by_itself(self):
        content = vbf_records.file([RAW], b"about", 2, ENTRIES)
        path = self.write("file.vbf", content + b"dead")
        self.assertEqual(run("repack", path, "--output", path, "--force").returncode, 0)
        with open(path, "rb") as file:
            self.assertEqual(file.read(), content)

    def test_an_interruption_leaves_no_half_file(self):
        path = self.write("file.vbf", vbf_records.file([Stack((1 << 20, 48), random.Random(1).randbytes(48 << 20))]))
        before = sorted(os.listdir(self.folder))
        with subprocess.Popen([PROGRAM, "repack", path, "--output", self.output, "--compress", "9"],
                              stderr=subprocess.DEVNULL) as process:
            deadline = time.monotonic() + TIME_LIMIT
            while sorted(os.listdir(self.folder)) == before and time.monotonic() < deadline:
                time.sleep(0.002)
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(TIME_LIMIT), 130)
        self.assertEqual(sorted(os.listdir(self.folder)), before)

    def test_wrong_usage(self):
        path = self.write("file.vbf", vbf_records.file([RAW]))
        for options in (["--compress", "10"], ["--compress", "-1"], ["--compress", "x"], ["--flush", "-1"]):
            result = run("repack", path, "--output", self.output, *options)
            self.assertEqual((result.returncode, result.stdout), (2, b""), options)
        self.assertEqual(run("repack", path).returncode, 2)
        self.assertEqual(os.listdir(self.folder), ["file.vbf"])


if __name__ == "__main__":
    unittest.main()
