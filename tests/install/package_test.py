"""The Debian packages: what they tell, what they hold, and that the tool runs from them."""

import gzip
import os
import pathlib
import subprocess
import tempfile
import unittest

from listing import NAMES, files_below, listed_files

BUILD = os.environ["VRELIO_BUILD"]
TIME_LIMIT = 300


def run(*command, **options):
    return subprocess.run(command, capture_output=True, check=True, encoding="utf-8", timeout=TIME_LIMIT, **options).stdout


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        run(os.environ["VRELIO_CPACK"], "-G", "DEB", "--config", f"{BUILD}/CPackConfig.cmake", "-B", cls.folder)
        cls.packages = {path.name.split("_")[0]: path for path in cls.folder.glob("*.deb")}
        cls.library = f"libvrelio{NAMES['soversion']}"
        (cls.folder / "each").mkdir()
        for name, path in cls.packages.items():
            run("dpkg-deb", "--extract", path, cls.folder / "each" / name)
            run("dpkg-deb", "--extract", path, cls.folder / "all")

    def field(self, package, name):
        return run("dpkg-deb", "--field", self.packages[package], name).strip()

    def contents(self, package):
        return files_below(self.folder / "each" / package / "usr")

    def test_there_is_a_package_for_each_use(self):
        self.assertEqual(sorted(self.packages), sorted([self.library, "libvrelio-dev", "vrel"]))
        for name in self.packages:
            with self.subTest(name):
                self.assertEqual(self.field(name, "Version"), NAMES["version"])
                self.assertRegex(self.field(name, "Maintainer"), r"^.+ <.+@.+>$")
                self.assertRegex(self.field(name, "Description"), r"^Reads, .+ data\n (This is|These are) .+\.$")

    def test_a_package_names_its_section(self):
        sections = {self.library: "libs", "libvrelio-dev": "libdevel", "vrel": "science"}
        self.assertEqual({name: self.field(name, "Section") for name in self.packages}, sections)

    def test_a_package_needs_what_it_was_linked_with(self):
        for name in ("libtinyxml", "libqt6core6", "libboost-locale", "zlib1g", "libc6"):
            self.assertIn(name, self.field(self.library, "Depends"))
        own = f"{self.library} (= {NAMES['version']})"
        self.assertEqual(self.field("libvrelio-dev", "Depends"), f"{own}, libboost-dev (>= 1.74)")
        for name in (own, "libtiff", "libpng", "libc6"):
            self.assertIn(name, self.field("vrel", "Depends"))

    def test_the_library_tells_others_what_to_depend_on(self):
        shlibs = run("dpkg-deb", "--info", self.packages[self.library], "shlibs")
        self.assertEqual(shlibs.strip(), f"libVrelIo {NAMES['soversion']} {self.library} (>= {NAMES['version']})")

    def test_each_file_is_in_one_package(self):
        together = [name.removesuffix(".gz") for package in self.packages for name in self.contents(package)]
        self.assertEqual(len(together), len(set(together)))
        self.assertEqual(set(together), set(listed_files()))

    def test_the_library_alone_is_what_programs_need(self):
        libdir = NAMES["libdir"]
        self.assertEqual(self.contents(self.library), sorted(
            [f"{libdir}/libVrelIo.so.{NAMES['soversion']}", f"{libdir}/libVrelIo.so.{NAMES['version']}"]))
        self.assertIn(f"{libdir}/libVrelIo.so", self.contents("libvrelio-dev"))
        self.assertIn("bin/vrel", self.contents("vrel"))

    def test_manual_pages_are_compressed(self):
        with gzip.open(self.folder / "all/usr/share/man/man1/vrel-info.1.gz") as page:
            self.assertTrue(page.read().startswith(b'.TH "VREL\\-INFO" 1'))

    def test_no_file_holds_the_path_of_the_build_folder(self):
        tree = self.folder / "all"
        self.assertEqual([name for name in files_below(tree) if BUILD.encode() in (tree / name).read_bytes()], [])

    def test_the_tool_runs_from_the_unpacked_packages(self):
        tool = self.folder / "all/usr/bin/vrel"
        self.assertEqual(run(tool, "--version"), f"vrel {NAMES['version']}\n")
        self.assertEqual(run(tool, "units", "10 nm", "--in", "um"), "0.01 um\n")
        (loaded,) = [line for line in run("ldd", tool).splitlines() if "libVrelIo" in line]
        self.assertIn(str(self.folder), os.path.realpath(loaded.split()[2]))


if __name__ == "__main__":
    unittest.main()
