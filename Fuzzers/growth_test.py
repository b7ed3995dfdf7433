"""Holds what is done with outside bytes to linear time: the instructions for each byte may not grow
with the size of the input. Prints them for every case.

usage: growth_test.py GROWTH-PROGRAM"""
import re
import subprocess
import sys
import tempfile
from collections import defaultdict
from pathlib import Path

# Sorting costs a little more for each byte the more there is to sort: a factor of 1.15 or so from the
# small size to the large one, where anything quadratic has a factor of four.
MOST_GROWTH = 1.3


def counts(program):
    """Of each case: the sizes in bytes, with the instructions for each byte."""
    found = defaultdict(list)
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["valgrind", "--quiet", "--tool=callgrind", "--compress-pos=no",
                        f"--callgrind-out-file={folder}/out", program], check=True, timeout=250)
        for file in Path(folder).iterdir():
            text = file.read_text()
            label = re.search(r"^desc: Trigger: Client Request: (.+): (\d+)$", text, re.M)
            total = re.search(r"^(?:summary|totals): (\d+)$", text, re.M)
            if label:
                size = int(label.group(2))
                found[label.group(1)].append((size, int(total.group(1)) / size))
    return {name: sorted(sizes) for name, sizes in found.items()}


def main():
    failed = 0
    measured = counts(sys.argv[1])
    assert measured, "nothing was measured"
    for name, ((small, before), (large, after)) in sorted(measured.items()):
        growth = after / before
        verdict = "" if growth <= MOST_GROWTH else "  GROWS"
        failed += bool(verdict)
        print(f"{name:28} {before:9.1f} a byte in {small:6,}, {after:9.1f} in {large:7,}{verdict}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
