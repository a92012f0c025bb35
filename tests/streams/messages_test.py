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

PROGRAM = sys.argv[-1]
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


def run(*arguments, status=0, stdout=subprocess.PIPE):
    done = subprocess.run([PROGRAM, *arguments], stdout=stdout, stderr=subprocess.PIPE,
                          text=True, errors="replace", check=False)
    assert done.returncode == status and done.stderr.count("\n") == (status != 0), done
    assert status == 0 or not done.stdout, done
    return done.stdout


def message_fields(raw):
    """The program's answer: fields of begin, name, value, end; the begin of the body."""
    with tempfile.NamedTemporaryFile() as file:
        file.write(raw.encode("latin-1"))
        file.flush()
        *lines, last = run(file.name).splitlines()

    def unquote(text):
        return re.sub(r"\\(?:x(..)|(.))", lambda m: m[2] or chr(int(m[1], 16)), text)

    quoted = r'"((?:[^"\\]|\\.)*)"'
    matches = [re.fullmatch(rf"field at (\d+), {quoted}: {quoted}, to (\d+)", line) for line in lines]
    fields = [(int(m[1]), unquote(m[2]), unquote(m[3]), int(m[4])) for m in matches]
    begin, end, count = map(int, re.fullmatch(r"body from (\d+) to (\d+): (\d+) lines?", last).groups())
    assert (end, count) == (len(raw), len(re.findall(r".*?(?:\r\n|\r|\n)|.+", raw[begin:]))), last
    return fields, begin


def compare(name, raw, answer):
    """Asserts that one message is understood alike; returns the differences that occur in it."""
    first, expected, body = answer
    seen = set()
    for reason, change in DIFFERENCES.items():
        before, expected = expected, change(first, expected)
        seen |= {reason} if before != expected else set()
    fields, begin = message_fields(raw)
    assert [field[1:3] for field in fields] == expected, (name, fields, expected)
    for field in fields:
        key, value = unfold(raw[field[0]:field[3]])
        assert (key.lower(), value) == field[1:3] and raw[field[3]:][:1] in ("", "\r", "\n"), (name, field)
    assert (raw[begin:] != body) == (name in OTHER_BODIES), (name, begin)
    assert name not in OTHER_BODIES or begin == len(raw) or raw[:begin].endswith("\n\n"), (name, begin)
    return seen


def exchanges():
    """What Python's HTTP client sends, and what its server answers."""
    here = os.path.dirname(__file__)
    for method, url, body in (("GET", "/", None), ("GET", f"/{os.path.basename(__file__)}", None),
                              ("GET", "http://localhost/none", None), ("POST", "/", b"x=1&y=2")):
        client = http.client.HTTPConnection("localhost")
        client.sock, server = socket.socketpair()
        client.request(method, url, body, {"X-" + "n" * 45: "47", "X-" + "n" * 46: "48"})
        client.sock.shutdown(socket.SHUT_WR)
        yield f"{method} {url}", server.recv(1 << 16, socket.MSG_PEEK).decode("latin-1")
        with server, client.sock, client.sock.makefile("rb") as answer:
            http.server.SimpleHTTPRequestHandler(server, ("client", 0), None, directory=here)
            server.shutdown(socket.SHUT_WR)
            yield f"answer to {method} {url}", answer.read().decode("latin-1")


def check_program():
    """The program itself: its errors, and a file that is larger than what it may occupy."""
    for arguments, status in (([], 2), (["a", "b"], 2), (["/nowhere/at/all"], 1), (["/"], 1),
                              ([b"/\xff"], 1)):
        run(*arguments, status=status)
    with open("/dev/full", "w") as full, tempfile.NamedTemporaryFile() as file:
        run(file.name, status=1, stdout=full)
        file.write(b"a: b\n\n")
        file.truncate(1 << 28)
        assert run(file.name).endswith(f"body from 6 to {1 << 28}: 1 line\n")
        assert resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss >> 10 <= 128


def main():
    check_program()
    paths = sorted(glob.glob(MAILS))
    if not paths:
        print("SKIPPED: the package libpython3.11-testsuite is not installed")
        return 77
    messages = [(os.path.basename(path), open(path, encoding="latin-1", newline="").read(), parse_mail)
                for path in paths]
    messages += [(name, raw, parse_http) for name, raw in exchanges()]
    seen = set().union(*(compare(name, raw, parse(raw)) for name, raw, parse in messages))
    assert seen == set(DIFFERENCES), seen
    assert OTHER_BODIES <= {name for name, _, _ in messages}
    print(f"{len(messages)} messages agree")
    return 0


if __name__ == "__main__":
    sys.exit(main())
