"""extract.py TOUR FOLDER: writes the programs of the tour and what they print into the folder, as
N.cpp and N.txt, and prints how many there are. Files that would stay the same are left alone."""

import pathlib
import re
import sys

tour, folder = map(pathlib.Path, sys.argv[1:])
text = tour.read_text(encoding="utf-8")
pairs = list(re.finditer(r"^```cpp\n(.*?)^```\n\n^```text\n(.*?)^```$", text, re.M | re.S))
fences = text.count("\n```")
assert pairs and fences == 4 * len(pairs), f"{fences // 2} blocks, {len(pairs)} programs with outputs"
for number, pair in enumerate(pairs, 1):
    line = text.count("\n", 0, pair.start(1)) + 1
    for suffix, content in {"cpp": f'#line {line} "{tour}"\n{pair[1]}', "txt": pair[2]}.items():
        file = folder / f"{number}.{suffix}"
        if not file.exists() or file.read_text(encoding="utf-8") != content:
            file.write_text(content, encoding="utf-8")
print(len(pairs), end="")
