"""The program on every file of the sample data: good files give what is told beside them, bad files
their exit code and message, without a crash, a hang or much memory."""

import concurrent.futures
import glob
import hashlib
import json
import os
import subprocess
import sys
import tempfile
import time
import typing

from vrel_program import DATA, PROGRAM, SANITIZED

SKIPPED = 77
TIME_LIMIT = 20
MEMORY_LIMIT = 64 << 20


class Figures(typing.NamedTuple):
    """What one call took. Memory counts from that of this process, which starts it."""
    seconds: float
    memory: int
    arguments: tuple

    def __str__(self):
        return (f"{self.seconds * 1000:6.0f} ms {self.memory >> 20:4} MiB  "
                f"{' '.join(os.path.basename(word) for word in self.arguments)}")


class Run:
    """One call of the program: what came out of it, and what it took."""

    def __init__(self, *arguments):
        with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
            started = time.monotonic()
            process = subprocess.Popen(["timeout", "-s", "KILL", str(TIME_LIMIT), PROGRAM, *arguments],
                                       stdin=subprocess.DEVNULL, stdout=output, stderr=errors)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            self.figures = Figures(time.monotonic() - started, usage.ru_maxrss * 1024, arguments)
            self.code = process.returncode
            output.seek(0)
            errors.seek(0)
            self.output = output.read()
            self.errors = errors.read().decode(errors="replace")


class Checks:
    """What one file was found to do."""

    def __init__(self, name):
        self.name = name
        self.figures = []
        self.faults = []

    def run(self, *arguments):
        run = Run(*arguments)
        self.figures.append(run.figures)
        return run

    def expect(self, seen, expected, what):
        if seen != expected:
            self.faults.append(f"{self.name}: {what} is {str(seen)[:300]!r}, not {str(expected)[:300]!r}")

    def expect_success(self, run):
        self.expect(run.code, 0, f"exit code of {run.figures} ({run.errors})")
        return run.code == 0


def digest(content):
    return hashlib.sha256(content).hexdigest()


def read_json(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def first_difference(seen, expected, where=""):
    if isinstance(seen, dict) and isinstance(expected, dict) and seen.keys() == expected.keys():
        pairs = ((key, seen[key], expected[key]) for key in seen)
    elif isinstance(seen, list) and isinstance(expected, list) and len(seen) == len(expected):
        pairs = ((index, *pair) for index, pair in enumerate(zip(seen, expected)))
    else:
        # Text, so that -0.0 differs from 0.0 and a number from one of another kind.
        same = json.dumps(seen) == json.dumps(expected)
        return None if same else f"{where} is {str(seen)[:200]!r}, not {str(expected)[:200]!r}"
    return next(filter(None, (first_difference(*pair[1:], f"{where}/{pair[0]}") for pair in pairs)), None)


def without_unit_texts(description):
    """The expected descriptions hold units by factor and exponents alone; unit_text_test.cpp has their texts."""
    for stack in description["stacks"]:
        for unit in (*stack["units"], stack["data_unit"]):
            unit.pop("text")
    return description


def check_description(checks, path, expected):
    run = checks.run("info", "--json", path)
    if checks.expect_success(run):
        description = without_unit_texts(json.loads(run.output))
        checks.expect(first_difference(description, expected), None, "difference")
    checks.expect_success(checks.run("info", path))


def check_samples(checks, path, index, samples, ranges, folder):
    output = os.path.join(folder, f"{checks.name}.raw")
    if not checks.expect_success(checks.run("export", path, "--stack", str(index), "--output", output, "--force")):
        return
    with open(output, "rb") as file:
        content = file.read()
    checks.expect((len(content), digest(content)), (samples["bytes"], samples["sha256"]), f"stack {index}")
    for part in ranges:
        position, count = str(part["position"]), str(part["count"])
        run = checks.run("export", path, "--stack", str(index), "--output", "-", "--offset", position,
                         "--count", count)
        checks.expect_success(run)
        checks.expect(digest(run.output), part["sha256"], f"stack {index} from {position}, {count} samples")


def check_good(path, folder):
    checks = Checks(os.path.basename(path)[:-4])
    expected = read_json(path[:-4] + ".json")
    check_description(checks, path, expected["info"])
    for index, (samples, ranges) in enumerate(zip(expected["samples"], expected["ranges"])):
        check_samples(checks, path, index, samples, ranges, folder)
    return checks


def command_of(entry, path):
    if entry["command"] == "info":
        return ["info", path]
    words = ["export", path, "--stack", str(entry["stack"]), "--output", "-"]
    for key in ("offset", "count"):
        if entry.get(key) is not None:
            words += [f"--{key}", str(entry[key])]
    return words


def is_judged_later(name):
    return name.startswith("metadata_") and name != "metadata_length_huge"


def check_bad(path, entry):
    checks = Checks(os.path.basename(path)[:-4])
    run = checks.run(*command_of(entry, path))
    checks.expect(run.code in range(5), True, f"exit code {run.code} ({run.errors}), which ends in order,")
    if not SANITIZED:
        checks.expect(run.figures.memory <= MEMORY_LIMIT, True, f"{run.figures.memory >> 20} MiB, within the limit,")
    if is_judged_later(checks.name):
        return checks
    if entry["exit"] is not None:
        checks.expect(run.code, entry["exit"], "exit code")
    if entry["message"] is not None:
        checks.expect(run.errors, f"vrel: {path}: {entry['message']}\n", "message")
    return checks


def check_all(good, bad, manifest):
    with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor(2) as pool:
        # The bad ones first: what this process holds counts as memory of those it starts.
        jobs = [pool.submit(check_bad, path, manifest[os.path.basename(path)[:-4]]) for path in bad]
        jobs += [pool.submit(check_good, path, folder) for path in good]
        return [job.result() for job in jobs]


def main():
    good = sorted(glob.glob(os.path.join(DATA, "vbf", "good", "*.vbf")))
    bad = sorted(glob.glob(os.path.join(DATA, "vbf", "bad", "*.vbf")))
    if not good or not bad:
        print(f"no sample data in {DATA}")
        return SKIPPED
    results = check_all(good, bad, read_json(os.path.join(DATA, "vbf", "bad", "manifest.json")))
    runs = [figures for checks in results for figures in checks.figures]
    faults = [fault for checks in results for fault in checks.faults]
    print("slowest:", max(runs, key=lambda run: run.seconds))
    print("largest:", max(runs, key=lambda run: run.memory))
    print(f"{len(good)} good and {len(bad)} bad files, {len(runs)} runs, {len(faults)} faults")
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
