#!/usr/bin/env python3
"""property_lists_against_python.py SECONDS PROGRAM FOLDER...: the reader against Python's plistlib.

Takes the documents in the folders (fuzz/corpora/property_lists and what the fuzz target has found,
build/fuzz/found/property_lists), and for SECONDS changes them at random. PROGRAM, print_property_lists,
says what it reads in each; what both sides accept must be the same, but for DIFFERENCES.
"""

import pathlib
import plistlib
import random
import re
import struct
import subprocess
import sys
import time

# What is read otherwise, and how Python's value becomes ours by it:
#   - line ends in strings and keys stay here, and Python makes each one "\n". Beside one written as
#     "&#13;" they cannot be told apart any more, so that any row of them counts as one;
#   - keys that only these make different are two here, and one there: such a document is left out.
# What only one side accepts is not compared. Only here: blanks in front of the XML declaration, what
# follows </plist>, dates with fields beyond their range, other encodings. Only there: an empty plist or
# several objects in it, elements and comments inside of a value, text outside of one, entities defined
# in the document, base64 with other characters, numbers with "_" or blanks at the end, parts of dates.
LINE_ENDS = re.compile("[\r\n]+")

PIECES = [piece.encode() for piece in (
    "<plist>", "</plist>", "<dict>", "</dict>", "<array>", "</array>", "<key>", "</key>", "<string>",
    "</string>", "<integer>", "</integer>", "<real>", "</real>", "<date>", "</date>", "<data>", "</data>",
    "<true/>", "<false/>", "<string/>", "<key>k</key>", "<integer>1</integer>", "<![CDATA[", "]]>", "&lt;",
    "&#13;", "\r\n", "\r", "0x", "-", "e5", ".", "inf", "nan", "AA==", "2001-02-03T04:05:06Z", "\u00e9", "\U0001f600")]


def change(document, others):
    """The document with one or two changes, most of them between whole tags."""
    for _ in range(random.randint(1, 2)):
        tokens = re.findall(rb"<[^>]*>|[^<]+|<", document) or [b""]
        at, until = sorted(random.choices(range(len(tokens) + 1), k=2))
        kind = random.randrange(5)
        if kind == 0:
            tokens[at:until] = []
        elif kind == 1:
            tokens[at:at] = tokens[at:until]
        elif kind == 2:
            tokens.insert(at, random.choice(PIECES))
        elif kind == 3:
            other = re.findall(rb"<[^>]*>|[^<]+|<", random.choice(others)) or [b""]
            tokens[at:until] = other[:len(other) // 2]
        document = b"".join(tokens)[:4000]
        if kind == 4:
            place = random.randint(0, len(document))
            document = document[:place] + random.choice(PIECES) + document[place + random.randint(0, 2):]
    return document


def ask(program, documents):
    """What the program makes of the documents: XML, or None if it refuses."""
    given = b"".join(struct.pack("=I", len(d)) + d for d in documents)
    answer = subprocess.run([program], input=given, stdout=subprocess.PIPE, check=True).stdout
    at, texts = 0, []
    for _ in documents:
        length, = struct.unpack_from("=I", answer, at)
        at += 4 + length
        texts.append(answer[at - length:at] if length > 1 else None)
    assert at == len(answer)
    return texts


def parse(document):
    """Python's value; None if it refuses. (It lets all kinds of exceptions out.)"""
    try:
        return plistlib.loads(document, fmt=plistlib.FMT_XML)
    except Exception:  # pylint: disable=broad-except
        return None


def normal(value):
    """The value with one form for equal ones, without line ends, as text."""
    if isinstance(value, dict):
        return sorted((normal(key), normal(item)) for key, item in value.items())
    if isinstance(value, list):
        return [normal(item) for item in value]
    return repr(LINE_ENDS.sub("\n", value) if isinstance(value, str) else value)


def has_clashing_keys(value):
    if isinstance(value, dict):
        keys = {LINE_ENDS.sub("\n", key) for key in value}
        return len(keys) < len(value) or any(map(has_clashing_keys, value.values()))
    return isinstance(value, list) and any(map(has_clashing_keys, value))


def compare(program, documents):
    """How many were accepted by the program, and by both."""
    ours = both = 0
    for document, text in zip(documents, ask(program, documents)):
        if text is None:
            continue
        ours += 1
        mine, other = parse(text), parse(document)
        assert mine is not None, (document, text)
        if other is None or has_clashing_keys(mine):
            continue
        both += 1
        assert normal(mine) == normal(other), (document, mine, other)
    return ours, both


def main():
    seconds, program = float(sys.argv[1]), sys.argv[2]
    found = [path.read_bytes() for folder in sys.argv[3:] if pathlib.Path(folder).is_dir()
             for path in sorted(pathlib.Path(folder).iterdir())]
    good = [document for document in found if parse(document) is not None]
    assert good, "no documents"
    sys.setrecursionlimit(3000)
    random.seed(1)
    end = time.monotonic() + seconds
    batch, documents = found, 0
    ours, both = 0, 0
    while True:
        counts = compare(program, batch)
        documents, ours, both = documents + len(batch), ours + counts[0], both + counts[1]
        if time.monotonic() > end:
            break
        batch = [change(random.choice(good), found) for _ in range(1000)]
    print(f"{documents} documents, {ours} accepted here, {both} by both and read alike")
    assert both > 0


main()
