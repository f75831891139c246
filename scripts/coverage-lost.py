#!/usr/bin/env python3
"""Lists the lines and branches of src/ that one coverage run reached and a
later one does not.

    scripts/coverage-lost.py BEFORE/coverage.json AFTER/coverage.json

Each file is the coverage.json that `COVERAGE_REPORT=DIR scripts/coverage.sh`
writes. A test fold is safe when this prints nothing: percentages can hold
while a branch one test alone reached is gone, so the sets are compared.
Exit status 1 when something was lost.
"""
import json
import sys


def reached(path):
    """file -> ({line}, {(line, branch)}) of what the run reached."""
    out = {}
    for f in json.load(open(path))['files']:
        lines, branches = set(), set()
        for line in f['lines']:
            if line.get('gcovr/noncode'):
                continue
            if line['count'] > 0:
                lines.add(line['line_number'])
            for k, branch in enumerate(line['branches']):
                if branch['count'] > 0:
                    branches.add((line['line_number'], k))
        out[f['file']] = (lines, branches)
    return out


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    before, after = reached(sys.argv[1]), reached(sys.argv[2])
    lost = 0
    for name, (lines, branches) in sorted(before.items()):
        now_lines, now_branches = after.get(name, (set(), set()))
        gone_lines = sorted(lines - now_lines)
        gone_branches = sorted(branches - now_branches)
        if gone_lines:
            print(f"{name}: lines {', '.join(map(str, gone_lines))}")
        if gone_branches:
            print(f"{name}: branches {', '.join(f'{l}#{k}' for l, k in gone_branches)}")
        lost += len(gone_lines) + len(gone_branches)
    print(f"{lost} lines and branches lost" if lost else "nothing lost")
    return 1 if lost else 0


if __name__ == '__main__':
    sys.exit(main())
