"""layers_test.py CHECK TABLE: the check of the layers, run over small trees that break them."""

import pathlib
import subprocess
import sys
import tempfile

check, table = sys.argv[1:]
for name, include, stranger in (
        ("foundation/A.h", "<vector>", False),
        ("foundation/A.h", '"streams/B.h"', True),
        ("streams/A.h", '"foundation/A.h"', False),
        ("files/mac/A.cpp", '"files/A.h"', False),
        ("files/mac/A.cpp", '"app/A.h"', True),
        ("Shared/Portable/Processes/Mac/A.cpp", "<sys/sysctl.h>", False),
        ("Shared/Portable/Processes/Mac/A.cpp", "<vector>", True),
        ("app/A.cpp", "<expat.h>", True),
        ("elsewhere/A.cpp", "<vector>", True)):
    with tempfile.TemporaryDirectory() as tree:
        file = pathlib.Path(tree, name)
        file.parent.mkdir(parents=True)
        file.write_text(f"#pragma once\n#include {include}\n")
        run = subprocess.run([check, tree, table], stdout=subprocess.PIPE, text=True)
        if (run.returncode, name in run.stdout) != (int(stranger), stranger):
            sys.exit(f"{name} with {include}: status {run.returncode}, {run.stdout}")
