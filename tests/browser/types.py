"""The types in the comments of the page's scripts agree, says the TypeScript compiler.

usage: types.py BUILD_FOLDER SOURCE_FOLDER
"""

import glob
import os
import re
import shutil
import subprocess
import sys

MISSING = 77


def main():
    build, source = map(os.path.abspath, sys.argv[1:])
    compiler = os.path.join(build, "page-tools", "node_modules", "typescript", "bin", "tsc")
    if not os.path.exists(compiler) or shutil.which("node") is None:
        print(f"The TypeScript compiler is not in {compiler}; scripts/page-tools puts it there")
        return MISSING
    page = os.path.join(source, "src", "report", "page")
    scripts = sorted(os.path.basename(path) for path in glob.glob(os.path.join(page, "*.js")))
    with open(os.path.join(page, "files.cmake"), encoding="utf-8") as file:
        joined = sorted(re.findall(r"\S+\.js", file.read()))
    if joined != scripts:
        print(f"files.cmake joins {joined}, but there are {scripts}")
        return 1
    return subprocess.run(["node", compiler, "--allowJs", "--checkJs", "--noEmit", "--strict", "--target", "es2022",
                           "--lib", "esnext,dom,dom.iterable", "--types", "", *scripts], cwd=page).returncode


if __name__ == "__main__":
    sys.exit(main())
