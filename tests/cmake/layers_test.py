"""layers_test.py CHECK TABLE: the check of the layers, run over small trees that break them."""

import pathlib
import subprocess
import sys
import tempfile

TREES = {  # file: (its include, whether it is a stranger)
    "foundation/A.h": [("<vector>", False), ("<QString>", True), ('"streams/B.h"', True)],
    "streams/A.h": [('"foundation/A.h"', False), ('"encoding/A.h"', True)],
    "files/mac/A.cpp": [('"files/A.h"', False), ("<expat.h>", True), ('"app/A.h"', True)],
    "linux/CoreFoundation/A.cpp": [("<expat.h>", False), ('"foundation/A.h"', True)],
    "Shared/Portable/Processes/Mac/A.cpp": [("<sys/sysctl.h>", False), ("<vector>", True)],
    "app/A.cpp": [("<QWidget>", False), ("<expat.h>", True)],
    "elsewhere/A.cpp": [("<vector>", True)],
}

check, table = sys.argv[1:]
failures = 0
for name, includes in TREES.items():
    for include, stranger in includes:
        with tempfile.TemporaryDirectory() as tree:
            file = pathlib.Path(tree, name)
            file.parent.mkdir(parents=True)
            file.write_text(f"#pragma once\n#include {include}\n")
            run = subprocess.run([check, tree, table], stdout=subprocess.PIPE, text=True)
            if (run.returncode == 1) != stranger or (stranger and name not in run.stdout):
                failures += 1
                print(f"{name} with {include}: status {run.returncode}, {run.stdout}")
sys.exit(1 if failures else 0)
