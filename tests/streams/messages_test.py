"""messages_test.py MESSAGE_FIELDS: the example program, and so the message makers, against Python's
own parsers.

The messages are the test mails that come with Python's standard library, and what Python's HTTP
client and server send. Fields, what stands at their positions, and the body must agree, but for the
differences in the two tables.
"""

import email.parser
import glob
import http.client
import http.server
import io
import os
import re
import resource
import socket
import subprocess
import sys
import tempfile
import threading

MAILS = "/usr/lib/python3*/test/test_email/data/msg_*.txt"

# What is wanted otherwise: why, and what Python's first line and fields become by it, in this order.
# Each must occur in the messages. One more difference does not: a break of LF CR counts as one here.
DIFFERENCES = {
    "a first line with a colon is a field, as one of a mailbox or a request to a proxy":
        lambda first, fields: [unfold(line) for line in [first] if ":" in line] + fields,
    "a folded line is joined by one space":
        lambda first, fields: [unfold(f"{name}:{value}") for name, value in fields],
    "a name is told in lower case":
        lambda first, fields: [(name.lower(), value) for name, value in fields],
    "a field with a name of more than 47 bytes is left out":
        lambda first, fields: [(name, value) for name, value in fields if len(name) <= 47],
}
# Mails in which Python sees a body without an empty line before it: a line without a colon ends the
# headers there, but is only passed over here.
OTHER_BODIES = {"msg_19.txt", "msg_35.txt"}


def unfold(text):
    name, value = text.rstrip("\r\n").split(":", 1)
    return name, re.sub(r"(\r\n|\r|\n)[ \t]*", " ", value.lstrip(" \t"))


def parse_mail(raw):
    """Python's answer: the first line if it is no field, the fields, the body."""
    message = email.parser.HeaderParser().parsestr(raw)
    return message.get_unixfrom() or "", message.items(), message.get_payload()


def parse_http(raw):
    stream = io.BytesIO(raw.encode("latin-1"))
    first = stream.readline().decode("latin-1")
    return first, http.client.parse_headers(stream).items(), stream.read().decode("latin-1")


def message_fields(program, raw):
    """The program's answer: fields of begin, name, value, end; the begin of the body."""
    with tempfile.NamedTemporaryFile() as file:
        file.write(raw.encode("latin-1"))
        file.flush()
        output = subprocess.check_output([program, file.name], text=True)

    def unquote(text):
        return re.sub(r"\\(?:x(..)|(.))", lambda m: m[2] or chr(int(m[1], 16)), text)

    quoted = r'"((?:[^"\\]|\\.)*)"'
    *lines, last = output.splitlines()
    matches = [re.fullmatch(rf"field at (\d+), {quoted}: {quoted}, to (\d+)", line) for line in lines]
    fields = [(int(m[1]), unquote(m[2]), unquote(m[3]), int(m[4])) for m in matches]
    begin, end, count = map(int, re.fullmatch(r"body from (\d+) to (\d+): (\d+) lines?", last).groups())
    if end != len(raw) or count != len(re.findall(r".*?(?:\r\n|\r|\n)|.+", raw[begin:])):
        raise ValueError(last)
    return fields, begin


def faults(name, raw, answer, program, seen):
    """What disagrees in one message. Adds the differences that occur to `seen`."""
    first, expected, body = answer
    for reason, change in DIFFERENCES.items():
        changed = change(first, expected)
        if changed != expected:
            seen.add(reason)
        expected = changed
    fields, begin = message_fields(program, raw)
    if [field[1:3] for field in fields] != expected:
        yield f"{name}: fields {fields}, expected {expected}"
    for field in fields:
        text, rest = raw[field[0]:field[3]], raw[field[3]:]
        key, value = unfold(text)
        if (key.lower(), value) != field[1:3] or rest[:1] not in ("", "\r", "\n"):
            yield f"{name}: {field} stands at {text!r}"
    if (raw[begin:] != body) != (name in OTHER_BODIES):
        yield f"{name}: body from {begin}, expected the last {len(body)} bytes of {len(raw)}"
    if name in OTHER_BODIES and begin < len(raw) and not raw[:begin].endswith("\n\n"):
        yield f"{name}: body from {begin} without an empty line before it"


def read_all(connection):
    with connection, connection.makefile("rb") as stream:
        return stream.read().decode("latin-1")


def responses(folder):
    class Handler(http.server.SimpleHTTPRequestHandler):
        def __init__(self, *arguments):
            super().__init__(*arguments, directory=folder)

        def log_message(self, *arguments):
            pass

    os.mkdir(f"{folder}/folder")
    with open(f"{folder}/lines.txt", "wb") as file:
        file.write(b"a: b\r\n\r\nc\n\n\0\xff")
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        for request in ("GET / HTTP/1.0", "GET /lines.txt HTTP/1.0", "GET /none HTTP/1.0",
                        "GET /folder HTTP/1.0", "HEAD / HTTP/1.0", "POST / HTTP/1.0"):
            connection = socket.create_connection(server.server_address)
            connection.sendall(f"{request}\r\n\r\n".encode())
            yield request, read_all(connection)
        server.shutdown()


def requests():
    for method, url in (("GET", "/"), ("POST", "/form"), ("GET", "http://localhost/")):
        here, there = socket.socketpair()
        client = http.client.HTTPConnection("localhost")
        client.sock = here
        client.request(method, url, body=b"x=1&y=2" if method == "POST" else None,
                       headers={"X-" + "n" * 45: "47", "X-" + "n" * 46: "48"})
        client.close()
        yield f"{method} {url}", read_all(there)


def program_faults(program):
    """The program itself: its errors, and a file that is larger than what it may occupy."""
    for arguments, status in (([], 2), (["a", "b"], 2), (["/nowhere/at/all"], 1), (["/"], 1),
                              ([b"/\xff"], 1)):
        run = subprocess.run([program, *arguments], capture_output=True, text=True, errors="replace")
        if run.returncode != status or run.stdout or run.stderr.count("\n") != 1:
            yield f"{arguments}: {run}"
    with open("/dev/full", "w") as full, tempfile.NamedTemporaryFile() as file:
        run = subprocess.run([program, file.name], stdout=full, stderr=subprocess.PIPE, text=True)
        if run.returncode != 1 or run.stderr.count("\n") != 1:
            yield f"full device: {run}"
        file.write(b"a: b\n\n")
        file.truncate(1 << 28)
        output = subprocess.check_output([program, file.name], text=True)
        occupied = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss >> 10
        if not output.endswith(f"body from 6 to {1 << 28}: 1 line\n") or occupied > 128:
            yield f"large file: {output}, {occupied} MiB"


def main(program):
    seen = set()
    paths = sorted(glob.glob(MAILS))
    if not paths:
        print("SKIPPED: the package libpython3.11-testsuite is not installed")
        return 77
    messages = [(os.path.basename(path), open(path, encoding="latin-1", newline="").read(), parse_mail)
                for path in paths]
    with tempfile.TemporaryDirectory() as folder:
        messages += [(name, raw, parse_http) for name, raw in [*responses(folder), *requests()]]
    found = list(program_faults(program))
    for name, raw, parse in messages:
        found += faults(name, raw, parse(raw), program, seen)
    found += [f"never occurred: {reason}" for reason in DIFFERENCES if reason not in seen]
    found += [f"not there: {name}" for name in OTHER_BODIES - {name for name, _, _ in messages}]
    print(*found, f"{len(messages)} messages compared, {len(found)} faults", sep="\n")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
