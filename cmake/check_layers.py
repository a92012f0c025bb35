#!/usr/bin/python3
"""check_layers.py TREE [TABLE]: every #include below TREE against the table of layers.

Prints each include that its folder may not have, and each folder without a row; the exit status is
1 if there was any."""

import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s*(<[^>]+>|"[^"]+")', re.MULTILINE)
SOURCES = {".h", ".hpp", ".c", ".cc", ".cpp"}


def read_table(path):
    groups, rows = {"anything": [".*"]}, {}
    for line in path.read_text().splitlines():
        line = line.split("#")[0].strip()
        if line.startswith("group "):
            _, name, regex = line.split(None, 2)
            groups.setdefault(name, []).append(regex)
        elif line:
            folder, names = line.split(":")
            rows[folder] = names.split()
    allowed = {}
    for folder, names in rows.items():
        regexes = []
        for name in names:
            regexes += groups.get(name, ['"' + re.escape(name) + '/.*"'])
        allowed[folder] = re.compile("|".join(f"(?:{r})" for r in regexes))
    return allowed


def row_for(file, allowed):
    for folder in file.parents:
        if str(folder) in allowed:
            return str(folder)
    return None


def main():
    tree = pathlib.Path(sys.argv[1])
    table = pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else tree / "cmake/layers.txt"
    allowed = read_table(table)
    faults, files = [], 0
    for path in sorted(tree.rglob("*")):
        file = path.relative_to(tree)
        if path.suffix not in SOURCES or file.parts[0] in ("build", ".git"):
            continue
        files += 1
        row = row_for(file, allowed)
        if row is None:
            faults.append(f"{file}: its folder has no row in {table.name}")
            continue
        for include in INCLUDE.findall(path.read_text(errors="replace")):
            if not allowed[row].fullmatch(include):
                faults.append(f"{file}: {row} may not include {include}")
    print("\n".join(faults) or f"{files} files, no stranger")
    return 1 if faults or files == 0 else 0


sys.exit(main())
