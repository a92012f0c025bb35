"""hardening_test.py BUILD: what the panel's binary in an optimised build, and all that it is linked from,
is protected with. A line for each property."""

import json
import pathlib
import re
import subprocess
import sys

BUILD = pathlib.Path(sys.argv[1])
PANEL = BUILD / "bin/WUXAgentControlPanel"
FLAGS = ("-fstack-protector-strong", "-fstack-clash-protection", "-fcf-protection=full",
         "-D_FORTIFY_SOURCE=2")


def output(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout


def parts():
    """The objects that the panel is linked from, in libraries and alone, with their notes."""
    for path in (*BUILD.glob("**/*.a"), *BUILD.glob("app/**/*.o")):
        for name, notes in re.findall(r"File: (.*)\n((?:(?!\nFile:)[^\0])*)", output(
                "readelf", "--wide", "--notes", path, PANEL)):  # two files: each has its name printed
            if name != str(PANEL):
                yield name, notes


def compiled_everywhere(flag):
    commands = json.loads((BUILD / "compile_commands.json").read_text())
    return all(flag in entry["command"].split() for entry in commands)


checksec = json.loads(output("checksec", "--format=json", f"--file={PANEL}"))[str(PANEL)]
dynamic = output("readelf", "--wide", "--dynamic", PANEL)
segments = output("readelf", "--wide", "--segments", PANEL)
main = output("objdump", "--disassemble=main", "--no-show-raw-insn", PANEL)
notes = dict(parts())
PROPERTIES = {
    "position independent": checksec["pie"] == "yes" and bool(re.search("FLAGS_1.* PIE", dynamic)),
    "relocations read-only": checksec["relro"] == "full",
    "symbols bound at the start": bool(re.search("FLAGS_1.* NOW", dynamic)),
    "stack protector": checksec["canary"] == "yes",
    "stack not executable": checksec["nx"] == "yes",
    "nothing writable and executable": "GNU_STACK" in segments and " RWE " not in segments,
    "no search path for libraries": checksec["rpath"] == checksec["runpath"] == "no",
    # The linker drops the note from the program, since the C library's start files have none.
    "indirect jumps have targets": bool(re.search(r"<main>:\n.*endbr64", main)),
    "shadow stack and targets in every part": len(notes) > 100 and all(
        "IBT, SHSTK" in note for note in notes.values()),
    # Few calls need a check at run time (checksec counts them), perhaps none: what counts is the flag.
    **{f"{flag} for every source": compiled_everywhere(flag) for flag in FLAGS},
}
for name, holds in PROPERTIES.items():
    print(f"{'yes' if holds else 'NO ':<4}{name}")
print(f"{checksec['fortified']} functions called through their checked form")
sys.exit(not all(PROPERTIES.values()))
