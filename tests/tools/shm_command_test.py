"""vrel shm from outside, with a process of the library that is killed."""

import json
import os
import shutil
import subprocess
import unittest
import uuid

PROGRAM = os.environ["VRELIO_PROGRAM"]
PEER = os.environ["VRELIO_SHARED_MEMORY_PEER"]
FOLDER = "/dev/shm"
TIME_LIMIT = 60


def run(*arguments):
    return subprocess.run([PROGRAM, "shm", *arguments], capture_output=True, timeout=TIME_LIMIT)


def listed(id):
    """The entry of a block; other tests may have blocks at the same time."""
    blocks = json.loads(run("--list", "--json").stdout)
    return next((block for block in blocks if block["id"] == id), None)


def exists(name):
    return os.path.lexists(os.path.join(FOLDER, name))


class ShmCommandTest(unittest.TestCase):
    def start_creator(self, size):
        """A process that holds a block, and the block's id."""
        process = subprocess.Popen([PEER, "create", str(size)], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process, process.stdout.readline().decode().strip()

    def make(self, name):
        path = os.path.join(FOLDER, name)
        with open(path, "xb") as file:
            file.write(b"bytes")
        self.addCleanup(lambda: exists(name) and os.remove(path))

    def expect(self, result, code, error=""):
        self.assertEqual((result.returncode, result.stdout, result.stderr.decode()), (code, b"", error))

    def test_what_a_killed_process_leaves_is_found_and_removed(self):
        process, id = self.start_creator(1000)
        self.assertEqual(listed(id)["processes"], [process.pid])
        process.kill()
        process.wait(TIME_LIMIT)
        block = listed(id)
        self.assertEqual((block["bytes"], block["own"], block["user"], block["processes"]),
                         (1000, True, os.geteuid(), []))
        self.assertIn(f"{id}  1000 bytes, ", run("--list").stdout.decode())
        self.expect(run("--remove", id), 0)
        self.assertFalse(exists(id))
        self.assertIsNone(listed(id))

    def test_what_a_process_uses_is_removed_only_by_force(self):
        for size in (0, 1000):
            with self.subTest(size):
                process, id = self.start_creator(size)
                self.expect(run("--remove", id), 3,
                            f"vrel: {id}: Shared memory block is in use by process {process.pid}, --force removes "
                            "its name!\n    os_error(16): Device or resource busy\n")
                self.assertTrue(exists(id))
                self.expect(run("--remove", id, "--force"), 0)
                self.assertFalse(exists(id))

    @unittest.skipIf(os.geteuid() != 0, "only the administrator can give a block away")
    def test_what_another_user_made_is_removed_only_by_force(self):
        id = str(uuid.uuid4())
        self.make(id)
        os.chown(os.path.join(FOLDER, id), 4711, 4711)
        self.expect(run("--remove", id), 3,
                    f"vrel: {id}: Shared memory block belongs to another user, --force removes it!\n"
                    "    os_error(1): Operation not permitted\n")
        self.assertIn(f"{id}  5 bytes, of user 4711, ", run("--list").stdout.decode())
        self.expect(run("--force", "--remove", id), 0)
        self.assertFalse(exists(id))

    @unittest.skipIf(os.environ.get("VRELIO_SANITIZE"), "a sanitizer wants to see its process")
    @unittest.skipIf(shutil.which("unshare") is None, "no unshare")
    def test_nothing_is_removed_where_processes_cannot_be_seen(self):
        hidden = "mount --bind /dev/shm /proc && exec \"$@\""
        id = str(uuid.uuid4())
        self.make(id)
        result = subprocess.run(["unshare", "--user", "--map-root-user", "--mount", "sh", "-c", hidden, "sh", PROGRAM, "shm",
                                 "--remove", id], capture_output=True, timeout=TIME_LIMIT)
        if result.stderr.startswith((b"unshare", b"mount")):
            self.skipTest("the system lets no test hide the processes")
        self.expect(result, 3, f"vrel: {id}: Could not list processes!\n    os_error(2): No such file or directory\n")
        self.assertTrue(exists(id))

    def test_a_block_that_does_not_exist_is_named(self):
        id = str(uuid.uuid4())
        for arguments in (["--remove", id], ["--remove", id, "--force"]):
            self.expect(run(*arguments), 3, f"vrel: {id}: No such shared memory block!\n"
                                            "    os_error(2): No such file or directory\n")

    def test_a_name_that_is_no_uuid_is_wrong_usage_and_stays(self):
        id = str(uuid.uuid4())
        for name in (id + "_", id.upper().replace("4", "A"), "{" + id + "}", id.replace("-", "")):
            self.make(name)
            for arguments in (["--remove", name], ["--remove", name, "--force"], ["--remove", f"../shm/{name}"]):
                with self.subTest(arguments):
                    result = run(*arguments)
                    self.assertEqual((result.returncode, result.stdout), (2, b""))
                    self.assertIn(b"is no id of a shared memory block", result.stderr)
                    self.assertTrue(exists(name))
            self.assertIsNone(listed(name))

    def test_wrong_usage_is_2_and_leaves_standard_output_empty(self):
        id = str(uuid.uuid4())
        for arguments in ([], ["--json"], ["--force"], ["--remove"], ["--remove", ""], ["--list", "--remove", id],
                          ["--list", "--force"], ["--remove", id, "--json"], ["--list", id], [id]):
            with self.subTest(arguments):
                result = run(*arguments)
                self.assertEqual((result.returncode, result.stdout), (2, b""))
                self.assertTrue(result.stderr.startswith(b"vrel: "))

    def test_help_tells_what_is_removed(self):
        result = run("--help")
        self.assertEqual(result.returncode, 0)
        for text in (b"--list", b"--remove ID", b"--force", b"exit code 3"):
            self.assertIn(text, result.stdout)


if __name__ == "__main__":
    unittest.main()
