#!/usr/bin/python3
"""Measured images on their whole road: imported, verified, exported to OME-TIFF, and read there by another program."""

import os
import unittest
import xml.etree.ElementTree

import numpy
import tifffile

from sample_images import IMAGES, SAMPLE_IMAGES
from vrel_program import FolderTestCase, run

NAMESPACE = "{http://www.openmicroscopy.org/Schemas/OME/2016-06}"
STEPS = {"X": "PhysicalSizeX", "Y": "PhysicalSizeY", "Z": "PhysicalSizeZ", "T": "TimeIncrement"}


@unittest.skipUnless(os.path.isdir(IMAGES), "no sample images")
class RoundTripTest(FolderTestCase):
    def expect_success(self, *arguments):
        result = run(*arguments)
        self.assertEqual((result.returncode, result.stderr), (0, b""))

    def carry(self, name):
        """The OME-TIFF file that an image has become."""
        stored, exported = self.path(f"{name}.vbf"), self.path(f"{name}.ome.tif")
        self.expect_success("import", os.path.join(IMAGES, name), "--output", stored)
        self.expect_success("verify", stored)
        self.expect_success("export", stored, "--stack", 0, "--output", exported)
        return tifffile.TiffFile(exported)

    def expect_axes(self, series, labels):
        # An axis without a name gets the first letter that is free.
        letters = "".join(label or "Z" for label in labels)
        self.assertEqual(series.axes, letters[::-1])

    def expect_steps(self, description, sizes, labels, lengths):
        pixels = xml.etree.ElementTree.fromstring(description).find(f"{NAMESPACE}Image/{NAMESPACE}Pixels")
        expected = {label: length / size for label, size, length in zip(labels, sizes, lengths) if length is not None}
        for label, key in STEPS.items():
            if label in expected:
                # Of the resolution in a TIFF file a single is what libtiff gives.
                self.assertAlmostEqual(float(pixels.get(key)), expected[label], delta=1e-7 * expected[label])
                self.assertEqual(pixels.get(f"{key}Unit"), "s" if label == "T" else "µm")
            else:
                self.assertIsNone(pixels.get(key))

    def test_samples_axes_and_pixel_sizes_arrive(self):
        for name, sizes, _, labels, lengths in SAMPLE_IMAGES:
            with self.subTest(name=name), self.carry(name) as carried:
                series = carried.series[0]
                original = tifffile.imread(os.path.join(IMAGES, name))
                self.assertEqual(series.dtype, original.dtype)
                self.assertTrue(numpy.array_equal(series.asarray(), original))
                self.expect_axes(series, labels)
                self.expect_steps(carried.pages[0].description, sizes, labels, lengths)


if __name__ == "__main__":
    unittest.main()
