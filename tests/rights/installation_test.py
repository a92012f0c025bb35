"""installation_test.py BUILD: what the panel's installation puts where, whose it is and who may write it,
whatever the umask; the script that the policy names; and the prefixes that are refused."""

import os
import pathlib
import re
import stat
import subprocess
import sys
import tempfile

BUILD = sys.argv[1]
NAME = "WUXAgentControlPanel"
OWN = f"share/{NAME}"
LANGUAGES = ("ar", "de", "en", "es", "fr", "it", "ja", "pt_BR", "zh_CN")
POLICY = "share/polkit-1/actions/org.wuxagent.controlpanel.policy"
FILES = {f"usr/bin/{NAME}": 0o755, f"usr/{OWN}/{NAME}.sh": 0o755, f"usr/{OWN}/Info.plist": 0o644,
         **{f"usr/{OWN}/translations/{NAME}_{language}.qm": 0o644 for language in LANGUAGES},
         **{f"usr/share/{file}": 0o644 for file in (
             f"applications/{NAME}.desktop", f"icons/hicolor/48x48/apps/{NAME}.png",
             f"icons/hicolor/scalable/apps/{NAME}.svg",
             f"icons/hicolor/symbolic/apps/{NAME}-symbolic.svg", f"man/man1/{NAME}.1",
             "metainfo/org.wuxagent.controlpanel.metainfo.xml",
             "polkit-1/actions/org.wuxagent.controlpanel.policy")}}
FOLDERS = {str(folder) for file in FILES for folder in pathlib.PurePath(file).parents} - {"."}
EXPECTED = {**{folder: stat.S_IFDIR | 0o755 for folder in FOLDERS},
            **{file: stat.S_IFREG | mode for file, mode in FILES.items()}}
REFUSED = ("My Panel", "it's", 'a"b', "$(touch made)", "`touch made`", "a;b", "a\nb", "a&b", "<a>",
           "a\\b", "#a", "~a")


def check(what, got, expected):
    if got != expected:
        sys.exit(f"FAILED: {what}:\n     got {got}\nexpected {expected}")


def install(prefix, destination=None, umask=0o022, component=("--component", "panel")):
    """Whether it succeeds."""
    environment = {key: value for key, value in os.environ.items() if key != "DESTDIR"}
    if destination:
        environment["DESTDIR"] = str(destination)
    return subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix, *component], env=environment,
                          umask=umask, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).returncode == 0


def installed(folder):
    """Each item's kind and mode by its path, and the owners of all."""
    items = {str(path.relative_to(folder)): path.lstat() for path in folder.rglob("*")}
    return ({path: item.st_mode for path, item in items.items()},
            {(item.st_uid, item.st_gid) for item in items.values()})


def scripts(policy):
    return set(re.findall(r"exec\.path\">(.*)</annotate>", policy.read_text()))


with tempfile.TemporaryDirectory() as folder:
    top = pathlib.Path(folder).resolve()
    os.environ["CMAKE_INSTALL_MODE"] = "ABS_SYMLINK"  # must not make links to the build tree
    for umask in (0o022, 0o077, 0o000):
        root = top / f"root{umask}"
        root.mkdir(mode=0o755)
        check("installs", install("/usr", root, umask), True)
        modes, owners = installed(root)
        check(f"items under umask {umask:03o}", modes, EXPECTED)
        check("owner and group", owners, {(os.geteuid(), os.getegid())})
        check("script", scripts(root / "usr" / POLICY), {f"/usr/{OWN}/{NAME}.sh"})

    (top / "link").symlink_to(top / "real")
    for prefix in (top / "real", top / "link", f"{top}/real/..//real/."):
        check("installs", install(prefix), True)
        check("script without a link", scripts(top / "real" / POLICY), {f"{top}/real/{OWN}/{NAME}.sh"})
    for name in REFUSED:
        check(f"refuses {name!r}", install(top / name, component=()), False)
        check(f"leaves nothing of {name!r}", (top / name).exists(), False)
    (top / "plain").symlink_to(top / "a blank")
    (top / "a blank").mkdir()
    check("refuses what a link leads to", install(top / "plain" / "below"), False)
    check("leaves nothing there", list((top / "a blank").iterdir()), [])
    check("nothing was carried out", sorted(path.name for path in top.iterdir()),
          ["a blank", "link", "plain", "real", "root0", "root18", "root63"])
print(f"all checks passed, as user {os.geteuid()}")
