"""checksum_test.py PROGRAM: checksum on files, against other reckonings of what it prints."""

import bz2
import pathlib
import re
import subprocess
import sys
import tempfile

FILES = [pathlib.Path(p) for p in (bz2.__file__, sys.executable, sys.argv[1], "/proc/version")]
TEXTS = {b"": 0xFFFFFFFF, b"123456789": 0x0376E6E7, b"a\nb\rc\r\nd\n\re\n\nf": None,
         bytes(range(256)) * 1000: None}


def crc(data):
    # The format of bzip2 holds the complement behind the 10 bytes of its headers, for each block.
    return int.from_bytes(bz2.compress(data)[10:14], "big") ^ 0xFFFFFFFF


def run(*files, status=0):
    done = subprocess.run([sys.argv[1], *files], capture_output=True, text=True, check=False)
    assert done.returncode == status, done
    return done


with tempfile.TemporaryDirectory() as folder:
    for i, (text, expected) in enumerate(TEXTS.items()):
        FILES.append(pathlib.Path(folder, str(i)))
        FILES[-1].write_bytes(text)
        assert expected in (None, crc(text) if text else 0xFFFFFFFF)
    lines = run(*FILES).stdout.splitlines()
    for path, line in zip(FILES, lines, strict=True):
        data = path.read_bytes()
        breaks = re.findall(rb"\r\n|\n\r|\r|\n", data)
        count = len(breaks) + (data != b"" and data[-1:] not in b"\r\n")
        number, *rest = line.split(" ", 3)
        assert rest == [str(count), str(len(data)), str(path)], line
        if 0 < len(data) <= 500_000:
            assert number == f"0x{crc(data):08X}", line
    assert [line[:10] for line in lines[4:6]] == ["0xFFFFFFFF", "0x0376E6E7"]
    failed = run(folder, FILES[5], status=1)
    assert failed.stdout.startswith("0x0376E6E7 1 9 ") and failed.stderr.count("\n") == 1
    run(status=2)
    gone = subprocess.run(["sh", "-c", 'mkdir x; cd x; rmdir ../x; "$0" relative', sys.argv[1]],
                          cwd=folder, capture_output=True, check=False)
    assert gone.returncode == 1 and gone.stderr.count(b"\n") == 1, gone
