"""translations_test.py SOURCE LUPDATE: every language has every text: in the panel's tables, the
prompts' policy, the desktop entry and the metainfo. Lists all faults."""

import collections
import configparser
import difflib
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

APP = pathlib.Path(sys.argv[1]) / "app"
LUPDATE = [sys.argv[2], "-silent", "-locations", "none", "-no-obsolete", APP, "-ts"]
LANGUAGES = {"ar", "de", "es", "fr", "it", "ja", "pt_BR", "zh_CN"}  # besides English
WITH_MNEMONIC = {"Status", "Installed location", "Version", "PID", "Stop Agent", "Start Agent",
                 "Restart Agent", "Copy Details", "About", "Close"}
DESKTOP_KEYS = ("Name", "Comment", "Keywords")
# The translated elements by what they stand in.
ELEMENTS = {"org.wuxagent.controlpanel.policy.in": {"action": ("description", "message")},
            "org.wuxagent.controlpanel.metainfo.xml": {"component": ("name", "summary"),
                                                       "description": ("p",)}}
# Arabic letters that join the next one. Marked as a mnemonic, a letter is drawn by itself.
JOINING = "[بتثجحخسشصضطظعغفقكلمنهي]"
LANG = "{http://www.w3.org/XML/1998/namespace}lang"
faults = []


def check(what, got, expected):
    if got != expected:
        faults.append(f"{what}:\n     got {got}\nexpected {expected}")


def check_against_sources(tables):
    """The tool that collects the texts of form and code finds nothing to add or to remove."""
    with tempfile.TemporaryDirectory() as folder:
        copies = [pathlib.Path(shutil.copy(table, folder)) for table in tables]
        subprocess.run([*LUPDATE, *copies], check=True)
        for table, copy in zip(tables, copies):
            texts = (path.read_text(encoding="utf-8").splitlines() for path in (table, copy))
            check(f"{table.name}, changed by lupdate", list(difflib.unified_diff(*texts, n=0)), [])


def check_table(table):
    mnemonics = {}
    for message in xml.etree.ElementTree.parse(table).iter("message"):
        key, translation = message.findtext("source"), message.find("translation")
        text, where = translation.text or "", f"{table.name}, {key!r}"
        mnemonics[key] = [letter.lower() for letter in re.findall(r"&(\w)", text)]
        check(f"{where}, translated", (text != "", translation.get("type")), (True, None))
        check(f"{where}, placeholders", re.findall("%.", text), re.findall("%.", key))
        check(f"{where}, mnemonics", len(mnemonics[key]), int(key in WITH_MNEMONIC))
        check(f"{where}, torn letters", re.findall(f"{JOINING}&.|&{JOINING}\\w", text), [])
        if table.stem.endswith("_en"):
            check(f"{where}, English", text.replace("&", ""), key)
    if mnemonics["Stop Agent"] == mnemonics["Start Agent"]:  # one button's two titles
        del mnemonics["Start Agent"]
    letters = sorted(sum(mnemonics.values(), []))
    check(f"{table.name}, mnemonics", letters, sorted(set(letters)))


def check_elements(file, translated):
    for parent in xml.etree.ElementTree.parse(APP / file).iter():
        for tag in translated.get(parent.tag, ()):
            count = collections.Counter(child.get(LANG, "") for child in parent.findall(tag) if child.text)
            check(f"{file}, {tag}", count, dict.fromkeys({"", *LANGUAGES}, max(count[""], 1)))
        # With a domain, polkit would take one language for everybody's.
        check(f"{file}, {parent.tag}, domain", parent.get("gettext-domain"), None)


tables = sorted(APP.glob("translations/*.ts"))
check("tables", {table.stem.removeprefix("WUXAgentControlPanel_") for table in tables}, {"en", *LANGUAGES})
check_against_sources(tables)
for table in tables:
    check_table(table)
for file, translated in ELEMENTS.items():
    check_elements(file, translated)
entry = configparser.RawConfigParser(delimiters="=")
entry.read(APP / "WUXAgentControlPanel.desktop", encoding="utf-8")
for key in (f"{key}[{language}]" for key in DESKTOP_KEYS for language in sorted(LANGUAGES)):
    check(f"desktop entry, {key}", bool(entry.get("Desktop Entry", key, fallback="")), True)
print("\n".join(faults) or "all texts in all languages")
sys.exit(bool(faults))
