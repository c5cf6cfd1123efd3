"""Proves that the documents say what is so.

usage: documents.py SOURCE_FOLDER BUILD_FOLDER

Every relative link leads somewhere, in the source tree and among the installed documents. Every place that names the
version names that of the build. The tables of docs/import.md are those of the program, and ngrex-report says of
every measure what docs/measures.md says. Every command of the tutorial, of
the measures and of the examples, run here, prints what stands below it, but for lines that are left out ("[...]") and times; the lines for pandas
and R are not run. The commands of scripts/demo run too, and write the block that README.md and the demo explain; those of
README.md for a treebank run on another one.
"""

import contextlib
import json
import os
import re
import subprocess
import sys
import tempfile

PROGRAMS = ["ngrex", "ngrex-examples", "ngrex-import", "ngrex-report", "ngrex-scale", "ngrex-table"]
COMMAND = re.compile(r"(\./)?build/release/|mkdir |head |awk |sqlite3 ")

CODE = ("import pandas", "pairs <-")

failures = []


def expect(condition, complaint):
    if not condition:
        failures.append(complaint)


def read(*path):
    with open(os.path.join(*path), encoding="utf-8") as file:
        return file.read()


def documents_below(folder):
    for at, folders, files in os.walk(folder):
        folders[:] = [f for f in folders if f not in ("build", ".git")]
        yield from (os.path.join(at, f) for f in files if f.endswith(".md"))


def check_links(folder):
    links = 0
    for document in documents_below(folder):
        for link in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", read(document)):
            links += 1
            expect(os.path.exists(os.path.join(os.path.dirname(document), link)), f"{document}: no {link}")
    expect(links > 20, f"{folder}: only {links} links found")


def check_versions(source, build, installed):
    version = re.search(r"project\(ngrex VERSION (\S+)", read(source, "CMakeLists.txt")).group(1)
    changelog = re.search(r"^## (\S+)", read(source, "CHANGELOG.md"), re.M).group(1)
    expect(changelog == version, f"CHANGELOG.md begins with {changelog}, the project with {version}")
    for name in PROGRAMS:
        page = read(installed, "share", "man", "man1", name + ".1")
        expect(f'"ngrex {version}"' in page, f"the man page of {name} does not name version {version}")
        if name != "ngrex":
            told = subprocess.run([os.path.join(build, name), "--version"], capture_output=True, text=True).stdout
            expect(told == f"{name} {version}\n", f"{name} --version prints {told!r}")


def table_rows(text):
    return [[cell.strip() for cell in row.strip().strip("|").split("|")] for row in text.splitlines() if row.startswith("|")]


def section(text, heading):
    return re.search(rf"^#+ {re.escape(heading)}\n(.*?)(?=^#|\Z)", text, re.M | re.S).group(1)


def imported(build, *arguments, treebank):
    run = subprocess.run([os.path.join(build, "ngrex-import"), "-q", "--from", "conllu", *arguments], input=treebank,
                         capture_output=True, text=True, check=True)
    return [line.split("\t") for line in run.stdout.splitlines() if line]


def word(number, form="w", lemma="w", parent=0, relation="root"):
    return f"{number}\t{form}\t{lemma}\tX\tX\t_\t{parent}\t{relation}\t_\t_\n"


def check_import_tables(source, build):
    text = read(source, "docs", "import.md")

    lines = subprocess.run([os.path.join(build, "ngrex-import"), "--tag-table"], capture_output=True, text=True).stdout
    program = {}
    for position, name, letter, value in (line.split("\t") for line in lines.splitlines()[1:]):
        if not value.startswith("("):
            program.setdefault((position, name), []).append((letter, value))
    document = {}
    for position, name, letters in table_rows(section(text, "Tags of `--tag feats`"))[2:]:
        document[(position, name)] = re.findall(r"`(.)` (\w+)", letters)
    expect(len(program) == 12 and document == program, "the letters of docs/import.md are not those of --tag-table")

    for name in "ud", "sud":
        printed = subprocess.run([os.path.join(build, "ngrex-import"), "--print-relation-map", name], capture_output=True,
                                 text=True, check=True).stdout
        program = [line.split("\t") for line in printed.splitlines() if not line.startswith("#")]
        document = [[relation, becomes.strip("`")] for relations, becomes in
                    table_rows(section(text, f"The table `{name}`"))[2:] for relation in re.findall(r"`([^`]+)`", relations)]
        expect(len(program) > 40 and document == program, f"docs/import.md: the table {name} is not the one that is printed")
        for relation, function in program:
            if name == "ud" and re.fullmatch(r"[A-Z]\w+", function):
                words = imported(build, treebank=word(1) + word(2, parent=1, relation=relation) + "\n")
                expect(words[1][5] == function, f"{relation} is {function} by the table, the program says {words[1][5]}")

    rows = table_rows(section(text, "Protected characters"))[2:]
    expect(len(rows) == 5, "docs/import.md does not have five protected characters")
    for character, code, _, typed in rows:
        lemma = imported(build, treebank=word(1, lemma="a" + character.strip("`") + "b") + "\n")[0][2]
        expect(lemma == "a" + chr(int(code[2:], 16)) + "b", f"docs/import.md: {character} becomes {code}, not {lemma!r}")
        typed = subprocess.run(["bash", "-c", "printf %s " + typed.strip("`")], capture_output=True, check=True).stdout
        expect(typed.decode() == chr(int(code[2:], 16)), f"docs/import.md: {code} is not {typed}")


def check_measures(source, build):
    """Formulas, sources and readings in the document and in a report."""
    text = read(source, "docs", "measures.md")
    rows = {row[0].strip("`"): row for row in table_rows(section(text, "Textbook measures"))[2:]}
    readings = dict(row for row in table_rows(section(text, "How to read them"))[2:])
    pair = "1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t2\n1\t1\t1\t1\t1\t1\n\n\n"
    page = subprocess.run([os.path.join(build, "ngrex-report"), "--measures", ",".join(rows)], input=pair, capture_output=True,
                          text=True, check=True).stdout
    told = json.loads(re.search('id="report">(.*?)</script>', page, re.S).group(1))["measures"]
    expect(len(rows) == len(told) == len(readings) == 23, f"{len(rows)} measures in the table, {len(told)} in a report")
    for measure in told:
        name = measure["name"]
        _, _, formula, _, _, published = rows[name]
        expect((formula, published) == (measure["formula"], measure["source"]), f"docs/measures.md: {name} is told as {measure}")
        expect(readings.get(f"`{name}`") == measure["reading"], f"docs/measures.md: how to read {name} is told as {measure}")


def indented_blocks(text):
    """Lists of paragraphs: the indented blocks of a document, each cut at its empty lines."""
    blocks = [[]]
    for paragraph in text.split("\n\n"):
        lines = paragraph.strip("\n").split("\n")
        if all(line.startswith("    ") for line in lines):
            blocks[-1].append("\n".join(line[4:] for line in lines))
        else:
            blocks.append([])
    return [block for block in blocks if block]


def comparable(text):
    return [re.sub(r"^[0-9.e-]+ (secs elapsed\.|s)$", "TIME", line.rstrip()) for line in text.splitlines() if line.strip()]


def agrees(printed, shown):
    """Whether the lines that are shown are those that were printed, where "[...]" stands for any."""
    pattern = ""
    for line in comparable(shown):
        pattern += r"(?:.*\n)*" if line == "[...]" else re.escape(line) + r"\n"
    return re.fullmatch(pattern, "".join(line + "\n" for line in comparable(printed))) is not None


@contextlib.contextmanager
def workplace(source, build):
    """A folder for commands, with examples/ and build/release/."""
    with tempfile.TemporaryDirectory() as folder:
        os.symlink(os.path.join(source, "examples"), os.path.join(folder, "examples"))
        os.mkdir(os.path.join(folder, "build"))
        os.symlink(build, os.path.join(folder, "build", "release"))
        yield folder


def check_commands(source, build, document, fewest):
    """Runs the commands of a document where its examples and programs are. The block below a command must be what it, or
    the last of several, prints; any other must stand in a file that a command wrote."""
    commands = 0
    with workplace(source, build) as folder:
        for block in indented_blocks(read(source, document)):
            groups = [[]]
            for paragraph in block:
                if COMMAND.match(paragraph):
                    groups.append([])
                groups[-1].append(paragraph)
            for group in groups[1:]:
                commands += group[0].count("build/release/")
                for command in re.split(r"(?<!\\)\n", group[0]):
                    run = subprocess.run(["bash", "-c", command], cwd=folder, capture_output=True, text=True)
                    expect(run.returncode == 0, f"{document}: status {run.returncode} of {command}\n{run.stderr}")
                shown = [p for p in group[1:] if not p.startswith(CODE)]
                printed = run.stdout + run.stderr
                expect(not shown or agrees(printed, "\n".join(shown)), f"{document}: not this but\n{printed}is printed:\n{shown}")
            written = [read(at, f) for at, _, files in os.walk(os.path.join(folder, "build")) for f in files
                       if not f.endswith(".db") and not at.endswith(".work")]
            for paragraph in groups[0]:
                expect(paragraph.startswith(CODE) or any(paragraph + "\n" in text for text in written),
                       f"{document}: no file has this block:\n{paragraph}")
    expect(commands >= fewest, f"{document}: only {commands} commands found")


def run_all(folder, commands, where, path=os.environ["PATH"]):
    """What commands of a shell print, all together; one that fails is a failure."""
    printed = ""
    for command in commands:
        run = subprocess.run(["bash", "-c", command], cwd=folder, env={**os.environ, "PATH": path}, capture_output=True, text=True)
        expect(run.returncode == 0, f"{where}: status {run.returncode} of {command}\n{run.stderr}")
        printed += run.stdout
    return printed


def check_demo(source, build):
    demo = read(source, "scripts", "demo")
    readme = read(source, "README.md")
    with workplace(source, build) as folder:
        os.mkdir(os.path.join(folder, "build", "demo"))
        commands = [command.replace("\\\\", "\\") for command in re.findall(r'^run "(.*?)"$', demo, re.M | re.S)]
        table = run_all(folder, commands + re.findall(r"^awk .*$", demo, re.M), "scripts/demo")
        blocks = [p for block in indented_blocks(readme) for p in block if p.startswith("1\t")]
        expect(len(blocks) == 1 and table.endswith("\n" + blocks[0].expandtabs(4) + "\n"), f"README.md explains another block than {table}")
        expect('"cited": true' in read(folder, "build", "demo", "report.html"), "the report of scripts/demo has no sentences")
        for text in (demo, readme):
            told = re.sub(r"[\s*\"]+", " ", text)
            cells = blocks[0].split("\n")[2].split("\t")
            for number, what in zip(cells, ("have neither", "have", "have", "are heavy rain")):
                expect(f" {number} {what}" in told, f"{number} {what} is not said")


def check_pipeline(source, build):
    """The commands of README.md for a treebank, on that of the examples."""
    path = build + os.pathsep + os.environ["PATH"]
    with workplace(source, build) as folder:
        blocks = indented_blocks(read(source, "README.md"))
        lines, shown = next(block for block in blocks if block[0].startswith("$ ngrex-import"))
        commands = re.split(r"^\$ ", lines, flags=re.M)[1:]
        treebank = re.search(r"\S+\.conllu", commands[0]).group()
        os.symlink(os.path.join(source, "examples", "weather.conllu"), os.path.join(folder, treebank))
        run_all(folder, commands[:2], "README.md", path)
        table = run_all(folder, commands[2:3], "README.md", path)
        rows = [line.split() for line in table.splitlines()]
        expect(rows and rows[0] == shown.split("\n")[0].split(), f"README.md shows other columns than {table}")
        expect(["heavy", "<Atr", "rain", "9"] in [row[:4] for row in rows], f"README.md: no heavy rain in {table}")
        report, = (block[0] for block in blocks if block[0].startswith("$ ngrex-report"))
        run_all(folder, [report[2:]], "README.md", path)
        page = read(folder, re.search(r"\S+\.html", report).group())
        expect('"cited": true' in page, "README.md: no sentences in the page")


def main():
    source, build = map(os.path.abspath, sys.argv[1:])
    with tempfile.TemporaryDirectory() as installed:
        subprocess.run(["cmake", "--install", build, "--prefix", installed], check=True, capture_output=True)
        check_links(source)
        check_links(os.path.join(installed, "share", "doc", "ngrex"))
        check_versions(source, build, installed)
    check_import_tables(source, build)
    check_measures(source, build)
    check_commands(source, build, "docs/tutorial.md", 12)
    check_commands(source, build, "examples/README.md", 3)
    check_commands(source, build, "docs/measures.md", 5)
    check_demo(source, build)
    check_pipeline(source, build)
    for failure in failures:
        print(failure)
    print(f"{len(failures)} disagreements")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
