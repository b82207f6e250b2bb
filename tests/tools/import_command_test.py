"""The verb that makes VBF files of others: samples bit by bit, what becomes of axes, units and names, and
files that appear or do not."""

import json
import os
import random
import signal
import subprocess
import time
import unittest

import numpy
import tifffile

from sample_images import IMAGES, SAMPLE_IMAGES
from vrel_program import FolderTestCase, PROGRAM, TIME_LIMIT, run

SEED = int(os.environ.get("VRELIO_TEST_SEED", "1"))

REAL_TYPES = {"uint8": "u1", "int8": "i1", "uint16": "u2", "int16": "i2", "uint32": "u4", "int32": "i4",
              "uint64": "u8", "int64": "i8", "single": "f4", "double": "f8"}
COMPLEX_TYPES = {"cplx_single": "c8", "cplx_double": "c16"}
MICROMETRE = ("µm", 1e-6)
NANOMETRE = ("nm", 1e-9)


def samples_of(shape, dtype, seed=SEED):
    """Bytes of all kinds, so that every one has to stand in its place."""
    dtype = numpy.dtype(dtype)
    count = int(numpy.prod(shape, dtype=numpy.int64))
    content = numpy.random.default_rng(seed).integers(0, 256, count * dtype.itemsize, dtype=numpy.uint8)
    return numpy.frombuffer(content.tobytes(), dtype).reshape(shape)


class ImportTestCase(FolderTestCase):
    def setUp(self):
        super().setUp()
        self.output = self.path("out.vbf")

    def npy(self, name, array, **options):
        with open(self.path(name), "wb") as file:
            numpy.lib.format.write_array(file, array, **options)
        return self.path(name)

    def run_import(self, *inputs, output=None):
        result = run("import", *inputs, "--output", output or self.output)
        self.assertEqual((result.returncode, result.stdout, result.stderr.decode()), (0, b"", ""))
        return self.stacks(output)

    def describe(self, path=None):
        result = run("info", "--json", path or self.output)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        return json.loads(result.stdout)

    def stacks(self, path=None):
        return self.describe(path)["stacks"]

    def document(self, path=None):
        return self.describe(path)["dictionary"]["ome_xml"]

    def exported(self, stack=0, path=None):
        target = self.path("exported.npy")
        result = run("export", path or self.output, "--stack", stack, "--output", target, "--force")
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        return numpy.load(target)

    def expect_samples(self, array, stack=0):
        found = self.exported(stack)
        self.assertEqual(found.shape, array.shape)
        self.assertEqual(found.tobytes(), array.astype(array.dtype.newbyteorder("<")).tobytes())

    def expect_failure(self, code, message, *arguments):
        before = sorted(os.listdir(self.folder))
        result = run("import", *arguments)
        self.assertEqual(result.returncode, code, result.stderr)
        self.assertIn(message, result.stderr.decode())
        self.assertEqual(result.stdout, b"")
        self.assertEqual(sorted(os.listdir(self.folder)), before)

    def expect_axis(self, stack, axis, length, unit):
        self.assertAlmostEqual(stack["lengths"][axis] / length, 1.0, 6)
        self.assertEqual(stack["units"][axis]["text"], unit[0])
        self.assertAlmostEqual(stack["units"][axis]["factor"] / unit[1], 1.0, 12)

    def expect_axis_is_not_set(self, stack, axis):
        self.assertEqual((stack["lengths"][axis], stack["units"][axis]["text"]), (1.0, "1"))


class NpyTest(ImportTestCase):
    def test_all_types_of_both_byte_orders_keep_their_bits(self):
        for name, code in {**REAL_TYPES, **COMPLEX_TYPES}.items():
            for order in "<>":
                with self.subTest(name=name, order=order):
                    array = samples_of((3, 4, 5), order + code)
                    stack, = self.run_import(self.npy("in.npy", array), "--force")
                    self.assertEqual((stack["data_type"], stack["sizes"]), (name, [5, 4, 3]))
                    self.expect_samples(array)

    def test_truth_values_become_uint8(self):
        array = numpy.array([[True, False, True]])
        stack, = self.run_import(self.npy("in.npy", array))
        self.assertEqual(stack["data_type"], "uint8")
        self.assertEqual(self.exported().tolist(), [[1, 0, 1]])

    def test_integer_complex_records_come_back(self):
        for code in ("u1", "i1", "u2", "i2", "u4", "i4", "u8", "i8"):
            with self.subTest(code):
                array = samples_of((2, 3), [("re", "<" + code), ("im", "<" + code)])
                stack, = self.run_import(self.npy("in.npy", array), "--force")
                self.assertTrue(stack["data_type"].startswith("cplx_"), stack["data_type"])
                self.expect_samples(array)

    def test_all_versions_are_read(self):
        array = samples_of((2, 3), "<u2")
        for version in ((1, 0), (2, 0), (3, 0)):
            with self.subTest(version):
                self.run_import(self.npy("in.npy", array, version=version), "--force")
                self.expect_samples(array)

    def test_fortran_order_keeps_the_axes(self):
        array = samples_of((2, 3, 4), "<u2")
        stack, = self.run_import(self.npy("in.npy", numpy.asfortranarray(array)))
        self.assertEqual(stack["sizes"], [2, 3, 4])
        numpy.testing.assert_array_equal(self.exported(), array.transpose())

    def test_no_axes_and_fifteen(self):
        for code in ("<u1", "<u8"):
            for shape in ((), (2,), (2, 1, 2, 1, 3, 2), (2,) * 15, (0,), (0, 3), (3, 0), (3, 0, 1, 2, 1, 2),
                          (0, 3, 1, 2, 1, 2)):
                with self.subTest(code=code, shape=shape):
                    array = samples_of(shape, code)
                    stack, = self.run_import(self.npy("in.npy", array), "--force")
                    self.assertEqual(stack["sizes"], list(reversed(shape)))
                    if array.size > 0:
                        self.expect_samples(array)

    def test_what_is_larger_than_a_block_goes_in_pieces(self):
        array = samples_of((5, 1000, 1001), "<u2")
        for level in ("0", "1", "9"):
            stack, = self.run_import(self.npy("in.npy", array), "--force", "--compress", level)
            self.assertEqual(stack["compression"]["type"], 0 if level == "0" else 1)
            if level != "0":
                self.assertEqual(stack["compression"]["level"], int(level))
            self.expect_samples(array)

    def test_a_stack_has_the_name_of_its_file_unless_told(self):
        file = self.npy("cells µ.npy", samples_of((2,), "u1"))
        self.assertEqual(self.run_import(file)[0]["name"], "cells µ.npy")
        self.assertIn('Name="cells µ.npy"', self.document())
        self.assertEqual(self.run_import(file, "--name", "<&>", "--force")[0]["name"], "<&>")
        self.assertIn('Name="&lt;&amp;&gt;"', self.document())

    def test_flush_points_stand_where_they_are_asked_for(self):
        file = self.npy("in.npy", samples_of((256, 1024), "u1"))
        self.assertEqual(self.run_import(file, "--flush", "64KiB")[0]["flush"]["block_size"], 65536)
        self.assertEqual(self.run_import(file, "--flush", "0", "--force")[0]["flush"]["positions"], [])

    def test_types_without_a_pixel_type_have_flush_points_as_well(self):
        stack, = self.run_import(self.npy("in.npy", samples_of((64, 64, 64), "<u8")))
        self.assertNotEqual(stack["flush"]["positions"], [])

    def test_broken_files_are_refused(self):
        whole = self.content(self.npy("in.npy", samples_of((2, 3), "<u2")))
        for size in (*range(6, 24), 60, len(whole) - 12, len(whole) - 1):
            with self.subTest(size):
                self.expect_failure(4, f"vrel: {self.path('in.npy')}: ",
                                    self.write("in.npy", whole[:size]), "--output", self.output)
        self.expect_failure(4, "12 bytes of samples are wanted, the file has 13!",
                            self.write("in.npy", whole + b"x"), "--output", self.output)

    def test_damaged_headers_never_end_in_a_signal(self):
        whole = self.content(self.npy("in.npy", samples_of((2, 3), "<u2")))
        generator = random.Random(SEED)
        for turn in range(60):
            content = bytearray(whole)
            for _ in range(generator.randint(1, 3)):
                content[generator.randrange(6, len(whole) - 12)] = generator.randrange(256)
            result = run("import", self.write("in.npy", content), "--output", self.output, "--force")
            self.assertIn(result.returncode, (0, 3, 4), f"seed {SEED}, turn {turn}: {bytes(content)}")

    def test_a_large_shape_takes_no_memory(self):
        header = b"{'descr': '<f8', 'fortran_order': False, 'shape': (4294967295,), }\n"
        file = self.write("in.npy", b"\x93NUMPY\x01\x00" + len(header).to_bytes(2, "little") + header)
        self.expect_failure(4, "34359738360 bytes of samples are wanted, the file has 0!", file, "--output",
                            self.output)

    def test_other_types_are_named(self):
        for dtype in ("<f2", "<U4", "<M8[s]"):
            with self.subTest(dtype):
                file = self.npy("in.npy", numpy.zeros(3, dtype))
                self.expect_failure(4, f'No data type for .npy type "{dtype}"!', file, "--output", self.output)

    def test_standard_input_can_be_an_array(self):
        array = samples_of((3, 4), ">i4")
        content = self.content(self.npy("in.npy", array))
        result = run("import", "-", "--output", self.output, input=content)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.assertEqual(self.stacks()[0]["name"], "")
        self.expect_samples(array)
        for broken in (content[:-1], content + b"x"):
            result = run("import", "-", "--output", self.path("other.vbf"), input=broken)
            self.assertEqual(result.returncode, 4)
            self.assertFalse(os.path.exists(self.path("other.vbf")))


class RawTest(ImportTestCase):
    def test_all_twenty_types_are_known_by_name(self):
        for name, code in REAL_TYPES.items():
            for prefix, parts in (("", 1), ("cplx_", 2)):
                with self.subTest(prefix + name):
                    content = samples_of((4, 3, parts), "<" + code).tobytes()
                    stack, = self.run_import(self.write("in.raw", content), "--type", prefix + name, "--sizes",
                                             "3x4", "--force")
                    self.assertEqual((stack["data_type"], stack["sizes"]), (prefix + name, [3, 4]))
                    self.assertEqual(self.exported().tobytes(), content)

    def test_sizes_are_taken_as_info_prints_them(self):
        file = self.write("in.raw", bytes(range(24)))
        for text in ("2x3x4", "2 x 3 x 4", "2,3,4", "2, 3, 4"):
            stack, = self.run_import(file, "--type", "uint8", "--sizes", text, "--force")
            self.assertEqual(stack["sizes"], [2, 3, 4])
        self.assertIn(b"2 x 3 x 4", run("info", self.output).stdout)

    def test_the_length_has_to_fit(self):
        file = self.write("in.raw", bytes(7))
        self.expect_failure(4, f"vrel: {file}: 8 bytes of samples are wanted, the file has 7!\n", file, "--type",
                            "uint16", "--sizes", "4", "--output", self.output)

    def test_products_do_not_wrap_around(self):
        file = self.write("in.raw", b"")
        for sizes in ("65536x65536", "4294967296", "18446744073709551615x2"):
            self.expect_failure(4, "The product exceeds the maximum size.", file, "--type", "uint8", "--sizes", sizes,
                                "--output", self.output)
        self.expect_failure(4, "16 axes are more than the 15 that a stack can have!", file, "--type", "uint8",
                            "--sizes", ",".join(["1"] * 16), "--output", self.output)

    def test_standard_input_can_be_raw(self):
        result = run("import", "-", "--type", "uint8", "--sizes", "6", "--output", self.output, input=b"abcdef")
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.assertEqual(self.exported().tobytes(), b"abcdef")

    def test_wrong_usage_is_2(self):
        raw = self.write("in.raw", b"ab")
        npy = self.npy("in.npy", samples_of((2,), "u1"))
        layout = ["--type", "uint8", "--sizes", "2"]
        for arguments in ([raw], [raw, "--sizes", "2"], [raw, "--type", "uint8"], [npy, *layout],
                          [raw, "--type", "uint9", "--sizes", "2"], [raw, "--type", "rgb", "--sizes", "2"],
                          [raw, "--type", "none", "--sizes", "2"],
                          *[[raw, "--type", "uint8", "--sizes", sizes] for sizes in
                            ("", "x", "2x", "-2", "2y3", "+2", "0x10x", "99999999999999999999")],
                          [npy, "--compress", "10"], [npy, "--compress", "-1"], [npy, "--flush", "-1"],
                          [npy, "--flush", "4GiB"], [npy, "--append", "--force"], ["-", "-"], []):
            with self.subTest(arguments):
                result = run("import", *arguments, "--output", self.output)
                self.assertEqual((result.returncode, result.stdout), (2, b""), result.stderr)
        self.assertEqual(run("import", npy).returncode, 2)
        self.assertEqual(run("import", npy, "--output", "-").returncode, 2)
        self.assertFalse(os.path.exists(self.output))


class TiffTest(ImportTestCase):
    def tiff(self, array, name="in.tif", **options):
        tifffile.imwrite(self.path(name), array, **options)
        return self.path(name)

    def test_all_types_keep_their_bits_in_strips_and_tiles_of_both_byte_orders(self):
        codes = {**REAL_TYPES, **COMPLEX_TYPES}
        layouts = [{"rowsperstrip": 7}, {"tile": (16, 32)}, {"compression": "zlib", "rowsperstrip": 7},
                   {"compression": "zlib", "tile": (32, 16)}]
        for name, code in codes.items():
            array = samples_of((33, 50), code)
            for layout in layouts:
                for order in "<>":
                    with self.subTest(name=name, order=order, **layout):
                        file = self.tiff(array, byteorder=order, metadata=None, **layout)
                        stack, = self.run_import(file, "--force")
                        self.assertEqual((stack["data_type"], stack["labels"]), (name, ["X", "Y"]))
                        self.expect_samples(array)

    def test_integer_complex_samples_keep_their_parts(self):
        for bits in (8, 16, 32):
            part = f"i{bits // 8}"
            for order in "<>":
                for layout in ({}, {"tile": (16, 32)}, {"compression": "zlib", "rowsperstrip": 7}):
                    with self.subTest(bits=bits, order=order, **layout):
                        parts = samples_of((33, 50, 2), order + part)
                        whole = numpy.frombuffer(parts.tobytes(), f"{order}i{bits // 4}").reshape(33, 50)
                        file = self.tiff(whole, byteorder=order, metadata=None, **layout)
                        content = bytearray(self.content(file))
                        byte_order = "little" if order == "<" else "big"
                        row = b"".join(number.to_bytes(size, byte_order) for number, size in ((339, 2), (3, 2), (1, 4)))
                        place = content.index(row) + len(row)
                        content[place:place + 2] = (5).to_bytes(2, byte_order)
                        stack, = self.run_import(self.write("in.tif", content), "--force")
                        self.assertEqual((stack["data_type"], stack["sizes"]), (f"cplx_int{bits}", [50, 33]))
                        self.assertEqual(self.exported().tobytes(), parts.astype("<" + part).tobytes())

    def test_bigtiff_is_read(self):
        array = samples_of((5, 20, 30), "u2")
        self.run_import(self.tiff(array, bigtiff=True, photometric="minisblack"))
        self.expect_samples(array)

    def test_predictors_are_undone(self):
        array = (numpy.arange(33 * 50, dtype="u2") * 37).reshape(33, 50)
        for order in "<>":
            self.run_import(self.tiff(array, compression="zlib", predictor=True, byteorder=order), "--force")
            self.expect_samples(array)

    def test_like_directories_are_one_stack_and_others_further_ones(self):
        first = samples_of((3, 10, 12), "u1")
        second = samples_of((8, 9), "u2")
        with tifffile.TiffWriter(self.path("in.tif")) as writer:
            for plane in first:
                writer.write(plane, metadata=None, photometric="minisblack")
            writer.write(second, metadata=None, photometric="minisblack")
        stacks = self.run_import(self.path("in.tif"))
        self.assertEqual([stack["sizes"] for stack in stacks], [[12, 10, 3], [9, 8]])
        self.assertEqual(stacks[0]["labels"], ["X", "Y", ""])
        self.expect_samples(first, 0)
        self.expect_samples(second, 1)

    def test_samples_of_a_pixel_are_an_axis_of_their_own(self):
        array = samples_of((33, 40, 3), "u1")
        for options in ({}, {"tile": (16, 16)}, {"compression": "zlib", "rowsperstrip": 5}):
            with self.subTest(**options):
                stack, = self.run_import(self.tiff(array, photometric="rgb", **options), "--force")
                self.assertEqual((stack["sizes"], stack["labels"]), ([3, 40, 33], ["C", "X", "Y"]))
                self.expect_samples(array)
        self.assertIn('Interleaved="true"', self.document())
        for size in ('SizeX="40"', 'SizeY="33"', 'SizeC="3"'):
            self.assertIn(size, self.document())

    def test_planes_of_colours_stay_planes(self):
        array = samples_of((3, 33, 40), "u2")
        for options in ({}, {"tile": (16, 16)}, {"compression": "zlib", "rowsperstrip": 5}):
            with self.subTest(**options):
                stack, = self.run_import(self.tiff(array, photometric="rgb", planarconfig="separate", **options),
                                         "--force")
                self.assertEqual((stack["sizes"], stack["labels"]), ([40, 33, 3], ["X", "Y", "C"]))
                self.expect_samples(array)

    def test_imagej_tells_axes_steps_and_units(self):
        array = samples_of((2, 3, 4, 20, 30), "u2")
        file = self.tiff(array, imagej=True, resolution=(4.0, 2.0),
                         metadata={"axes": "TZCYX", "spacing": 0.5, "unit": "um", "finterval": 1.5})
        stack, = self.run_import(file)
        self.assertEqual((stack["sizes"], stack["labels"]), ([30, 20, 4, 3, 2], ["X", "Y", "C", "Z", "T"]))
        for axis, length in ((0, 7.5), (1, 10.0), (3, 1.5)):
            self.expect_axis(stack, axis, length, MICROMETRE)
        self.expect_axis(stack, 4, 3.0, ("s", 1.0))
        self.expect_axis_is_not_set(stack, 2)
        self.expect_samples(array)
        for part in ('PhysicalSizeX="0.25"', 'PhysicalSizeXUnit="µm"', 'TimeIncrement="1.5"', 'DimensionOrder="XYCZT"'):
            self.assertIn(part, self.document())

    def test_imagej_pixels_are_no_unit(self):
        stack, = self.run_import(self.tiff(samples_of((20, 30), "u2"), imagej=True, resolution=(4.0, 2.0),
                                           metadata={"axes": "YX", "unit": "pixel"}))
        self.expect_axis_is_not_set(stack, 0)
        self.expect_axis_is_not_set(stack, 1)

    def test_imagej_planes_behind_one_directory_are_all_read(self):
        array = samples_of((7, 20, 30), "u2")
        file = self.tiff(array, imagej=True, metadata={"axes": "ZYX"}, truncate=True)
        with tifffile.TiffFile(file) as tiff:
            self.assertEqual(tiff.pages[0].offset, 8)
        stack, = self.run_import(file)
        self.assertEqual(stack["sizes"], [30, 20, 7])
        self.expect_samples(array)

    def test_python_tells_the_shape_of_an_array(self):
        array = samples_of((2, 1, 4, 20, 30), "u2")
        stack, = self.run_import(self.tiff(array, photometric="minisblack"))
        self.assertEqual((stack["sizes"], stack["labels"]), ([30, 20, 4, 1, 2], ["X", "Y", "", "", ""]))
        self.expect_samples(array)
        stack, = self.run_import(self.tiff(array, photometric="minisblack", metadata={"axes": "TCZYX"}), "--force")
        self.assertEqual(stack["labels"], ["X", "Y", "Z", "C", "T"])

    def test_ome_tells_axes_steps_units_and_channels(self):
        array = samples_of((2, 3, 4, 20, 30), "u2")
        file = self.tiff(array, "in.ome.tif", photometric="minisblack", metadata={
            "axes": "TCZYX", "Name": "cells <µ>", "PhysicalSizeX": 0.25, "PhysicalSizeY": 250.0,
            "PhysicalSizeYUnit": "nm", "PhysicalSizeZ": 1.0, "PhysicalSizeZUnit": "Å",
            "TimeIncrement": 2.0, "TimeIncrementUnit": "min", "Channel": {"Name": ["488", "DAPI", "true"]}})
        stack, = self.run_import(file)
        self.assertEqual((stack["name"], stack["labels"]), ("cells <µ>", ["X", "Y", "Z", "C", "T"]))
        self.assertEqual(stack["sizes"], [30, 20, 4, 3, 2])
        self.expect_axis(stack, 0, 7.5, MICROMETRE)
        self.expect_axis(stack, 1, 5000.0, NANOMETRE)
        self.assertEqual((stack["lengths"][2], stack["units"][2]["factor"]), (4.0, 1e-10))
        self.expect_axis_is_not_set(stack, 3)
        self.assertEqual((stack["lengths"][4], stack["units"][4]["factor"]), (4.0, 60.0))
        self.assertEqual(stack["column_labels"], {"3": ["488", "DAPI", "true"]})
        self.expect_samples(array)
        for part in ('Name="488"', 'PhysicalSizeYUnit="nm"', 'SizeC="3"', 'DimensionOrder="XYZCT"', 'Type="uint16"'):
            self.assertIn(part, self.document())

    def test_every_image_of_an_ome_document_is_a_stack(self):
        arrays = [samples_of((2, 10, 12), "u1"), samples_of((3, 8, 9), "<f4")]
        with tifffile.TiffWriter(self.path("in.ome.tif"), ome=True) as writer:
            for array, axes in zip(arrays, ("ZYX", "CYX")):
                writer.write(array, photometric="minisblack", metadata={"axes": axes, "Name": axes})
        stacks = self.run_import(self.path("in.ome.tif"))
        self.assertEqual([stack["name"] for stack in stacks], ["ZYX", "CYX"])
        self.assertEqual([stack["labels"][2] for stack in stacks], ["Z", "C"])
        for index, array in enumerate(arrays):
            self.expect_samples(array, index)

    def ome_file(self, xml, array):
        return self.tiff(array, "in.ome.tif", description=xml.encode(), metadata=None, photometric="minisblack")

    @staticmethod
    def ome_text(data="", size_c=3, attributes=""):
        return ('<?xml version="1.0"?><!-- a comment --><OME xmlns="http://www.openmicroscopy.org/Schemas/OME/2016-06">'
                '<Image ID="Image:0" Name="a"><AcquisitionDate>2020-01-02T03:04:05</AcquisitionDate>'
                '<Description>a &amp;&#10;b <![CDATA[<c>]]></Description>'
                f'<Pixels ID="Pixels:0" DimensionOrder="XYCZT" Type="uint8" SizeX="12" SizeY="10" SizeC="{size_c}" '
                f'SizeZ="1" SizeT="1" {attributes}>{data}<Plane TheC="0" TheZ="0" TheT="0" DeltaT="0.5"/>'
                '</Pixels></Image><StructuredAnnotations><A.b-c>x<d/>y</A.b-c></StructuredAnnotations></OME>')

    def test_planes_stand_where_the_document_says(self):
        array = samples_of((3, 10, 12), "u1")
        data = "".join(f'<TiffData IFD="{2 - c}" FirstC="{c}" PlaneCount="1"/>' for c in range(3))
        stack, = self.run_import(self.ome_file(self.ome_text(data), array))
        self.assertEqual(stack["description"], "a &\nb <c>")
        self.expect_samples(array[::-1])
        for part in ("<ome:AcquisitionDate>2020-01-02T03:04:05<", 'DeltaT="0.5"', 'DeltaTUnit="s"'):
            self.assertIn(part, self.document())

    def test_wavelengths_label_channels_without_a_name(self):
        channels = "".join(f'<Channel ID="Channel:0:{c}" EmissionWavelength="{500 + c / 2}"/>' for c in range(3))
        stack, = self.run_import(self.ome_file(self.ome_text(channels), samples_of((3, 10, 12), "u1")))
        self.assertEqual(stack["column_labels"], {"2": ["500 nm", "500.5 nm", "501 nm"]})

    def test_a_step_of_one_is_told_from_none(self):
        stack, = self.run_import(self.ome_file(self.ome_text(attributes='PhysicalSizeX="1"'),
                                               samples_of((3, 10, 12), "u1")))
        self.expect_axis(stack, 0, 12.0, MICROMETRE)
        self.expect_axis_is_not_set(stack, 1)

    def test_a_document_that_does_not_fit_is_left_aside(self):
        array = samples_of((3, 10, 12), "u1")
        other = '<TiffData IFD="0" PlaneCount="3"><UUID FileName="b.tif">urn:uuid:1</UUID></TiffData>'
        for xml in (self.ome_text(size_c=4), self.ome_text(size_c=2147483647), self.ome_text('<TiffData IFD="7"/>'),
                    self.ome_text('<TiffData IFD="1"/>'), self.ome_text().replace('X="12"', 'X="13"'),
                    self.ome_text().replace("XYCZT", "CXYZT"), self.ome_text().replace("Pixels", "Voxels"),
                    self.ome_text().replace('<Image ID="Image:0"', "<Image ID"),
                    self.ome_text(other).replace("<OME ", '<OME UUID="urn:uuid:2" ')):
            with self.subTest(xml):
                result = run("import", self.ome_file(xml, array), "--output", self.output, "--force")
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertIn("warning: OME-XML is left aside: ", result.stderr.decode())
                self.assertEqual(self.stacks()[0]["sizes"], [12, 10, 3])
                self.expect_samples(array)

    def test_samples_without_a_type_are_refused(self):
        file = self.tiff(numpy.zeros((8, 8), bool), photometric="minisblack")
        self.expect_failure(4, "Cannot read TIFF: there is no data type for its samples", file, "--output", self.output)

    def test_cut_off_files_are_refused(self):
        for options in ({}, {"compression": "zlib"}, {"tile": (16, 16)}):
            whole = self.content(self.tiff(samples_of((3, 20, 30), "u2"), photometric="minisblack", **options))
            for size in [4, 5, 7, 8, *range(9, len(whole), max(len(whole) // 25, 1)), len(whole) - 1]:
                result = run("import", self.write("in.tif", whole[:size]), "--output", self.output)
                self.assertIn(result.returncode, (0, 4), (size, options, result.stderr))
                if result.returncode == 0:
                    # Only what nobody needs can stand behind all samples.
                    self.expect_samples(samples_of((3, 20, 30), "u2"))
                    os.remove(self.output)
                else:
                    self.assertIn(b"Cannot read TIFF: ", result.stderr)
                    self.assertEqual(result.stderr.count(b"\n"), 1, result.stderr)
                self.assertEqual(set(os.listdir(self.folder)) - {"exported.npy"}, {"in.tif"})

    def test_damage_never_ends_in_a_signal(self):
        generator = random.Random(SEED)
        sources = [self.content(self.tiff(samples_of((3, 20, 30), "u2"), "in.ome.tif", photometric="minisblack", **options))
                   for options in ({}, {"compression": "zlib"}, {"tile": (16, 16), "compression": "zlib"})]
        for turn in range(150):
            content = bytearray(generator.choice(sources))
            for _ in range(generator.randint(1, 12)):
                content[generator.randrange(len(content))] = generator.randrange(256)
            result = run("import", self.write("in.tif", content), "--output", self.output, "--force")
            self.assertIn(result.returncode, (0, 3, 4), f"seed {SEED}, turn {turn}")

    def test_a_huge_image_in_a_small_file_takes_no_memory(self):
        whole = self.content(self.tiff(samples_of((20, 30), "u1"), photometric="minisblack", metadata=None))
        for value in (0xFFFFFFFF, 0x7FFFFFFF, 0x10000):
            content = bytearray(whole)
            for tag in (256, 257, 278):
                place = content.index(tag.to_bytes(2, "little"), 8)
                content[place + 2:place + 12] = (4).to_bytes(2, "little") + (1).to_bytes(4, "little") + \
                    value.to_bytes(4, "little")
            self.expect_failure(4, "vrel: ", self.write("in.tif", content), "--output", self.output,
                                "--max-memory", "64MiB")

    def test_memory_does_not_grow_with_the_stack(self):
        if os.environ.get("VRELIO_SANITIZE"):
            self.skipTest("a sanitizer needs the memory for itself")
        array = numpy.zeros((40, 1024, 1024), "u2")
        for options in ({}, {"compression": "zlib"}, {"tile": (256, 256)}, {"rowsperstrip": 1024}):
            file = self.tiff(array, photometric="minisblack", **options)
            self.run_import(file, "--force", "--max-memory", "24MiB")


class SampleImageTest(ImportTestCase):
    def setUp(self):
        super().setUp()
        if not os.path.isdir(IMAGES):
            self.skipTest("no sample images")

    def test_measured_images_come_whole_with_what_they_tell(self):
        for name, sizes, data_type, labels, lengths in SAMPLE_IMAGES:
            with self.subTest(name):
                stack, = self.run_import(os.path.join(IMAGES, name), "--force")
                self.assertEqual((stack["sizes"], stack["data_type"], stack["labels"]), (sizes, data_type, labels))
                for axis, length in enumerate(lengths):
                    if length is None:
                        self.expect_axis_is_not_set(stack, axis)
                    else:
                        self.expect_axis(stack, axis, length, ("s", 1.0) if labels[axis] == "T" else MICROMETRE)
                self.expect_samples(tifffile.imread(os.path.join(IMAGES, name)))

    def test_bands_and_quantities_are_named(self):
        stack, = self.run_import(os.path.join(IMAGES, "cells_spectral_uint8.ome.tif"))
        self.assertEqual(stack["column_labels"]["2"][:2], ["423 nm", "433 nm"])
        self.assertIn('EmissionWavelength="422.81" EmissionWavelengthUnit="nm"', self.document())
        stack, = self.run_import(os.path.join(IMAGES, "nucleus_flim_phasor_float32.ome.tif"), "--force")
        self.assertEqual(stack["column_labels"]["2"][:2], ["mean intensity", "phase harmonic 1 (degree)"])

    def test_all_go_into_one_file_in_their_order(self):
        stacks = self.run_import(*[os.path.join(IMAGES, row[0]) for row in SAMPLE_IMAGES])
        self.assertEqual([stack["sizes"] for stack in stacks], [row[1] for row in SAMPLE_IMAGES])
        self.assertEqual(self.document().count("<ome:Image "), len(SAMPLE_IMAGES))


class FileTest(ImportTestCase):
    def setUp(self):
        super().setUp()
        self.first = self.npy("first.npy", samples_of((3, 4), "<u2", 1))
        self.second = self.npy("second.npy", samples_of((5,), "<f4", 2))

    def test_several_inputs_are_stacks_in_their_order(self):
        stacks = self.run_import(self.second, self.first)
        self.assertEqual([stack["name"] for stack in stacks], ["second.npy", "first.npy"])
        self.expect_samples(samples_of((5,), "<f4", 2), 0)
        self.expect_samples(samples_of((3, 4), "<u2", 1), 1)

    def test_appending_keeps_stacks_and_document(self):
        self.run_import(self.first, "--name", "12")
        before = self.content(self.output)
        stacks = self.run_import(self.second, "--append")
        self.assertEqual([stack["name"] for stack in stacks], ["12", "second.npy"])
        document = self.document()
        for part in ('<ome:Image ID="Image:1" Name="12">', '<ome:Image ID="Image:2" Name="second.npy">', 'SizeX="4"'):
            self.assertIn(part, document)
        self.run_import(self.first, "--append")
        self.assertEqual(self.document().count("<ome:Image "), 3)
        self.expect_samples(samples_of((3, 4), "<u2", 1), 2)
        self.assertLess(len(before), len(self.content(self.output)))

    def test_appending_needs_a_vbf_file(self):
        self.expect_failure(3, f"vrel: {self.output}: Could not open file!\n    os_error(2): ", self.first, "--append", "--output",
                            self.output)
        other = self.write("other.vbf", b"something else, and enough of it")
        self.expect_failure(4, f"vrel: {other}: No VBF file header found!", self.first, "--append", "--output", other)
        self.assertEqual(self.content(other), b"something else, and enough of it")

    def test_a_document_that_cannot_be_read_is_not_lost(self):
        self.run_import(self.first)
        content = self.content(self.output).replace(b'Type="uint16"', b'Type="uint99"')
        self.write("out.vbf", content)
        self.expect_failure(4, f"vrel: {self.output}: The OME-XML of the file cannot be read, and would be lost!",
                            self.second, "--append", "--output", self.output)
        self.assertEqual(self.document().count('Type="uint99"'), 1)

    def test_an_existing_file_is_replaced_by_force_alone(self):
        self.write("out.vbf", b"mine")
        self.expect_failure(3, "Output file exists already, --force replaces it!", self.first, "--output", self.output)
        self.assertEqual(self.content(self.output), b"mine")
        self.assertEqual(len(self.run_import(self.first, "--force")), 1)

    def test_all_bad_inputs_are_named_and_nothing_is_made(self):
        other = self.write("other", b"something else")
        result = run("import", self.path("missing"), self.first, other, "--output", self.output)
        self.assertEqual(result.returncode, 4)
        self.assertEqual(result.stderr.decode().splitlines(), [
            f"vrel: {self.path('missing')}: Could not open file!", "    os_error(2): No such file or directory",
            f"vrel: {other}: Neither .npy nor TIFF, and no .raw file!"])
        self.assertFalse(os.path.exists(self.output))
        self.expect_failure(3, "Could not open file!", self.path("missing"), "--output", self.output)

    def test_a_bad_input_leaves_a_file_that_would_be_appended_to(self):
        self.run_import(self.first)
        before = self.stacks()
        other = self.write("other", b"something else")
        self.assertEqual(run("import", self.second, other, "--append", "--output", self.output).returncode, 4)
        self.assertEqual(self.stacks(), before)

    def test_what_is_complete_when_appending_fails_stays(self):
        self.run_import(self.first)
        samples = numpy.zeros((64, 512), "u1")
        tifffile.imwrite(self.path("bad.tif"), samples, compression="zlib", rowsperstrip=32, metadata=None)
        with tifffile.TiffFile(self.path("bad.tif")) as tiff:
            place = tiff.pages[0].dataoffsets[1]
        content = bytearray(self.content(self.path("bad.tif")))
        content[place:place + 8] = b"\xff" * 8
        bad = self.write("bad.tif", content)
        result = run("import", self.second, bad, "--append", "--output", self.output)
        self.assertEqual(result.returncode, 4, result.stderr)
        self.assertIn(f"vrel: {bad}: Cannot read TIFF: ", result.stderr.decode())
        self.assertEqual([stack["name"] for stack in self.stacks()], ["first.npy", "second.npy"])
        self.assertEqual(self.document().count("<ome:Image "), 2)
        self.assertEqual(run("import", bad, "--output", self.path("new.vbf")).returncode, 4)
        self.assertFalse(os.path.exists(self.path("new.vbf")))

    def test_an_interruption_leaves_nothing(self):
        reading, writing = os.pipe()
        process = subprocess.Popen([PROGRAM, "import", "-", "--type", "uint8", "--sizes", "100000000", "--output",
                                    self.output], stdin=reading, stderr=subprocess.PIPE)
        try:
            os.close(reading)
            os.write(writing, bytes(60000))
            deadline = time.monotonic() + TIME_LIMIT
            while not any(name.endswith(".part") for name in os.listdir(self.folder)):
                self.assertLess(time.monotonic(), deadline)
                time.sleep(0.002)
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(TIME_LIMIT), 130)
        finally:
            process.kill()
            process.wait()
            process.stderr.close()
            os.close(writing)
        self.assertEqual(sorted(os.listdir(self.folder)), ["first.npy", "second.npy"])

    def test_a_file_that_somebody_writes_to_is_not_appended_to(self):
        self.run_import(self.first)
        import fcntl
        with open(self.output, "rb") as file:
            fcntl.flock(file, fcntl.LOCK_EX)
            result = run("import", self.second, "--append", "--output", self.output)
        self.assertEqual(result.returncode, 3)
        self.assertIn("Could not open file!", result.stderr.decode())


if __name__ == "__main__":
    unittest.main()
