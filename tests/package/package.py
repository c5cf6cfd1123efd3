"""Proves what the Debian package of a build says and holds. Root, network and another build are not needed.

usage: package.py BUILD_FOLDER

It depends on the libraries of its programs; its files are where Debian wants them, with one licence and a changelog in
Debian's form; lintian, where it is installed, has no complaint. Without dpkg-shlibdeps there is a sentence and no package.
Status 77 says that the tools are not there.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

PROGRAMS = ["ngrex", "ngrex-examples", "ngrex-import", "ngrex-report", "ngrex-scale", "ngrex-table"]
NEEDED = ["cpack", "dpkg-deb", "dpkg-shlibdeps", "file", "gzip"]

failures = []


def expect(condition, complaint):
    if not condition:
        failures.append(complaint)


def pack(build, folder, path=None):
    """Packs a build as cpack does with this search path: the run, and the package, None if there is none."""
    run = subprocess.run([shutil.which("cpack"), "--config", os.path.join(build, "CPackConfig.cmake"), "-B", folder],
                         env={**os.environ, "PATH": path or os.environ["PATH"]}, capture_output=True, text=True)
    packages = [os.path.join(folder, name) for name in os.listdir(folder) if name.endswith(".deb")]
    return run, packages[0] if packages else None


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def check_dependencies(package):
    depends = output("dpkg-deb", "--field", package, "Depends")
    for library in ("libc6", "libfmt", "libgcc-s1", "libsqlite3-0", "libstdc++6", "zlib1g"):
        expect(re.search(rf"(^|, ){re.escape(library)}[\w.]* \(>= [^)]+\)", depends), f"no {library} in Depends: {depends}")
    suggests = output("dpkg-deb", "--field", package, "Suggests")
    expect(suggests == "snakemake\n", f"the package suggests {suggests!r}")


def check_workflow(folder):
    place = os.path.join(folder, "usr", "share", "ngrex", "workflow")
    for name in ("Snakefile", "config.yaml", "README.md", "slurm/config.yaml"):
        expect(os.path.isfile(os.path.join(place, name)), f"no workflow/{name}")
    expect(os.access(os.path.join(place, "slurm", "status"), os.X_OK), "workflow/slurm/status is no program")


def check_files(package, folder):
    subprocess.run(["dpkg-deb", "--extract", package, folder], check=True)
    documents = os.path.join(folder, "usr", "share", "doc", "ngrex")
    for program in PROGRAMS:
        places = (f"bin/{program}", f"share/man/man1/{program}.1.gz", f"share/bash-completion/completions/{program}")
        for path in places:
            expect(os.path.isfile(os.path.join(folder, "usr", path)), f"no /usr/{path}")
    expect(os.readlink(os.path.join(documents, "LICENSE")) == "copyright", "the licence is there twice")
    changelog = output("dpkg-parsechangelog", "--file", os.path.join(documents, "changelog.gz"), "--all")
    version = output("dpkg-deb", "--field", package, "Version").strip()
    expect(f"Version: {version}\n" in changelog, f"the changelog is not that of {version}:\n{changelog}")
    expect(output("gzip", "-dc", os.path.join(documents, "changelog.gz")).count("\n  * ") >= 3, "the changelog says little")


def check_lintian(package):
    if shutil.which("lintian"):
        run = subprocess.run(["lintian", "--allow-root", "--fail-on", "error,warning", package], capture_output=True, text=True)
        expect(run.returncode == 0, run.stdout + run.stderr)


def check_refusal(build, folder):
    """Packs with a search path that has all tools but dpkg-shlibdeps."""
    tools = os.path.join(folder, "tools")
    os.mkdir(tools)
    for directory in os.environ["PATH"].split(os.pathsep):
        for tool in os.listdir(directory) if os.path.isdir(directory) else []:
            if tool != "dpkg-shlibdeps" and not os.path.lexists(os.path.join(tools, tool)):
                os.symlink(os.path.join(directory, tool), os.path.join(tools, tool))
    run, package = pack(build, folder, tools)
    expect(run.returncode != 0 and package is None, "a package is made without dpkg-shlibdeps")
    expect("needs dpkg-shlibdeps, which is not installed" in run.stderr, f"no sentence about dpkg-shlibdeps:\n{run.stderr}")


def main():
    missing = [tool for tool in NEEDED if not shutil.which(tool)]
    if missing:
        print("not installed:", *missing)
        return 77
    build = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as packed, tempfile.TemporaryDirectory() as unpacked:
        run, package = pack(build, packed)
        expect(package, run.stdout + run.stderr)
        if package:
            check_dependencies(package)
            check_files(package, unpacked)
            check_workflow(unpacked)
            check_lintian(package)
    with tempfile.TemporaryDirectory() as folder:
        check_refusal(build, folder)
    for failure in failures:
        print(failure)
    print(f"{len(failures)} disagreements")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
