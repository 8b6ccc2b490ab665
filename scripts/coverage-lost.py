#!/usr/bin/env python3
"""Lines and branches of src/ covered in one lcov file and not in another.

    scripts/coverage-lost.py BEFORE.info AFTER.info

Prints both totals, then per source file the lines covered before and not
after, and the count of such branches. Paths are compared from "src/" on, so
the two files may come from different checkouts of the same sources.
"""
import collections
import sys


def load(path):
    lines = collections.defaultdict(dict)
    branches = collections.defaultdict(dict)
    current = None
    for raw in open(path, errors="replace"):
        raw = raw.strip()
        if raw.startswith("SF:"):
            name = raw[3:]
            current = name[name.find("/src/") + 1:] if "/src/" in name else name
        elif raw.startswith("DA:"):
            number, count = raw[3:].split(",")[:2]
            lines[current][int(number)] = max(lines[current].get(int(number), 0), int(count))
        elif raw.startswith("BRDA:"):
            number, block, branch, taken = raw[5:].split(",")
            key = (int(number), block, branch)
            branches[current][key] = max(branches[current].get(key, 0), 0 if taken == "-" else int(taken))
    return lines, branches


def summary(name, lines, branches):
    line_hits = sum(count > 0 for file in lines.values() for count in file.values())
    line_total = sum(len(file) for file in lines.values())
    branch_hits = sum(count > 0 for file in branches.values() for count in file.values())
    branch_total = sum(len(file) for file in branches.values())
    print(f"{name}: lines {line_hits}/{line_total} ({100 * line_hits / max(line_total, 1):.1f}%), "
          f"branches {branch_hits}/{branch_total} ({100 * branch_hits / max(branch_total, 1):.1f}%)")


def main(before_path, after_path):
    before_lines, before_branches = load(before_path)
    after_lines, after_branches = load(after_path)
    summary("before", before_lines, before_branches)
    summary("after", after_lines, after_branches)
    for file in sorted(set(before_lines) | set(before_branches)):
        lost = sorted(n for n, c in before_lines[file].items() if c > 0 and not after_lines[file].get(n, 0))
        lost_branches = sorted(k for k, c in before_branches[file].items()
                               if c > 0 and not after_branches[file].get(k, 0))
        if lost or lost_branches:
            print(f"{file}: lines {lost}; branches {len(lost_branches)} "
                  f"(at lines {sorted({k[0] for k in lost_branches})})")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
