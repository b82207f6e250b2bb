"""The program from outside: exit codes, streams, files that appear or do not, signals."""

import json
import os
import resource
import signal
import stat
import subprocess
import time
import unittest

import numpy

import vbf_bytes
from vrel_program import FolderTestCase, PROGRAM, TIME_LIMIT, run, wait_until

SAMPLES = numpy.arange(24, dtype="<u2")


class CommandLineTest(FolderTestCase):
    def setUp(self):
        super().setUp()
        self.good = self.write("good.vbf", vbf_bytes.file([
            dict(samples=SAMPLES.tobytes(), sizes=(6, 4), name=b"first"),
            dict(samples=b"\x07\x08\x09", sizes=(3,), data_type=1, tags={b"key": b"value"}),
            dict(samples=b"\x2a", data_type=1)], b"about"))
        content = bytearray(self.content(self.good))
        content[content.rfind(b"VREL_BF_STACK\n")] = 0
        self.damaged = self.write("damaged.vbf", content)
        self.other = self.write("other.vbf", b"something else, and enough of it")

    def names(self):
        return sorted(set(os.listdir(self.folder)) - {"good.vbf", "damaged.vbf", "other.vbf"})

    def expect(self, result, code, error=""):
        self.assertEqual((result.returncode, result.stderr.decode()), (code, error))

    def large(self, mebibytes=64):
        """A stack without data reads as zeros, so a few bytes stand for any size."""
        content = vbf_bytes.file([dict(samples=b"", sizes=(1 << 20, mebibytes), data_type=1)])
        return self.write("large.vbf", content)

    # Usage

    def test_version_is_told(self):
        result = run("--version")
        self.assertEqual((result.returncode, result.stdout), (0, b"vrel 0.1.0\n"))

    def test_help_lists_verbs_and_exit_codes(self):
        result = run("--help")
        self.assertEqual(result.returncode, 0)
        for text in (b"info", b"export", b"units", b"130", b"wrong usage", b"damaged"):
            self.assertIn(text, result.stdout)

    def test_every_verb_has_its_help(self):
        for verb, option in (("info", b"--json"), ("export", b"--offset"), ("units", b"--in")):
            result = run(verb, "--help")
            self.assertEqual(result.returncode, 0)
            self.assertIn(option, result.stdout)

    def test_wrong_usage_is_2_and_leaves_standard_output_empty(self):
        export = ["export", self.good, "--output", "-"]
        for arguments in ([], ["unknown"], ["info"], ["info", "--unknown", self.good], ["export", self.good],
                          export, [*export, "--stack", "-1"], [*export, "--stack", "x"],
                          [*export, "--stack", "1x"], [*export, "--stack", ""], [*export, "--stack", "+1"],
                          [*export, "--stack", "18446744073709551616"],
                          [*export, "--stack", "0", "--count", "-5"],
                          ["export", self.good, "--stack", "0", "--output", self.path("out.txt")],
                          ["export", self.good, "--stack", "0", "--output", ""],
                          ["export", self.good, "--stack", "0"],
                          ["units"], ["units", "1 m", "--in"], ["units", "1 m", "2 m"]):
            with self.subTest(arguments):
                result = run(*arguments)
                self.assertEqual((result.returncode, result.stdout), (2, b""))
                self.assertTrue(result.stderr.startswith(b"vrel: "))
        self.assertEqual(self.names(), [])

    def test_a_word_that_is_no_command_is_named(self):
        self.assertIn(b"'unknown' is no command", run("unknown", self.good).stderr)

    @unittest.skipIf(os.environ.get("VRELIO_SANITIZE"), "a sanitizer needs the memory for itself")
    def test_memory_is_taken_up_to_a_limit(self):
        tag = self.write("tag.vbf", vbf_bytes.file([
            dict(samples=b"abc", sizes=(3,), data_type=1, tags={b"long": b"x" * (8 << 20)})]))
        self.assertEqual(run("info", tag).returncode, 0)
        out_of_memory = f"vrel: {tag}: Out of memory! --max-memory sets the limit.\n"
        self.expect(run("info", tag, "--max-memory", "4MiB"), 3, out_of_memory)
        self.expect(run("--max-memory", "4 MiB", "info", "--json", tag), 3, out_of_memory)
        self.expect(run("export", self.large(), "--stack", "0", "--output", self.path("out.raw"), "--max-memory", "3MiB"),
                    3, f"vrel: {self.path('large.vbf')}: Out of memory! --max-memory sets the limit.\n")
        self.assertEqual(self.names(), ["large.vbf", "tag.vbf"])
        for size in ("", "x", "-1", "1.5", "4 bananas"):
            self.assertEqual(run("info", tag, "--max-memory", size).returncode, 2, size)

    # info

    def test_info_describes_a_file_for_people(self):
        result = run("info", self.good)
        self.expect(result, 0)
        text = result.stdout.decode()
        for part in (self.good, '"about"', 'stack 0: "first"', "6 x 4", '"key" = "value"'):
            self.assertIn(part, text)

    def test_info_describes_a_file_for_programs(self):
        result = run("info", "--json", self.good)
        self.expect(result, 0)
        description = json.loads(result.stdout)
        self.assertEqual([entry["sizes"] for entry in description["stacks"]], [[6, 4], [3], []])
        self.assertEqual(description["stacks"][1]["tags"], {"key": "value"})
        self.assertNotIn("error", description)

    def test_info_gives_a_json_text_per_file(self):
        result = run("info", "--json", self.good, self.good)
        self.expect(result, 0)
        first, second = result.stdout.splitlines()
        self.assertEqual(json.loads(first), json.loads(second))

    def test_info_shows_what_stands_in_front_of_the_damage(self):
        message = "Stack header not in vbf format!"
        result = run("info", self.damaged)
        self.expect(result, 4, f"vrel: {self.damaged}: {message}\n")
        self.assertIn(b"stack 1", result.stdout)
        self.assertNotIn(b"stack 2", result.stdout)
        result = run("info", "--json", self.damaged)
        self.expect(result, 4, f"vrel: {self.damaged}: {message}\n")
        description = json.loads(result.stdout)
        self.assertEqual((len(description["stacks"]), description["error"]), (2, message))

    def test_info_prints_nothing_for_another_kind_of_file(self):
        for option in ([], ["--json"]):
            result = run("info", *option, self.other)
            self.expect(result, 4, f"vrel: {self.other}: No VBF file header found!\n")
            self.assertEqual(result.stdout, b"")

    def test_info_of_a_missing_file_names_the_system_error(self):
        missing = self.path("missing.vbf")
        self.expect(run("info", missing), 3, f"vrel: {missing}: Could not open file!\n"
                                             "    os_error(2): No such file or directory\n")

    def test_info_of_a_folder_is_refused_by_the_system(self):
        result = run("info", self.folder)
        self.assertEqual((result.returncode, result.stdout), (3, b""))

    def test_info_goes_on_and_ends_with_the_worst_code(self):
        missing = self.path("missing.vbf")
        for files, code in (([missing, self.good], 3), ([self.other, missing, self.good], 4),
                            ([missing, self.other, self.good], 4)):
            result = run("info", "--json", *files)
            self.assertEqual(result.returncode, code)
            self.assertEqual(len(result.stdout.splitlines()), 1)
            self.assertEqual(result.stderr.count(b"vrel: "), len(files) - 1)

    def test_info_reads_a_file_that_is_locked(self):
        with subprocess.Popen(["flock", self.good, "cat"], stdin=subprocess.PIPE) as holder:
            self.expect(run("info", self.good), 0)
            holder.stdin.close()

    # export

    def export(self, *arguments, file=None, **options):
        return run("export", file or self.good, *arguments, **options)

    def test_npy_file_holds_the_stack_with_its_slowest_axis_first(self):
        output = self.path("out.npy")
        self.expect(self.export("--stack", "0", "--output", output), 0)
        array = numpy.load(output)
        self.assertEqual(array.dtype, numpy.dtype("<u2"))
        numpy.testing.assert_array_equal(array, SAMPLES.reshape(4, 6))
        self.assertEqual(self.names(), ["out.npy"])

    def test_npy_file_of_a_single_sample_has_no_axis(self):
        output = self.path("out.npy")
        self.expect(self.export("--stack", "2", "--output", output), 0)
        array = numpy.load(output)
        self.assertEqual((array.shape, array[()]), ((), 42))

    def test_npy_file_of_a_range_has_one_axis(self):
        output = self.path("out.npy")
        self.expect(self.export("--stack", "0", "--output", output, "--offset", "5", "--count", "7"), 0)
        numpy.testing.assert_array_equal(numpy.load(output), SAMPLES[5:12])

    def test_every_data_type_reaches_numpy(self):
        content = bytes(range(1, 33))
        expected = {1: "u1", 2: "i1", 4: "<u2", 8: "<i2", 16: "<u4", 32: "<i4", 64: "<f4", 128: "<f8",
                    4096: "<u8", 8192: "<i8", 0x40000040: "<c8", 0x40000080: "<c16"}
        expected.update({0x40000000 | id: [("re", expected[id]), ("im", expected[id])]
                         for id in (1, 2, 4, 8, 16, 32, 4096, 8192)})
        for id, descriptor in expected.items():
            with self.subTest(hex(id)):
                kind = numpy.dtype(descriptor)
                count = len(content) // kind.itemsize
                source = self.write("type.vbf", vbf_bytes.file(
                    [dict(samples=content, sizes=(count,), data_type=id)]))
                output = self.path("type.npy")
                self.expect(self.export("--stack", "0", "--output", output, "--force", file=source), 0)
                array = numpy.load(output)
                self.assertEqual((array.dtype, array.shape), (kind, (count,)))
                self.assertEqual(array.tobytes(), content)

    def test_raw_file_and_standard_output_hold_the_bytes(self):
        output = self.path("out.raw")
        self.expect(self.export("--stack", "0", "--output", output), 0)
        self.assertEqual(self.content(output), SAMPLES.tobytes())
        result = self.export("--stack", "0", "--output", "-")
        self.expect(result, 0)
        self.assertEqual(result.stdout, SAMPLES.tobytes())

    def test_ranges_are_given_in_samples(self):
        for arguments, expected in ((["--offset", "20"], SAMPLES[20:]), (["--count", "3"], SAMPLES[:3]),
                                    (["--offset", "010"], SAMPLES[10:]), (["--offset", "24"], SAMPLES[24:]),
                                    (["--offset", "2", "--count", "0"], SAMPLES[:0])):
            with self.subTest(arguments):
                result = self.export("--stack", "0", "--output", "-", *arguments)
                self.expect(result, 0)
                self.assertEqual(result.stdout, expected.tobytes())

    def test_samples_that_do_not_exist_are_refused_and_leave_no_file(self):
        output = self.path("out.raw")
        top = "18446744073709551615"
        for arguments in (["--offset", "25"], ["--count", "25"], ["--offset", "20", "--count", "5"],
                          ["--offset", "2", "--count", top], ["--offset", top, "--count", "2"]):
            with self.subTest(arguments):
                result = self.export("--stack", "0", "--output", output, *arguments)
                self.expect(result, 4, f"vrel: {self.good}: Trying to read beyond segment boundary!\n")
                self.assertEqual(self.names(), [])

    def test_a_stack_that_does_not_exist_is_named(self):
        self.expect(self.export("--stack", "3", "--output", "-"), 4,
                    f"vrel: {self.good}: Invalid stack index 3!\n")

    def test_a_stack_in_front_of_the_damage_is_exported_with_a_warning(self):
        result = self.export("--stack", "0", "--output", "-", file=self.damaged)
        self.expect(result, 0, f"vrel: {self.damaged}: warning: Stack header not in vbf format!\n")
        self.assertEqual(result.stdout, SAMPLES.tobytes())

    def test_a_stack_behind_the_damage_tells_the_damage(self):
        self.expect(self.export("--stack", "2", "--output", "-", file=self.damaged), 4,
                    f"vrel: {self.damaged}: Stack header not in vbf format!\n")

    def test_a_type_without_samples_is_refused_and_leaves_no_file(self):
        source = self.write("cell.vbf", vbf_bytes.file([dict(samples=b"abc", sizes=(3,), data_type=16384)]))
        result = self.export("--stack", "0", "--output", self.path("out.npy"), file=source)
        self.assertEqual(result.returncode, 4)
        self.assertEqual(self.names(), ["cell.vbf"])

    def test_an_existing_file_is_replaced_only_by_force(self):
        output = self.write("out.raw", b"old")
        self.expect(self.export("--stack", "1", "--output", output), 3,
                    f"vrel: {output}: Output file exists already, --force replaces it!\n"
                    "    os_error(17): File exists\n")
        self.assertEqual(self.content(output), b"old")
        self.expect(self.export("--stack", "1", "--output", output, "--force"), 0)
        self.assertEqual(self.content(output), b"\x07\x08\x09")
        self.assertEqual(self.names(), ["out.raw"])

    def test_a_failed_export_by_force_keeps_the_old_file(self):
        output = self.write("out.raw", b"old")
        result = self.export("--stack", "0", "--output", output, "--force", "--count", "99")
        self.assertEqual(result.returncode, 4)
        self.assertEqual(self.content(output), b"old")

    def test_output_has_the_permissions_of_an_ordinary_file(self):
        output = self.path("out.raw")
        self.expect(self.export("--stack", "0", "--output", output, preexec_fn=lambda: os.umask(0o027)), 0)
        self.assertEqual(stat.S_IMODE(os.stat(output).st_mode), 0o640)

    def test_output_into_a_folder_that_does_not_exist_is_refused(self):
        output = self.path("missing/out.raw")
        self.expect(self.export("--stack", "0", "--output", output), 3,
                    f"vrel: {output}: Could not create output file!\n"
                    "    os_error(2): No such file or directory\n")

    # units

    def test_units_tells_a_value_in_the_unit_that_fits(self):
        for text, shown in (("10 nm", "10 nm"), ("0.01 \u00b5m", "10 nm"), ("3 \u03bcm", "3 \u00b5m"),
                            ("kg*m/s^2", "1 N"), ("7", "7")):
            with self.subTest(text):
                result = run("units", text)
                self.expect(result, 0)
                self.assertEqual(result.stdout.decode(), shown + "\n")

    def test_units_tells_a_value_in_a_unit_as_typed(self):
        result = run("units", "10 nm", "--in", "\u00b5m")
        self.expect(result, 0)
        self.assertEqual(result.stdout.decode(), "0.01 \u00b5m\n")

    def test_units_answers_programs(self):
        exponents = [[1, 1]] + [[0, 1]] * 8
        for arguments, number, unit in (([], 10, "nm"), (["--in", "um"], 0.01, "um")):
            result = run("units", "10 nm", "--json", *arguments)
            self.expect(result, 0)
            self.assertEqual(json.loads(result.stdout),
                             {"number": number, "unit": unit, "factor": 1e-8, "exponents": exponents})
        self.assertIsNone(json.loads(run("units", "1e999", "--json").stdout)["number"])

    def test_units_refuses_a_text_that_names_nothing(self):
        for text in ("?", "3 am", "3 \u00e4m", "m(", "1eV"):
            self.expect(run("units", text), 4, f"vrel: {text}: No physical value!\n")
            self.expect(run("units", "1 m", "--in", text), 4, f"vrel: {text}: No unit!\n")
        self.expect(run("units", ""), 4, "vrel: No physical value!\n")

    def test_units_of_other_dimensions_are_named(self):
        result = run("units", "3 J", "--in", "s")
        self.expect(result, 1, "vrel: 3 J: A value in m^2*kg*s^-2 cannot be told in s!\n")
        self.assertEqual(result.stdout, b"")

    def test_units_takes_a_text_that_begins_with_a_sign(self):
        for arguments in (["-5 m"], ["--", "-5 m"], ["--in", "m", "--", "-5 m"]):
            result = run("units", *arguments)
            self.expect(result, 0)
            self.assertEqual(result.stdout, b"-5 m\n")
        self.assertEqual(run("units", "--", "-.5 m").stdout, b"-0.5 m\n")

    def test_units_reads_a_long_text(self):
        result = run("units", "(" * 60000 + "m" + ")" * 60000)
        self.expect(result, 0)
        self.assertEqual(result.stdout, b"1 m\n")

    # The system

    @unittest.skipUnless(os.path.exists("/dev/full"), "no /dev/full")
    def test_a_full_standard_output_is_told(self):
        for arguments in (["info", self.good], ["info", "--json", self.good], ["--help"], ["--version"],
                          ["export", self.good, "--stack", "0", "--output", "-"], ["units", "1 m"]):
            with self.subTest(arguments), open("/dev/full", "wb") as full:
                result = subprocess.run([PROGRAM, *arguments], stdout=full, stderr=subprocess.PIPE,
                                        timeout=TIME_LIMIT)
                self.expect(result, 3, "vrel: standard output: Could not write!\n"
                                       "    os_error(28): No space left on device\n")

    def test_a_file_that_grows_beyond_the_limit_is_told_and_leaves_nothing(self):
        limit = 1 << 20
        output = self.path("out.raw")
        result = self.export("--stack", "0", "--output", output, file=self.large(),
                             preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        self.expect(result, 3, f"vrel: {output}: Could not write!\n    os_error(27): File too large\n")
        self.assertEqual(self.names(), ["large.vbf"])

    def test_a_closed_pipe_ends_silently(self):
        with subprocess.Popen([PROGRAM, "export", self.large(), "--stack", "0", "--output", "-"],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            self.assertEqual(len(process.stdout.read(1000)), 1000)
            process.stdout.close()
            self.assertEqual(process.stderr.read(), b"")
            self.assertEqual(process.wait(TIME_LIMIT), -signal.SIGPIPE)

    def test_an_interruption_leaves_no_half_file(self):
        source = self.large(mebibytes=4000)
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(number):
                process = subprocess.Popen([PROGRAM, "export", source, "--stack", "0", "--output",
                                            self.path("out.raw")], stderr=subprocess.PIPE)
                wait_until(lambda: len(self.names()) > 1)
                self.assertNotIn("out.raw", self.names())
                process.send_signal(number)
                self.assertEqual(process.communicate(timeout=TIME_LIMIT)[1], b"")
                self.assertEqual((process.returncode, self.names()), (130, ["large.vbf"]))

    def test_an_interruption_of_a_full_pipe_ends_at_once(self):
        process = subprocess.Popen([PROGRAM, "export", self.large(), "--stack", "0", "--output", "-"],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        process.stdout.read(1)
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(TIME_LIMIT), 130)
        process.communicate()

    def start_endless_export(self, stderr):
        """An export of 64 GiB, which nobody waits for."""
        source = self.write("endless.vbf", vbf_bytes.file(
            [dict(samples=b"", sizes=(1 << 20, 4000), data_type=0x40000080)]))
        process = subprocess.Popen([PROGRAM, "export", source, "--stack", "0", "--output", "-"],
                                   stdout=subprocess.DEVNULL, stderr=stderr)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def test_progress_is_shown_on_a_terminal(self):
        terminal, terminal_of_child = os.openpty()
        self.addCleanup(os.close, terminal)
        self.start_endless_export(terminal_of_child)
        os.close(terminal_of_child)
        self.assertRegex(os.read(terminal, 200).decode(), r"^\r\x1b\[K\[#*\.+\] +\d+ %  [\d.]+ MB/s  \d+ s left$")

    def test_progress_is_not_shown_elsewhere(self):
        process = self.start_endless_export(subprocess.PIPE)
        time.sleep(1)
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.communicate(timeout=TIME_LIMIT)[1], b"")


    # props

    def tree(self):
        return self.write("tree.xml", b'<root idx="1" type="struct" size="1 1" vprop_version="1">'
                          b'<rate idx="1" type="double" size="1 1">2.5</rate>'
                          b'<name idx="1" type="char" size="1 1">a</name></root>')

    def test_props_shows_a_tree_for_people(self):
        result = run("props", self.tree())
        self.expect(result, 0)
        self.assertEqual(result.stdout, b'struct\n  rate: double 2.5\n  name: char "a"\n')

    def test_props_shows_a_tree_for_programs(self):
        result = run("props", "--json", self.tree())
        self.expect(result, 0)
        self.assertEqual(json.loads(result.stdout), {"rate": 2.5, "name": "a"})

    def test_props_shows_the_value_at_a_path(self):
        tree = self.tree()
        self.assertEqual(run("props", tree, "--get", "rate").stdout, b"2.5\n")
        self.assertEqual(run("props", tree, "--get", "rate", "--json").stdout, b"2.5\n")
        result = run("props", tree, "--get", "speed")
        self.expect(result, 4, f"vrel: {tree}: Struct member 'speed' does not exist!\n")

    def test_props_writes_a_changed_tree(self):
        tree, output = self.tree(), self.path("changed.xml")
        before = self.content(tree)
        self.expect(run("props", tree, "--set", "rate=5", "--set", "new.x=7", "--output", output), 0)
        self.assertEqual(json.loads(run("props", "--json", output).stdout), {"rate": 5, "name": "a", "new": {"x": 7}})
        self.assertEqual(self.content(tree), before)

    def test_props_is_a_filter_too(self):
        with open(self.tree(), "rb") as tree:
            result = run("props", "-", "--set", "name=b", "--output", "-", stdin=tree)
        self.expect(result, 0)
        self.assertEqual(run("props", "-", "--get", "name", input=result.stdout).stdout, b"b\n")

    def test_props_leaves_no_file_for_a_value_that_does_not_fit(self):
        tree = self.tree()
        result = run("props", tree, "--set", "rate=fast", "--output", self.path("changed.xml"))
        self.expect(result, 4, f"vrel: {tree}: 'fast' is no value of the kind double!\n")
        self.assertEqual(self.names(), ["tree.xml"])

    def test_props_replaces_a_file_only_by_force(self):
        tree = self.tree()
        self.assertEqual(run("props", tree, "--set", "rate=5", "--output", tree).returncode, 3)
        self.expect(run("props", tree, "--set", "rate=5", "--output", tree, "--force"), 0)
        self.assertEqual(run("props", tree, "--get", "rate").stdout, b"5\n")

    def test_props_refuses_what_it_would_not_do(self):
        tree = self.tree()
        for arguments in (["--set", "rate=5"], ["--force"], ["--get", "rate", "--output", "-"]):
            with self.subTest(arguments=arguments):
                self.assertEqual(run("props", tree, *arguments).returncode, 2)

    def test_props_of_another_kind_of_file_is_damaged_input(self):
        result = run("props", self.other)
        self.assertEqual((result.returncode, result.stdout), (4, b""))
        self.assertIn(b"Error parsing XML properties:", result.stderr)
        self.assertEqual(run("props", self.path("missing.xml")).returncode, 3)

    # json2xml, xml2json

    def test_values_go_from_one_text_into_the_other_and_back(self):
        text = b'{"a":{"":{"b":[1,2.5,"x\\ny"]},"c":true}}\n'
        xml = run("json2xml", input=text)
        self.assertEqual((xml.returncode, xml.stderr), (0, b""))
        self.assertEqual(xml.stdout, b'<?xml version="1.0" encoding="UTF-8"?>'
                         b'<a c="true"><b>1</b><b>2.5</b><b>x\ny</b></a>\n')
        back = run("xml2json", input=xml.stdout)
        self.assertEqual((back.returncode, back.stdout, back.stderr), (0, text, b""))
        json.loads(back.stdout)

    def test_a_text_that_is_no_document_is_damaged_input(self):
        for verb, text, message in (
                ("json2xml", b"[1]", b"Unexpected '[' character in object value at byte 1"),
                ("json2xml", b"", b"The input ends inside the document at byte 0"),
                ("json2xml", b'{"a":{"b":[1]}}', b"No xml attribute"),
                ("xml2json", b"<a>", b"The input ends inside the document at byte 3"),
                ("xml2json", b"<a></b>", b"Unexpected b end tag at byte 7")):
            with self.subTest(verb=verb, text=text):
                result = run(verb, input=text)
                self.assertEqual(result.returncode, 4)
                self.assertEqual(result.stderr, b"vrel: standard input: " + message + b"\n")

    def test_a_filter_takes_documents_of_many_slices(self):
        text = b'{"a":"' + b"x" * (1 << 22) + b'"}\n'
        self.assertEqual(run("xml2json", input=run("json2xml", input=text).stdout).stdout, text)

    @unittest.skipIf(os.environ.get("VRELIO_SANITIZE"), "a sanitizer needs the memory for itself")
    def test_a_filter_keeps_to_the_memory_limit(self):
        result = run("json2xml", "--max-memory", "64MiB", input=b'{"a":' + b"[" * (1 << 22))
        self.assertEqual(result.returncode, 3)
        self.assertEqual(result.stderr, b"vrel: standard input: Out of memory! --max-memory sets the limit.\n")


if __name__ == "__main__":
    unittest.main()
