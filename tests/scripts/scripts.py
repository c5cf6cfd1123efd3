"""Proves that the scripts refuse with a sentence what cannot work.

usage: scripts.py SOURCE_FOLDER

A build folder made for other sources is refused, and, unless root runs this, one that cannot be written; one's own is not.
Without dpkg nothing is installed and the build goes on with what is there, but no package is made. Without root, or where apt
fails, it is said which packages are missing. Without npm's registry the tests of the page do not begin.
"""

import os
import subprocess
import sys
import tempfile

failures = []


def expect(condition, complaint):
    if not condition:
        failures.append(complaint)


def run(source, name, *arguments, path=os.environ["PATH"], **variables):
    return subprocess.run([os.path.join(source, "scripts", name), *arguments], cwd=source,
                          env={**os.environ, "PATH": path, **variables}, capture_output=True, text=True)


def expect_refusal(refused, sentence):
    expect(refused.returncode == 1 and sentence in refused.stderr, f"not refused with {sentence!r}: {refused}")


def check_build_folders(source):
    with tempfile.TemporaryDirectory() as folder:
        build = os.path.join(folder, "build", "release")
        os.makedirs(build)
        relative = os.path.relpath(build, source)
        expect(run(source, "own-folder", relative).returncode == 0, "an empty build folder is refused")
        for home, refused in ((source, False), (folder, True)):
            with open(os.path.join(build, "CMakeCache.txt"), "w", encoding="utf-8") as cache:
                cache.write(f"CMAKE_HOME_DIRECTORY:INTERNAL={home}\n")
            told = run(source, "own-folder", relative)
            if refused:
                expect_refusal(told, f"was made for the sources in {home}.")
            else:
                expect(told.returncode == 0, f"the build folder of these sources is refused: {told}")
        if os.getuid() != 0:
            os.remove(os.path.join(build, "CMakeCache.txt"))
            os.chmod(build, 0o555)
            expect_refusal(run(source, "own-folder", relative), "cannot be written by")
            os.chmod(build, 0o755)


def check_without_dpkg(source):
    with tempfile.TemporaryDirectory() as tools:
        for tool in ("bash", "dirname", "env"):
            found = subprocess.run(["bash", "-c", f"type -P {tool}"], capture_output=True, text=True, check=True)
            os.symlink(found.stdout.strip(), os.path.join(tools, tool))
        told = run(source, "bootstrap", "g++", "make", path=tools)
        expect(told.returncode == 0 and "taking" in told.stdout and told.stdout.endswith("g++ make\n"), f"no sentence: {told}")
        expect_refusal(run(source, "package", path=tools), "A Debian package can only be made where dpkg is.")


def put_tool(folder, name, does):
    path = os.path.join(folder, name)
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"#!/bin/sh\n{does}\n")
    os.chmod(path, 0o755)


def check_missing_packages(source):
    with tempfile.TemporaryDirectory() as tools:
        path = tools + os.pathsep + os.environ["PATH"]
        called = os.path.join(tools, "called")
        put_tool(tools, "dpkg-query", 'case "$*" in *" make") echo "install ok installed";; *) exit 1;; esac')
        put_tool(tools, "apt-get", f"""echo "$*" >> '{called}'; case "$*" in *install*) echo "$FAULT" >&2; [ -z "$FAULT" ];; esac""")
        put_tool(tools, "id", "echo 1000")
        told = run(source, "bootstrap", "g++", "make", "cmake", path=path)
        expect_refusal(told, "These packages are missing: g++ cmake\n")
        expect_refusal(told, "sudo apt-get update && sudo apt-get install --no-install-recommends g++ cmake\n")
        expect(not os.path.exists(called), "apt is called without root")

        put_tool(tools, "id", "echo 0")
        told = run(source, "bootstrap", "g++", "make", "cmake", path=path, FAULT="no such archive")
        expect_refusal(told, "no such archive\nThese packages could not be installed, see above: g++ cmake\n")
        told = run(source, "bootstrap", "g++", "make", "cmake", path=path, FAULT="")
        expect(told.returncode == 0 and told.stdout == "Installing: g++ cmake\n", f"not installed: {told}")


def check_unreachable_registry(source):
    with tempfile.TemporaryDirectory() as tools:
        put_tool(tools, "npm", "exit 1")
        for _ in range(2):  # what is not complete is not taken for installed the next time
            told = run(source, "page-tools", os.path.join(tools, "folder"), path=tools + os.pathsep + os.environ["PATH"])
            expect_refusal(told, "could not be installed with npm")


def main():
    source = os.path.abspath(sys.argv[1])
    check_build_folders(source)
    check_without_dpkg(source)
    check_missing_packages(source)
    check_unreachable_registry(source)
    for failure in failures:
        print(failure)
    print(f"{len(failures)} disagreements")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
