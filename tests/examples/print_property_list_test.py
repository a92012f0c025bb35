"""print_property_list_test.py PROGRAM FILE...: against what Python reads in the same files."""

import datetime
import pathlib
import plistlib
import re
import subprocess
import sys
import tempfile

EVERYTHING = {
    "text": 'a "b" \\ \u00e4\U0001f600\n\x7f\u009b\u00c2', "": "empty key", "numbers": [
        0, -(2**63), 2**64 - 1, 1.5, -0.1], "flags": [True, False], "none": [{}, [], ""],
    "date": datetime.datetime(1969, 12, 31, 23, 59, 59), "data": b"\0\xff" * 30}


def escaped(text):
    text = re.sub(r'["\\]', r"\\\g<0>", text)
    return re.sub("[\0-\x1f\x7f-\x9f]", lambda m: "".join(
        f"\\x{byte:02x}" for byte in m[0].encode()), text)


def lines(key, value, indent=""):
    kinds = {dict: "dictionary", list: "array"}
    if type(value) in kinds:
        items = enumerate(value)
        if isinstance(value, dict):
            items = sorted((escaped(k), item) for k, item in value.items())
        below = [line for k, item in items for line in lines(k, item, indent + "  ")]
        return [f"{indent}{key}: {kinds[type(value)]}", *below]
    leaf = {str: lambda: f'"{escaped(value)}"', bool: lambda: str(value).lower(),
            bytes: lambda: f"<{value.hex()}>",
            datetime.datetime: lambda: value.isoformat() + "Z"}.get(type(value), lambda: str(value))
    return [f"{indent}{key}: {leaf()}"]


def run(*arguments, status=0):
    done = subprocess.run([sys.argv[1], *arguments], capture_output=True, check=False)
    assert done.returncode == status, done
    assert done.stderr.count(b"\n") == (status != 0)
    return done.stdout.decode().split("\n")[:-1]


with tempfile.TemporaryDirectory() as folder:
    path = pathlib.Path(folder, "everything")
    path.write_bytes(plistlib.dumps(EVERYTHING))
    for file in [path, *map(pathlib.Path, sys.argv[2:])]:
        expected = [line[2:] for line in lines("", plistlib.loads(file.read_bytes()))[1:]]
        assert run(file) == expected, (run(file), expected)
    path.write_bytes(plistlib.dumps([1]))
    for bad in (path, folder, folder + "/none"):
        run(bad, status=1)
    run(status=2)
