"""Says which lines and branches of src/ the tests reach, and fails where something is missing.

Reads the JSON report of gcovr from standard input. Every line has to be reached, but for those that
unreached.txt names with the reason, where it depends on the machine too; of the branches nine in ten. Branches that the compiler makes for
exceptions are not counted.

    check_coverage.py [--list AREA]
"""

import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
NAMED = pathlib.Path(__file__).with_name("unreached.txt")
WANTED_BRANCHES = 0.9


def named_lines():
    """The (file, text of the line) pairs that may stay unreached."""
    lines = set()
    for line in NAMED.read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            file, text, _reason = line.split(" | ")
            lines.add((file, text))
    return lines


class File:
    def __init__(self, report):
        self.path = report["file"]
        self.area = self.path.split("/")[1]
        self.text = (ROOT / self.path).read_text(encoding="utf-8").splitlines()
        self.lines = [line for line in report["lines"] if not line["gcovr/noncode"]]
        self.branches = [(line["line_number"], branch) for line in self.lines
                         for branch in line["branches"] if not branch["throw"]]

    def text_of(self, number):
        return self.text[number - 1].strip()

    def unreached_lines(self):
        return [line["line_number"] for line in self.lines if line["count"] == 0]

    def unreached_branches(self):
        """Numbers of lines that were reached, of which a branch was not."""
        numbers = {number for number, branch in self.branches if branch["count"] == 0}
        return sorted(numbers.difference(self.unreached_lines()))


def ratio(reached, count):
    return reached / count if count else 1.0


def print_row(name, files):
    lines = sum(len(file.lines) for file in files)
    unreached = sum(len(file.unreached_lines()) for file in files)
    branches = sum(len(file.branches) for file in files)
    taken = sum(branch["count"] > 0 for file in files for _, branch in file.branches)
    print(f"{name:12} {lines:6} lines {100 * ratio(lines - unreached, lines):6.2f} %"
          f"   {branches:6} branches {100 * ratio(taken, branches):6.2f} %")
    return ratio(taken, branches)


def print_list(files):
    for file in files:
        for number in file.unreached_lines():
            print(f"{file.path}:{number}: line: {file.text_of(number)}")
        for number in file.unreached_branches():
            print(f"{file.path}:{number}: branch: {file.text_of(number)}")


def main(arguments):
    files = [File(report) for report in json.load(sys.stdin)["files"]]
    if arguments[:1] == ["--list"]:
        print_list([file for file in files if file.area == arguments[1]])
        return 0
    for area in sorted({file.area for file in files}):
        print_row(area, [file for file in files if file.area == area])
    branches = print_row("all of src", files)

    unreached = {(file.path, file.text_of(number)): number for file in files
                 for number in file.unreached_lines()}
    named = named_lines()
    faults = [f"{path}:{number}: no test reaches: {text}"
              for (path, text), number in sorted(unreached.items()) if (path, text) not in named]
    written = {(file.path, text.strip()) for file in files for text in file.text}
    faults += [f"{path}: {NAMED.name} names what is not there: {text}"
               for path, text in sorted(named.difference(written))]
    if branches < WANTED_BRANCHES:
        faults.append(f"less than {100 * WANTED_BRANCHES:g} % of the branches are reached")
    print("\n".join(faults) if faults else
          f"every line is reached, but for {len(named)} with a reason in tests/coverage/{NAMED.name}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
