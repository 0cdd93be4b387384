#!/usr/bin/env python3
"""The include checker finds an upward include and a cycle between modules,
and passes a tree that has neither. Usage: check_includes_test.py CHECKER."""
import os
import subprocess
import sys
import tempfile


def run_checker(checker, files):
    with tempfile.TemporaryDirectory() as src:
        for name, text in files.items():
            os.makedirs(os.path.join(src, os.path.dirname(name)), exist_ok=True)
            with open(os.path.join(src, name), "w", encoding="utf-8") as out:
                out.write(text)
        run = subprocess.run([sys.executable, checker, src], capture_output=True, text=True)
        return run.returncode, run.stdout


def main():
    checker = sys.argv[1]
    clean = {
        "core/a.h": "#pragma once\n",
        "core/a.cpp": '#include "core/a.h"\n#include <vector>\n',
        "table/t.h": '#include "core/a.h"\n',
        "app/main.cpp": '#include "table/t.h"\n#include "verbs/v.h"\n#include "trelvane.h"\n',
        "verbs/v.h": '#include "app/x.h"\n',
        "app/x.h": "#pragma once\n",
    }
    expectations = [
        (clean, 0, "6 files checked, 0 faults\n"),
        (dict(clean, **{"core/b.cpp": '#include "table/t.h"\n'}), 1,
         "core/b.cpp looks up at table/t.h (core is below table)\n7 files checked, 1 faults\n"),
        (dict(clean, **{"core/a.cpp": '#include "core/a.h"\n#include "core/c.h"\n', "core/c.h": "",
                        "core/c.cpp": '#include "core/a.h"\n'}), 1,
         "include cycle: core/a -> core/c -> core/a\n8 files checked, 1 faults\n"),
        (dict(clean, **{"odd/o.h": '#include "core/a.h"\n'}), 1,
         "odd/o.h includes core/a.h: odd is not a known layer\n7 files checked, 1 faults\n"),
    ]
    failures = 0
    for files, status, output in expectations:
        got = run_checker(checker, files)
        if got != (status, output):
            print(f"expected {(status, output)!r}, got {got!r}")
            failures += 1
    print(f"{len(expectations) - failures} passed, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
