"""vrel export from outside: regions, types, OME-TIFF and PNG against NumPy and tifffile."""

import glob
import json
import os
import resource
import signal
import subprocess
import unittest
import warnings
import xml.etree.ElementTree

import numpy
import tifffile

import png_pixels
import vbf_bytes
import vbf_described
from vbf_described import METRE, SECOND, Axis, unit
from vrel_program import DATA, FolderTestCase, PROGRAM, SANITIZED, TIME_LIMIT, run, wait_until

NAMESPACE = "{http://www.openmicroscopy.org/Schemas/OME/2016-06}"
REAL_TYPES = {"uint8": (1, "u1"), "int8": (2, "i1"), "uint16": (4, "<u2"), "int16": (8, "<i2"),
              "uint32": (0x10, "<u4"), "int32": (0x20, "<i4"), "single": (0x40, "<f4"),
              "double": (0x80, "<f8"), "uint64": (0x1000, "<u8"), "int64": (0x2000, "<i8")}
OME_TYPES = {"uint8": "uint8", "int8": "int8", "uint16": "uint16", "int16": "int16", "uint32": "uint32",
             "int32": "int32", "single": "float", "double": "double", "cplx_single": "complex",
             "cplx_double": "double-complex"}
COMPLEX_FLAG = 0x40000000


def id_of(name):
    if name.startswith("cplx_"):
        return REAL_TYPES[name[5:]][0] | COMPLEX_FLAG
    return REAL_TYPES[name][0]


def dtype_of(name):
    if name in ("cplx_single", "cplx_double"):
        return numpy.dtype("<c8" if name == "cplx_single" else "<c16")
    if name.startswith("cplx_"):
        part = REAL_TYPES[name[5:]][1]
        return numpy.dtype([("re", part), ("im", part)])
    return numpy.dtype(REAL_TYPES[name][1])


ALL_TYPES = [*REAL_TYPES, *(f"cplx_{name}" for name in REAL_TYPES)]


class ExportTest(FolderTestCase):
    def write(self, content, name="source.vbf"):
        with open(self.path(name), "wb") as file:
            file.write(content)
        return self.path(name)

    def write_array(self, array, labels="", data_type=4, **options):
        """A stack from an array; the labels begin with that of the fastest axis."""
        sizes = array.shape[::-1]
        axes = [Axis(size, label) for size, label in zip(sizes, labels or [""] * len(sizes))]
        return self.write(vbf_described.stack(axes, array.tobytes(), data_type, **options))

    def expect(self, result, code, error=""):
        self.assertEqual((result.returncode, result.stderr.decode()), (code, error))

    def export(self, source, ending, *arguments, **options):
        """Export stack 0 and give the path of the new file."""
        output = self.path("out" + ending)
        self.expect(run("export", source, "--stack", "0", "--output", output, "--force", *arguments, **options), 0)
        return output

    def load(self, source, *arguments):
        return numpy.load(self.export(source, ".npy", *arguments))

    def refuse(self, code, error, source, ending, *arguments, **options):
        """An export that fails with a message about the source and leaves nothing."""
        before = sorted(os.listdir(self.folder))
        result = run("export", source, "--stack", "0", "--output", self.path("out" + ending), *arguments, **options)
        self.expect(result, code, f"vrel: {source}: {error}\n")
        self.assertEqual(sorted(os.listdir(self.folder)), before)

    def large(self, mebibytes=64):
        """A stack without data reads as zeros, so a few bytes stand for any size."""
        return self.write(vbf_bytes.file([dict(samples=b"", sizes=(1024, 1024, mebibytes), data_type=1)]))


class RegionTest(ExportTest):
    def setUp(self):
        super().setUp()
        self.array = numpy.arange(5 * 4 * 6 * 7, dtype="<u2").reshape(5, 4, 6, 7)
        self.source = self.write_array(self.array, ["X", "Y", "ExpControl Z", "depth"])

    def test_regions_are_those_of_numpy(self):
        array = self.array
        for text, expected in (("x=2:5", array[..., 2:5]), ("X=:3", array[..., :3]), ("0=3:", array[..., 3:]),
                               ("y=1:2", array[:, :, 1:2]), ("y=1", array[:, :, 1]), ("z=3", array[:, 3]),
                               ("ExpControl Z=1:3", array[:, 1:3]), ("depth=4", array[4]), ("3=1:4", array[1:4]),
                               (" DEPTH = 1 : 2 , x = 6 ", array[1:2, ..., 6]), ("z=:", array),
                               ("x=1,y=2,z=3,depth=4", array[4, 3, 2, 1]),
                               ("x=1:6,y=2:5,z=1:3,t=2:", array[2:, 1:3, 2:5, 1:6])):
            with self.subTest(text):
                loaded = self.load(self.source, "--region", text)
                self.assertEqual(loaded.shape, expected.shape)
                numpy.testing.assert_array_equal(loaded, expected)

    def test_raw_region_has_the_bytes_of_the_region(self):
        result = run("export", self.source, "--stack", "0", "--output", "-", "--region", "x=1:3,z=2")
        self.expect(result, 0)
        self.assertEqual(result.stdout, self.array[:, 2, :, 1:3].tobytes())

    def test_random_regions_of_a_compressed_stack_are_those_of_numpy(self):
        seed = 20261121
        random = numpy.random.default_rng(seed)
        array = random.integers(0, 50, (9, 13, 30, 40), "<u2")
        source = self.write_array(array, "XYZT", block_size=1000)
        for number in range(25):
            ranges = [sorted(random.choice(size + 1, 2, replace=False)) for size in array.shape]
            text = ",".join(f"{axis}={first}:{end}" for axis, (first, end) in zip("tzyx", ranges))
            with self.subTest(seed=seed, number=number, region=text):
                expected = array[tuple(slice(*pair) for pair in ranges)]
                numpy.testing.assert_array_equal(self.load(source, "--region", text), expected)

    def test_a_text_that_names_no_region_is_wrong_usage(self):
        for text in ("", ",", "x", "x=", "=1", "x=1,", ",x=1", "x=-1", "x=1:-1", "x=a", "x=1:2:3", "x=3:3", "x=4:3",
                     "x=18446744073709551616", "x=0x1", "x=1.5", "x=+1", "x 1"):
            with self.subTest(text):
                result = run("export", self.source, "--stack", "0", "--output", self.path("out.npy"), "--region", text)
                self.assertEqual((result.returncode, result.stdout), (2, b""))
                self.assertTrue(result.stderr.startswith(b"vrel: --region"))
        self.assertEqual(os.listdir(self.folder), ["source.vbf"])

    def test_what_the_stack_does_not_have_is_wrong_usage(self):
        axes = 'the stack has 0 "X", 1 "Y", 2 "ExpControl Z", 3 "depth"'
        indices = "has the indices from 0 up to, not including, 7"
        for text, message in (("q=1", f'"q" is no axis: {axes}'), ("4=1", f'"4" is no axis: {axes}'),
                              ("x=7", f'The axis "x" {indices}'), ("x=0:8", f'The axis "x" {indices}'),
                              ("x=7:", f'The axis "x" {indices}'),
                              ("x=18446744073709551615", f'The axis "x" {indices}'),
                              ("x=1:18446744073709551615", f'The axis "x" {indices}'),
                              ("x=1,0=2", 'The axis "0" is named twice')):
            with self.subTest(text):
                self.refuse(2, message, self.source, ".npy", "--region", text)

    def test_a_label_of_two_axes_is_told_by_number(self):
        source = self.write_array(self.array, ["a", "a", "b", "c"])
        self.refuse(2, '"a" is more than one axis: the stack has 0 "a", 1 "a", 2 "b", 3 "c"', source, ".npy",
                    "--region", "a=1")
        numpy.testing.assert_array_equal(self.load(source, "--region", "1=1"), self.array[:, :, 1])

    def test_a_region_goes_with_neither_offset_nor_count(self):
        for option in ("--offset", "--count"):
            result = run("export", self.source, "--stack", "0", "--output", self.path("out.npy"), "--region", "x=1",
                         option, "1")
            self.assertEqual(result.returncode, 2)
        for ending in (".tif", ".png"):
            result = run("export", self.source, "--stack", "0", "--output", self.path("out" + ending), "--count", "1")
            self.assertEqual(result.returncode, 2)
        self.assertEqual(os.listdir(self.folder), ["source.vbf"])

    def test_a_region_of_a_single_sample_is_refused(self):
        source = self.write(vbf_described.stack([], b"\x07\x00"))
        self.refuse(2, '"x" is no axis: the stack has none', source, ".npy", "--region", "x=0")
        self.assertEqual(self.load(source).shape, ())

    @unittest.skipIf(SANITIZED, "a sanitizer needs the memory for itself")
    def test_memory_does_not_grow_with_the_stack(self):
        source = self.large(mebibytes=300)
        for ending in (".raw", ".tif"):
            self.export(source, ending, "--max-memory", "24MiB", "--region", "x=:1000", "--type", "uint16")
        self.export(source, ".png", "--max-memory", "48MiB")


class TypeTest(ExportTest):
    def samples(self, name):
        kind = dtype_of(name)
        values = numpy.arange(1, 25)
        if kind.names is None:
            return values.astype(kind) * (1 + 2j if kind.kind == "c" else 1)
        array = numpy.zeros(24, kind)
        array["re"], array["im"] = values, values + 1
        return array

    @staticmethod
    def parts(array):
        if array.dtype.names:
            return array["re"], array["im"]
        return (array.real, array.imag)

    def test_every_type_becomes_every_other_as_in_numpy(self):
        for source_name in ALL_TYPES:
            source = self.write_array(self.samples(source_name).reshape(4, 6), data_type=id_of(source_name))
            for name in ALL_TYPES:
                if source_name.startswith("cplx_") and not name.startswith("cplx_"):
                    self.refuse(4, f"Invalid on-the-fly conversion from '{source_name}' to '{name}'!", source,
                                ".npy", "--type", name)
                    continue
                with self.subTest(source=source_name, to=name):
                    loaded = self.load(source, "--type", name)
                    self.assertEqual((loaded.dtype, loaded.shape), (dtype_of(name), (4, 6)))
                    for seen, expected in zip(self.parts(loaded), self.parts(self.samples(source_name))):
                        numpy.testing.assert_array_equal(seen.ravel(), expected)

    def test_values_that_do_not_fit_wrap(self):
        array = numpy.array([[0, 255, 256, 65535]], "<u2")
        numpy.testing.assert_array_equal(self.load(self.write_array(array), "--type", "uint8"), array.astype("u1"))
        numpy.testing.assert_array_equal(self.load(self.write_array(array), "--type", "int16"), array.astype("<i2"))

    def test_more_samples_than_a_block_are_converted(self):
        array = numpy.arange(300000, dtype="<u4").reshape(3, 100000)
        source = self.write_array(array, data_type=0x10)
        numpy.testing.assert_array_equal(self.load(source, "--type", "double"), array)
        numpy.testing.assert_array_equal(self.load(source, "--type", "single", "--region", "0=7:99999"),
                                         array[:, 7:99999].astype("<f4"))

    def test_a_range_is_converted_too(self):
        array = numpy.arange(24, dtype="<u2").reshape(4, 6)
        loaded = self.load(self.write_array(array), "--type", "single", "--offset", "5", "--count", "7")
        numpy.testing.assert_array_equal(loaded, numpy.arange(5, 12, dtype="<f4"))

    def test_other_names_are_wrong_usage(self):
        source = self.write_array(numpy.zeros((2, 2), "<u2"))
        for name in ("", "float", "UINT8", "none", "cell", "struct", "char", "logical", "cplx_logical", "4"):
            with self.subTest(name):
                result = run("export", source, "--stack", "0", "--output", self.path("out.npy"), "--type", name)
                self.assertEqual(result.returncode, 2)
        self.assertEqual(os.listdir(self.folder), ["source.vbf"])


MICROMETRE = unit(METRE, 1e-6)

# The schema's sequences, for the elements that are written.
CHILDREN = {"OME": ["Image"], "Image": ["AcquisitionDate", "Description", "Pixels"], "Pixels": ["Channel", "TiffData", "Plane"]}


class OmeTiffCase(ExportTest):
    """Reads OME-TIFF files."""

    def read(self, path):
        with warnings.catch_warnings():
            warnings.simplefilter("error")
            with tifffile.TiffFile(path) as file:
                series, = file.series
                self.assertEqual(series.kind, "ome")
                return series.axes, series.asarray(), xml.etree.ElementTree.fromstring(file.ome_metadata)

    def pixels(self, root):
        return root.find(f"{NAMESPACE}Image/{NAMESPACE}Pixels")

    def planes(self, root):
        return [plane.attrib for plane in self.pixels(root).iter(f"{NAMESPACE}Plane")]

    def check_order(self, element):
        self.assertTrue(element.tag.startswith(NAMESPACE))
        order = CHILDREN.get(element.tag[len(NAMESPACE):], [])
        places = [order.index(child.tag[len(NAMESPACE):]) for child in element]
        self.assertEqual(places, sorted(places))
        for child in element:
            self.check_order(child)


class OmeTiffTest(OmeTiffCase):
    def test_every_type_of_ome_reaches_other_programs(self):
        content = bytes(range(1, 97)) * 2
        for name in ALL_TYPES:
            kind = dtype_of(name)
            array = numpy.frombuffer(content, kind)[:12].reshape(2, 2, 3)
            source = self.write_array(array, "XYZ", data_type=id_of(name))
            if name not in OME_TYPES:
                self.refuse(4, f"No OME-TIFF type for samples of the type '{name}', --type converts them!", source,
                            ".tif")
                continue
            for level in ("0", "6"):
                with self.subTest(name, level=level):
                    axes, samples, root = self.read(self.export(source, ".tif", "--compress", level))
                    self.assertEqual((axes, samples.dtype), ("ZYX", kind))
                    self.assertEqual(samples.tobytes(), array.tobytes())
                    self.assertEqual(self.pixels(root).get("Type"), OME_TYPES[name])

    def test_a_type_that_ome_lacks_can_be_converted(self):
        array = numpy.arange(6, dtype="<u8").reshape(2, 3)
        _, samples, _ = self.read(self.export(self.write_array(array, data_type=0x1000), ".tif", "--type", "int32"))
        numpy.testing.assert_array_equal(samples, array.astype("<i4"))

    def test_axes_go_by_their_labels(self):
        array = numpy.arange(2 * 3 * 4 * 5 * 6, dtype="<u2").reshape(2, 3, 4, 5, 6)
        for labels, expected in (("XYZCT", "TCZYX"), ("XYTZC", "CZTYX"), (["X", "Y", "Channel", "time", "z"], "ZTCYX"),
                                 (["", "", "", "", ""], "CTZYX"), (["S X", "S Y", "S Z", "Λ", "T"], "TCZYX"),
                                 (["", "", "T", "", ""], "CZTYX")):
            with self.subTest(labels):
                axes, samples, _ = self.read(self.export(self.write_array(array, labels), ".tif"))
                self.assertEqual(axes, expected)
                numpy.testing.assert_array_equal(samples, array)

    def test_a_line_scan_has_a_page_for_each_line(self):
        array = numpy.arange(12, dtype="<u2").reshape(3, 4)
        axes, samples, root = self.read(self.export(self.write_array(array, "XT"), ".tif"))
        self.assertEqual((axes, self.pixels(root).get("SizeY"), self.pixels(root).get("SizeT")), ("TYX", "1", "3"))
        numpy.testing.assert_array_equal(samples.reshape(3, 4), array)

    def test_axes_that_have_no_place_are_refused(self):
        array = numpy.zeros((2, 2, 2, 2, 2, 2), "<u2")
        source = self.write_array(array, "abcdef")
        self.refuse(4, "OME-TIFF has no place for axis 5, --region picks a part of it!", source, ".tif")
        self.read(self.export(source, ".tif", "--region", "5=1"))
        source = self.write_array(array[0, 0, 0], "ZXY")
        self.refuse(4, "OME-TIFF needs axis X in front, --region picks a part of the axes before it!", source, ".tif")
        axes, _, _ = self.read(self.export(source, ".tif", "--region", "z=1"))
        self.assertEqual(axes, "YX")
        source = self.write_array(array[0, 0, 0], "XZY")
        self.refuse(4, "OME-TIFF needs axis Y in front, --region picks a part of the axes before it!", source, ".tif")

    def test_axes_of_one_index_need_no_place(self):
        array = numpy.arange(6, dtype="<u2").reshape(1, 1, 2, 1, 3, 1)
        axes, samples, _ = self.read(self.export(self.write_array(array, "ZXQYCR"), ".tif"))
        self.assertEqual(axes, "YX")
        numpy.testing.assert_array_equal(samples.ravel(), array.ravel())

    def described(self):
        axes = [Axis(8, "X", 1.6, 0.0, MICROMETRE), Axis(6, "Y", 900.0, 0.0, unit(METRE, 1e-9)),
                Axis(4, "Z", 2e-6, 0.0, unit(METRE)), Axis(2, "C", names=("DAPI <1>", "")),
                Axis(3, "T", 1.5, 0.0, unit(SECOND, 60.0))]
        array = numpy.arange(3 * 2 * 4 * 6 * 8, dtype="<u2").reshape(3, 2, 4, 6, 8)
        return axes, array

    def write_described(self, axes, array):
        return self.write(vbf_described.stack(axes, array.tobytes(), name="cells & \"more\"",
                                              description="one µm\nand 雪 < > \x01 end"))

    def test_the_description_says_what_the_stack_says(self):
        axes, array = self.described()
        path = self.export(self.write_described(axes, array), ".tif")
        letters, samples, root = self.read(path)
        self.assertEqual(letters, "TCZYX")
        numpy.testing.assert_array_equal(samples, array)
        self.check_order(root)
        image, pixels = root.find(f"{NAMESPACE}Image"), self.pixels(root)
        self.assertRegex(root.get("UUID"), "^urn:uuid:[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}$")
        self.assertEqual(image.get("Name"), "cells & \"more\"")
        self.assertEqual(image.find(f"{NAMESPACE}Description").text, "one µm\nand 雪 < > \ufffd end")
        expected = {"ID": "Pixels:0", "DimensionOrder": "XYZCT", "Type": "uint16", "SizeX": "8", "SizeY": "6",
                    "SizeZ": "4", "SizeC": "2", "SizeT": "3", "PhysicalSizeX": "0.2", "PhysicalSizeXUnit": "µm",
                    "PhysicalSizeY": "150", "PhysicalSizeYUnit": "nm", "PhysicalSizeZ": "5e-07",
                    "PhysicalSizeZUnit": "m", "TimeIncrement": "0.5", "TimeIncrementUnit": "min"}
        self.assertEqual(pixels.attrib, expected)
        channels = [channel.attrib for channel in pixels.iter(f"{NAMESPACE}Channel")]
        self.assertEqual(channels, [{"ID": "Channel:0:0", "Name": "DAPI <1>", "SamplesPerPixel": "1"},
                                    {"ID": "Channel:0:1", "SamplesPerPixel": "1"}])
        self.assertEqual(pixels.find(f"{NAMESPACE}TiffData").attrib, {"IFD": "0", "PlaneCount": "24"})
        self.assertEqual(self.planes(root), [])
        with tifffile.TiffFile(path) as file:
            self.assertTrue(file.pages[0].tags["ImageDescription"].value.isascii())
            self.assertNotIn("ImageDescription", file.pages[1].tags)

    def test_a_unit_that_ome_lacks_is_told_in_micrometres_or_seconds_or_not_at_all(self):
        axes = [Axis(2, "X", 10.0, 0.0, unit(METRE, 5e-7)), Axis(2, "Y", 10.0, 0.0, unit(SECOND)), Axis(2, "Z", 3.0),
                Axis(2, "T", 6.0, 0.0, unit(SECOND, 7.0))]
        _, _, root = self.read(self.export(self.write_described(axes, numpy.zeros((2, 2, 2, 2), "<u2")), ".tif"))
        attributes = {key: value for key, value in self.pixels(root).attrib.items() if "Size" not in key[:5]}
        self.assertEqual(attributes["PhysicalSizeX"], "2.5")
        self.assertEqual(attributes["PhysicalSizeXUnit"], "µm")
        self.assertEqual((attributes["TimeIncrement"], attributes["TimeIncrementUnit"]), ("21", "s"))
        self.assertFalse(any(key.startswith(("PhysicalSizeY", "PhysicalSizeZ")) for key in attributes))

    def test_the_date_is_that_of_the_file(self):
        xml = (b"<ome:OME Creator=\"c\"><ome:Image ID=\"Image:1\"><ome:AcquisitionDate>2026-11-21T22:13:14"
               b"</ome:AcquisitionDate></ome:Image></ome:OME>")
        source = self.write(vbf_described.stack([Axis(2, "X")], b"\x01\0\2\0", entries={b"ome_xml": xml}))
        _, _, root = self.read(self.export(source, ".tif"))
        self.check_order(root)
        date = root.find(f"{NAMESPACE}Image/{NAMESPACE}AcquisitionDate")
        self.assertEqual(date.text, "2026-11-21T22:13:14")

    def test_a_region_keeps_its_size_and_its_place(self):
        axes, array = self.described()
        source = self.write_described(axes, array)
        path = self.export(source, ".tif", "--region", "x=2:6,z=1:3,c=0,t=1")
        letters, samples, root = self.read(path)
        self.assertEqual(letters, "ZYX")
        numpy.testing.assert_array_equal(samples, array[1, 0, 1:3, :, 2:6])
        pixels = self.pixels(root)
        self.assertEqual([pixels.get(key) for key in ("PhysicalSizeX", "PhysicalSizeY", "PhysicalSizeZ")],
                         ["0.2", "150", "5e-07"])
        self.assertEqual([channel.get("Name") for channel in pixels.iter(f"{NAMESPACE}Channel")], ["DAPI <1>"])
        first, second = self.planes(root)
        self.assertEqual((first["TheZ"], second["TheZ"], first["PositionZUnit"]), ("0", "1", "m"))
        self.assertAlmostEqual(float(first["PositionZ"]), -0.25e-6, 15)
        self.assertAlmostEqual(float(second["PositionZ"]), 0.25e-6, 15)
        self.assertAlmostEqual(float(first["PositionX"]), 0.0)
        self.assertAlmostEqual(float(first["DeltaT"]), 0.0)
        self.check_order(root)

    def test_offsets_and_columns_place_the_planes(self):
        axes = [Axis(2, "X", 2.0, 7.0, MICROMETRE), Axis(2, "Y", 2.0, -1.0, MICROMETRE),
                Axis(2, "C"), Axis(3, "T", 1.0, 0.0, unit(SECOND), positions=(0.5, 2.0, 8.0))]
        array = numpy.arange(24, dtype="<u2").reshape(3, 2, 2, 2)
        _, _, root = self.read(self.export(self.write_described(axes, array), ".tif"))
        self.assertNotIn("TimeIncrement", self.pixels(root).attrib)
        planes = self.planes(root)
        self.assertEqual([(plane["TheC"], plane["TheT"], plane["DeltaT"]) for plane in planes],
                         [("0", "0", "0.5"), ("1", "0", "0.5"), ("0", "1", "2"), ("1", "1", "2"), ("0", "2", "8"),
                          ("1", "2", "8")])
        self.assertEqual({(plane["PositionX"], plane["PositionY"], plane["PositionXUnit"]) for plane in planes},
                         {("7", "-1", "µm")})

    def test_large_pages_go_through_many_strips(self):
        random = numpy.random.default_rng(1)
        array = random.integers(0, 1000, (2, 700, 900), "<u2")
        source = self.write_array(array, "XYZ")
        for level in ("0", "1", "9"):
            path = self.export(source, ".tiff", "--compress", level)
            _, samples, _ = self.read(path)
            numpy.testing.assert_array_equal(samples, array)
            with tifffile.TiffFile(path) as file:
                self.assertGreater(len(file.pages[0].dataoffsets), 2)
                self.assertEqual(file.pages[0].compression, 1 if level == "0" else 8)

    def test_endings_in_any_case(self):
        array = numpy.arange(6, dtype="<u2").reshape(2, 3)
        for ending in (".tif", ".TIFF", ".ome.tif", ".ome.tiff", ".OME.TIF"):
            numpy.testing.assert_array_equal(self.read(self.export(self.write_array(array), ending))[1], array)

    def test_a_single_sample_is_a_page(self):
        source = self.write(vbf_described.stack([], b"\x07\x00"))
        self.assertEqual(self.read(self.export(source, ".tif"))[1].ravel(), [7])

    def test_a_stack_of_no_samples_is_refused(self):
        source = self.write(vbf_described.stack([Axis(0, "X"), Axis(3, "Y")], b""))
        self.refuse(4, "No samples to be written!", source, ".tif")
        self.refuse(4, "No samples to be written!", source, ".png")
        self.assertEqual(self.load(source).shape, (3, 0))

    def test_compression_is_for_tiff_and_has_nine_levels(self):
        source = self.write_array(numpy.zeros((2, 2), "<u2"))
        for ending, level in ((".npy", "1"), (".png", "1"), (".raw", "0"), (".tif", "10"), (".tif", "-1"),
                              (".tif", "18446744073709551615")):
            result = run("export", source, "--stack", "0", "--output", self.path("out" + ending), "--compress", level)
            self.assertEqual(result.returncode, 2)
        self.assertEqual(os.listdir(self.folder), ["source.vbf"])


@unittest.skipUnless(glob.glob(os.path.join(DATA, "vbf", "good", "*.vbf")), f"no sample data in {DATA}")
class SampleDataTest(OmeTiffCase):
    def stacks(self):
        for path in sorted(glob.glob(os.path.join(DATA, "vbf", "good", "*.vbf"))):
            with open(path[:-4] + ".json", encoding="utf-8") as file:
                for index, stack in enumerate(json.load(file)["info"]["stacks"]):
                    yield path, str(index), stack

    def test_every_stack_with_an_ome_type_is_the_same_in_tiff_and_npy(self):
        compared = 0
        for path, index, stack in self.stacks():
            if stack["data_type"] not in OME_TYPES or 0 in stack["sizes"] or numpy.prod(stack["sizes"]) > 1e7:
                continue
            with self.subTest(path=path, stack=index):
                outputs = [self.path("out.tif"), self.path("out.npy")]
                results = [run("export", path, "--stack", index, "--output", output, "--force") for output in outputs]
                if results[0].returncode == 4:
                    self.assertIn(b"OME-TIFF", results[0].stderr)
                    continue
                for result in results:
                    self.assertEqual(result.returncode, 0)
                axes, samples, root = self.read(outputs[0])
                numpy.testing.assert_array_equal(samples.ravel(), numpy.load(outputs[1]).ravel())
                self.check_order(root)
                compared += 1
        self.assertGreater(compared, 50)


class PngTest(ExportTest):
    def picture(self, source, *arguments):
        return png_pixels.read(self.export(source, ".png", *arguments))

    def test_a_plane_is_scaled_from_its_least_value_to_its_greatest(self):
        array = numpy.array([[100, 150, 200], [300, 110, 100]], "<u2")
        expected = numpy.round((array - 100.0) / 200 * 255)
        numpy.testing.assert_array_equal(self.picture(self.write_array(array)), expected)

    def test_more_axes_become_their_maximum(self):
        random = numpy.random.default_rng(3)
        array = random.integers(0, 256, (3, 4, 20, 30), "u1")
        array[1, 2, 0, :2] = 0, 255
        array[:, :, 0, 0] = 0
        source = self.write_array(array, data_type=1)
        numpy.testing.assert_array_equal(self.picture(source), array.max((0, 1)))
        plane = array[1, 2].astype(float)
        expected = numpy.round((plane - plane.min()) / (plane.max() - plane.min()) * 255)
        numpy.testing.assert_array_equal(self.picture(source, "--region", "2=2,3=1"), expected)

    def test_x_and_y_are_the_picture_wherever_they_stand(self):
        array = numpy.arange(24, dtype="u1").reshape(2, 3, 4)
        shown = array.max(2).T
        expected = numpy.round((shown - shown.min()) / (shown.max() - shown.min()) * 255.0)
        numpy.testing.assert_array_equal(self.picture(self.write_array(array, "TYX", data_type=1)), expected)

    def test_what_is_left_of_a_region_is_the_picture(self):
        array = numpy.arange(24, dtype="u1").reshape(2, 3, 4)
        source = self.write_array(array, "XYZ", data_type=1)
        self.assertEqual(self.picture(source, "--region", "x=1").shape, (2, 3))
        self.assertEqual(self.picture(source, "--region", "x=1,z=1").shape, (1, 3))
        self.assertEqual(self.picture(source, "--region", "x=1,y=1,z=1").shape, (1, 1))

    def test_the_darkest_and_brightest_thousandth_saturate(self):
        array = numpy.tile(numpy.arange(100, dtype="<u2"), 100).reshape(100, 100)
        array[50, 50] = 60000
        picture = self.picture(self.write_array(array))
        self.assertEqual((picture[50, 50], picture[0, 99], picture[0, 0]), (255, 255, 0))

    def test_a_single_bright_spot_is_seen(self):
        array = numpy.zeros((100, 100), "<u2")
        array[40, 60] = 9
        picture = self.picture(self.write_array(array))
        self.assertEqual((picture[40, 60], picture.sum()), (255, 255))

    def test_a_constant_picture_is_black(self):
        for value in (0, 77):
            array = numpy.full((3, 4), value, "<u2")
            numpy.testing.assert_array_equal(self.picture(self.write_array(array)), numpy.zeros((3, 4)))

    def test_values_that_are_not_finite_have_their_shades(self):
        array = numpy.array([[0, 1, numpy.nan, numpy.inf], [-numpy.inf, 2, 4, 1e-3]], "<f4")
        picture = self.picture(self.write_array(array, data_type=0x40))
        numpy.testing.assert_array_equal(picture, [[0, 64, 0, 255], [0, 128, 255, 0]])
        array = numpy.full((2, 2), numpy.nan, "<f8")
        numpy.testing.assert_array_equal(self.picture(self.write_array(array, data_type=0x80)), [[0, 0], [0, 0]])

    def test_complex_samples_are_shown_by_magnitude(self):
        array = numpy.array([[3 + 4j, 0, -10j]], "<c16")
        source = self.write_array(array, data_type=0x40000080)
        numpy.testing.assert_array_equal(self.picture(source), [[128, 0, 255]])

    def test_every_type_has_a_picture(self):
        for name in ALL_TYPES:
            array = numpy.zeros((1, 2), dtype_of(name))
            array[0, 1] = (0, 3) if array.dtype.names else 3
            source = self.write_array(array, data_type=id_of(name))
            numpy.testing.assert_array_equal(self.picture(source), [[0, 255]], name)


class SystemTest(ExportTest):
    """The system refuses, or somebody ends the program."""

    def test_a_file_that_grows_beyond_the_limit_is_told_and_leaves_nothing(self):
        limit = 1 << 18
        random = numpy.random.default_rng(5)
        source = self.write_array(random.integers(0, 65536, (700, 700), "<u2"))
        for ending in (".tif", ".png"):
            with self.subTest(ending):
                output = self.path("out" + ending)
                result = run("export", source, "--stack", "0", "--output", output,
                             preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
                self.expect(result, 3, f"vrel: {output}: Could not write!\n    os_error(27): File too large\n")
                self.assertEqual(os.listdir(self.folder), ["source.vbf"])

    def test_every_size_limit_is_told(self):
        array = numpy.arange(600, dtype="<u2").reshape(2, 15, 20)
        source = self.write_array(array)
        for ending in (".tif", ".png"):
            size = os.path.getsize(self.export(source, ending))
            os.remove(self.path("out" + ending))
            for limit in range(0, size, max(1, size // 25)):
                with self.subTest(ending, limit=limit):
                    result = run("export", source, "--stack", "0", "--output", self.path("out" + ending),
                                 preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
                    self.assertEqual(result.returncode, 3)
                    self.assertIn(b"Could not write!\n    os_error(27): File too large\n", result.stderr)
                    self.assertEqual(os.listdir(self.folder), ["source.vbf"])

    def test_an_existing_file_is_replaced_only_by_force(self):
        source = self.write_array(numpy.zeros((2, 2), "<u2"))
        for ending in (".tif", ".png"):
            output = self.write(b"old", "out" + ending)
            result = run("export", source, "--stack", "0", "--output", output)
            self.expect(result, 3, f"vrel: {output}: Output file exists already, --force replaces it!\n"
                                   "    os_error(17): File exists\n")
            self.assertNotEqual(os.path.getsize(self.export(source, ending)), 3)

    def test_an_interruption_leaves_nothing(self):
        source = self.large(mebibytes=4000)
        for ending in (".tif", ".png"):
            with self.subTest(ending):
                process = subprocess.Popen([PROGRAM, "export", source, "--stack", "0", "--output",
                                            self.path("out" + ending)], stderr=subprocess.PIPE)
                wait_until(lambda: len(os.listdir(self.folder)) > 1)
                self.assertNotIn("out" + ending, os.listdir(self.folder))
                process.send_signal(signal.SIGINT)
                self.assertEqual(process.communicate(timeout=TIME_LIMIT)[1], b"")
                self.assertEqual((process.returncode, os.listdir(self.folder)), (130, ["source.vbf"]))

    def test_damaged_samples_leave_nothing(self):
        array = numpy.random.default_rng(6).integers(0, 99, (200, 300), "<u2")
        content = bytearray(vbf_described.stack([Axis(300), Axis(200)], array.tobytes(), block_size=60000))
        for place in range(20000, 20400):
            content[place] ^= 0x55
        source = self.write(content)
        for ending in (".tif", ".png", ".npy"):
            result = run("export", source, "--stack", "0", "--output", self.path("out" + ending))
            self.assertEqual(result.returncode, 4)
            self.assertEqual(os.listdir(self.folder), ["source.vbf"])

    @unittest.skipIf(SANITIZED, "a sanitizer needs the memory for itself")
    def test_a_picture_takes_memory_up_to_the_limit(self):
        self.refuse(3, "Out of memory! --max-memory sets the limit.", self.large(1), ".png", "--max-memory", "12MiB")


if __name__ == "__main__":
    unittest.main()
