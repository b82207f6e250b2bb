"""vrel verify from outside: what is found in which file, and where."""

import glob
import json
import os
import random
import struct
import unittest
import zlib

import vbf_records
from vbf_records import Stack
from vrel_program import DATA, FolderTestCase, MEMORY, REPOSITORY, put, run


# Golden files that are no clean ones, with what they are for: metadata without a position, and a newer reader.
GOLDEN_FAULTS = {name: "Could not determine xml format!" for name in
                 ("footer_1000", "footer_1002", "footer_1500", "raw", "stack_version_2", "stack_version_3", "version_1",
                  "zipped")}
GOLDEN_FAULTS["required_version_6"] = "Need >= 6!"
# A stream is a stream whatever level the header tells.
READABLE_BAD_FILES = {"level_negative"}

SAMPLES = bytes(range(256)) * 16
PLAIN = Stack((16, 16, 16), SAMPLES, name=b"plain")
ZIPPED = Stack((16, 16, 16), SAMPLES, level=6, block=1024, name=b"zipped")


class VerifyCommandTest(FolderTestCase):
    def verify(self, content):
        """The report on a file, after its exit code was compared with it."""
        result = run("verify", "--json", *MEMORY, self.write("file.vbf", content))
        self.assertEqual(result.stderr, b"")
        report = json.loads(result.stdout)
        self.assertEqual(result.returncode, 1 if report["findings"] else 0)
        return report

    def expect_finding(self, content, what, position, stack=None):
        report = self.verify(content)
        found = [(entry["position"], entry["stack"]) for entry in report["findings"] if what in entry["what"]]
        self.assertIn((position, stack), found, report)
        return report

    def expect_note(self, content, what, position):
        report = self.verify(content)
        self.assertEqual(report["findings"], [])
        self.assertIn(position, [entry["position"] for entry in report["notes"] if what in entry["what"]], report)

    def test_a_sound_file_has_no_faults(self):
        for stacks in ([], [PLAIN], [PLAIN, ZIPPED, PLAIN]):
            for version in (1, 2):
                report = self.verify(vbf_records.file(stacks, b"about", version, {b"ome_xml": b"<OME/>"}))
                self.assertEqual((report["findings"], report["notes"]), ([], []))
                self.assertEqual(report["readable_stacks"], list(range(len(stacks))))

    def test_every_stack_of_the_golden_files_is_judged_by_its_purpose(self):
        files = sorted(glob.glob(os.path.join(REPOSITORY, "tests", "golden", "*.vbf")))
        self.assertGreater(len(files), 10)
        for path in files:
            name = os.path.basename(path)[:-4]
            result = run("verify", path)
            with self.subTest(name):
                self.assertEqual(result.returncode, 1 if name in GOLDEN_FAULTS else 0, result.stdout)
                self.assertIn(GOLDEN_FAULTS.get(name, "no faults").encode(), result.stdout)

    def test_good_sample_files_are_clean_and_bad_ones_are_not(self):
        good = sorted(glob.glob(os.path.join(DATA, "vbf", "good", "*.vbf")))
        bad = sorted(glob.glob(os.path.join(DATA, "vbf", "bad", "*.vbf")))
        if not good or not bad:
            self.skipTest(f"no sample data in {DATA}")
        for path in good:
            with self.subTest(path):
                result = run("verify", *MEMORY, path)
                self.assertEqual((result.returncode, result.stderr), (0, b""), result.stdout)
        for path in bad:
            with self.subTest(path):
                result = run("verify", *MEMORY, path)
                readable = os.path.basename(path)[:-4] in READABLE_BAD_FILES
                self.assertIn(result.returncode, (0,) if readable else (1, 4), result.stdout)
                self.assertEqual(result.returncode == 4, result.stderr != b"")

    def test_another_kind_of_file_is_refused(self):
        for content in (b"", b"VREL_BF\n", b"something else, and enough of it"):
            result = run("verify", "--json", self.write("file.vbf", content))
            self.assertEqual((result.returncode, result.stdout), (4, b""))
            self.assertIn(b"vrel: ", result.stderr)

    def test_a_missing_file_is_the_systems(self):
        self.assertEqual(run("verify", os.path.join(self.folder, "missing")).returncode, 3)

    def test_several_files_end_with_the_worst_code(self):
        good = self.write("good", vbf_records.file([PLAIN]))
        faulty = self.write("faulty", vbf_records.file([PLAIN], closed=False))
        other = self.write("other", b"something else, and enough of it")
        for files, code in (([good, faulty], 1), ([faulty, good], 1), ([other, faulty, good], 4)):
            result = run("verify", "--json", *files)
            self.assertEqual(result.returncode, code)
            reports = [json.loads(line) for line in result.stdout.splitlines()]
            self.assertEqual([report["file"] for report in reports], [name for name in files if name != other])

    def test_people_read_what_is_wrong_and_what_can_be_read(self):
        content = vbf_records.file([PLAIN, ZIPPED])
        magic = content.rfind(b"VREL_BF_STACK\n")
        result = run("verify", self.write("file.vbf", put(content, magic, "<B", 0)))
        self.assertIn(f"stack 1, byte {magic}: Stack header not in vbf format!".encode(), result.stdout)
        self.assertIn(b"2 stacks, 1 fault; stacks that can be read whole: 0\n", result.stdout)

    def test_a_broken_file_header_is_a_finding(self):
        self.expect_finding(put(vbf_records.file([PLAIN]), 22, "<I", 1 << 30), "Failed reading", 22)
        self.expect_finding(put(vbf_records.file([PLAIN]), 10, "<I", 7), "format version 7 is not known", 10)

    def test_a_link_that_leads_nowhere_is_told_with_its_place(self):
        content = vbf_records.file([PLAIN, PLAIN])
        first = struct.unpack_from("<Q", content, 14)[0]
        second = struct.unpack_from("<Q", content, first + 360)[0]
        for target in (first, len(content), 1 << 63, first + 100):
            report = self.expect_finding(put(content, first + 360, "<Q", target), "The link leads", first + 360)
            self.assertEqual(report["readable_stacks"], [0])
        report = self.expect_finding(put(content, second + 360, "<Q", first), "The link leads", second + 360)
        self.assertEqual(report["readable_stacks"], [0, 1])

    def test_behind_a_damaged_stack_checking_goes_on(self):
        content = vbf_records.file([PLAIN, ZIPPED, PLAIN])
        first = struct.unpack_from("<Q", content, 14)[0]
        footer = first + 368 + len(PLAIN.name) + len(SAMPLES)
        report = self.expect_finding(put(content, footer, "<I", 1), "Stack footer not in vbf format!", footer, 0)
        self.assertEqual((report["stacks"], report["readable_stacks"]), (3, []))

    def test_raw_data_of_another_size_is_a_finding(self):
        stack = Stack((16, 16, 17), SAMPLES)
        self.expect_finding(vbf_records.file([stack], version=1), "its samples take 4352", 26 + 368, 0)

    def test_a_data_length_that_wraps_is_told_at_the_data(self):
        content = put(vbf_records.file([PLAIN], version=1), 26 + 352, "<Q", (1 << 64) - 26 - 368 - 5)
        self.expect_finding(content, "Invalid stack position", 26 + 368 + len(PLAIN.name), 0)

    def test_fields_that_nobody_knows_are_findings(self):
        content = vbf_records.file([PLAIN], version=1)
        self.expect_finding(put(content, 26 + 328, "<I", 2), "compression type 2", 26 + 328, 0)
        self.expect_finding(put(content, 26 + 324, "<i", 3), "data type 3", 26 + 324, 0)

    def stream_file(self, stack=ZIPPED):
        content = vbf_records.file([stack], version=1)
        return content, 26 + 368 + len(stack.name), len(vbf_records.stream(stack)[0])

    def test_every_damaged_byte_of_a_stream_is_found(self):
        content, begin, size = self.stream_file()
        for offset in range(0, size, 7):
            damaged = put(content, begin + offset, "<B", content[begin + offset] ^ 0x55)
            with self.subTest(offset):
                self.assertGreater(len(self.verify(damaged)["findings"]), 0)

    def test_a_wrong_checksum_is_told_at_its_place(self):
        content, begin, size = self.stream_file()
        place = begin + size - 4
        self.expect_finding(put(content, place, ">I", 1), "checksum of the samples is wrong", place, 0)

    def test_a_stream_of_too_few_samples_is_a_finding(self):
        stack = Stack((16, 16, 17), SAMPLES, level=6)
        content, begin, size = self.stream_file(stack)
        self.expect_finding(content, "ends with 4096 of 4352 bytes", begin + size - 4, 0)

    def test_a_stream_of_too_many_samples_is_a_note(self):
        stack = Stack((16, 16, 15), SAMPLES, level=6)
        report = self.verify(self.stream_file(stack)[0])
        self.assertEqual(report["findings"], [])
        self.assertIn("goes on behind the last sample", report["notes"][0]["what"])

    def flush_table(self, points):
        """A file whose flush points are others."""
        content, begin, size = self.stream_file()
        table = begin + size + 1444 + 3 * 4
        return put(content, table, f"<{len(points)}Q", *points), begin

    def test_flush_points_are_checked_one_by_one(self):
        points = vbf_records.stream(ZIPPED)[1]
        self.assertEqual(len(points), 4)
        content, begin = self.flush_table(points)
        self.assertEqual(self.verify(content)["findings"], [])
        for wrong, what in (([points[0] - 1, *points[1:]], "Flush point 1 stands inside a block"),
                            ([points[0], points[1] + 1, *points[2:]], "Flush point 2 stands inside a block"),
                            ([points[1], points[0], *points[2:]], "Flush point 2 does not lie behind"),
                            ([*points[:3], 1 << 40], "Flush point 4 lies behind the data"),
                            ([*points[:3], points[3] + 3], "Flush point 4 lies behind the end of the stream"),
                            ([points[1], *points[2:], points[3]], "Flush point 1 stands at byte 2048")):
            with self.subTest(what):
                number = int(what.split()[2]) - 1
                position = (begin + wrong[number]) % (1 << 64)
                self.expect_finding(self.flush_table(wrong)[0], what, position, 0)

    def test_a_flush_point_that_is_none_is_found_though_the_stream_is_sound(self):
        encoder = zlib.compressobj(6)
        first = encoder.compress(SAMPLES[:2048]) + encoder.flush(zlib.Z_SYNC_FLUSH)
        stream = first + encoder.compress(SAMPLES[2048:]) + encoder.flush()
        stack = Stack((16, 16, 16), stream, block=2048)
        content = vbf_records.header(stack, len(stream), 0)
        content += stream + vbf_records.footer(stack, 26 + len(content) + len(stream), [len(first)])
        content = vbf_records.file_header(26, b"", 1, 0) + put(content, 328, "<Ii", 1, 6)
        report = self.expect_finding(content, "cannot be decoded from", 26 + 368 + len(first), 0)
        self.assertEqual(len(report["findings"]), 1)

    def test_metadata_and_ome_text_are_read(self):
        stack = Stack((2,), b"ab", metadata=b"<root/>")
        self.expect_finding(vbf_records.file([stack], version=1), "Invalid metadata found!", 26 + 368 + 2, 0)
        content = vbf_records.file([PLAIN], entries={b"ome_xml": b"<OME><a></OME>"})
        place = struct.unpack_from("<Q", content, 26)[0]
        self.expect_finding(content, "The OME metadata is no XML from its byte 13 on", place)

    def test_the_dictionary_is_checked(self):
        content = vbf_records.file([PLAIN], entries={b"key": b"value"})
        place = struct.unpack_from("<Q", content, 26)[0]
        self.expect_finding(put(content, 26, "<Q", 0), "The file was not closed", 26)
        self.expect_finding(put(content, 26, "<Q", 5), "The position of the dictionary, 5", 26)
        self.expect_finding(put(content, 26, "<Q", len(content)), "The position of the dictionary", 26)
        self.expect_finding(content[:-1], "The dictionary is cut off or damaged", place)

    def test_an_uncommitted_stack_is_a_note(self):
        content = vbf_records.killed([PLAIN], ZIPPED, version=1)
        self.expect_note(content, "A stack that was not committed", content.rfind(b"VREL_BF_STACK\n"))

    def test_a_killed_writer_is_told_by_the_missing_dictionary(self):
        self.expect_finding(vbf_records.killed([PLAIN], ZIPPED), "The file was not closed", 26)

    def test_a_whole_stack_without_link_is_a_note(self):
        content = vbf_records.file([PLAIN, ZIPPED], version=1)
        self.expect_note(put(content, 26 + 360, "<Q", 0), "A whole stack that no link reaches",
                         content.rfind(b"VREL_BF_STACK\n"))

    def test_dead_bytes_are_a_note(self):
        content = vbf_records.file([PLAIN])
        self.expect_note(content + b"dead", "4 bytes belong to nothing", len(content))

    def test_a_footer_that_tells_another_end_is_a_note(self):
        content = vbf_records.file([PLAIN], version=1)
        footer = 26 + 368 + len(PLAIN.name) + len(SAMPLES)
        self.expect_note(put(content, footer + 1432, "<Q", 99), "ends at 99", footer)

    def test_stacks_that_lie_over_one_another_end_the_chain(self):
        content = vbf_records.file([PLAIN], version=1)
        hidden = vbf_records.header(Stack((1,), b"", has_data=0), 0, 0)
        inside = 26 + 368 + len(PLAIN.name)
        content = content[:inside] + hidden + content[inside + len(hidden):]
        self.expect_finding(put(content, 26 + 360, "<Q", inside), "into what was read already", 26 + 360)

    def test_random_damage_is_told_in_order(self):
        whole = vbf_records.file([PLAIN, ZIPPED, Stack((2,), b"ab", tags={b"key": b"value"})], b"about", 2,
                                 {b"ome_xml": b"<OME/>"})
        for seed in range(150):
            source = random.Random(seed)
            content = bytearray(whole)
            for _ in range(source.randint(1, 8)):
                place = source.choice([source.randrange(len(content)), source.randrange(460), len(content) - 1 -
                                       source.randrange(1600)])
                content[place] = source.randrange(256)
            content = bytes(content[:source.choice([len(content), source.randrange(len(content))])])
            result = run("verify", "--json", *MEMORY, self.write("file.vbf", content))
            with self.subTest(seed=seed):
                self.assertIn(result.returncode, (0, 1, 4), result.stderr)
                for line in result.stdout.splitlines():
                    json.loads(line)

    def test_a_chain_that_reads_the_same_sections_again_and_again_ends(self):
        """Thousands of headers, each of which leads to one broken footer at the end of the file."""
        count, start = 20000, 26
        footer = start + 368 * count
        content = bytearray(vbf_records.file_header(start, b"", 1, 0))
        for number in range(count):
            place = start + 368 * number
            stack = Stack((1,), b"")
            content += vbf_records.header(stack, footer - place - 368, place + 368)
        tail = bytearray(vbf_records.footer(Stack((1,), metadata=b"x" * (4 << 20)), footer, []))
        content += tail[:-2]
        report = self.verify(bytes(content))
        self.assertGreater(len(report["findings"]), 0)


if __name__ == "__main__":
    unittest.main()
