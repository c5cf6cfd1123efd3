"""Property test: a report has the rows of the table, to the last digit.

usage: same_as_table.py --program NGREX --table NGREX-TABLE --report NGREX-REPORT --page FOLDER [--seed S] [--cases K]

Runs ngrex over random corpora with random command lines (those of the differential test) from a printed seed. Of each output
datafile a report is made, with a random choice of rows and measures, taken apart, and compared with what ngrex-table prints
for the same choice. Some files of hostile texts come first, and a comparison with the files of the page.
"""

import argparse
import math
import os
import random
import re
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "differential"))
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import differential  # noqa: E402
import report_file  # noqa: E402
import seeds  # noqa: E402

MEASURES = ["G2", "X2", "simple_ll", "expected", "t", "z", "poisson", "MI", "MI3", "local_mi", "npmi", "Dice", "logDice", "jaccard",
            "min_sensitivity"]
OF_PAIRS = ["phi", "odds_ratio", "log_ratio", "delta_p12", "delta_p21", "p_G2", "p_X2", "Fisher"]
LARGEST = 2_000_000  # bytes of an output datafile that is compared here in reasonable time

HOSTILE = [b"</script><img src=x onerror=alert(1)>", b"</SCRIPT >", b"<!--", b"-->", b"<![CDATA[", b"]]>", b"\"'`\\", b"&lt;&#0;", b"${1}",
           b"a\0b", "\u2028\u2029\u202e\u2066\ufeff".encode(), b"\x01\x1b[31m\x7f\xc2\x85", b"\xff\xfe", b"a\xc3", b"\xed\xa0\x80",
           "שלום".encode(), "漢字".encode(), "ἀρχή".encode(), "e\u0301\u0323".encode(), b"x" * 60_000, "é".encode() * 30_000, b"",
           b" ", b"__proto__", b"constructor"]


class Disagreement(Exception):
    pass


def expect(condition, *complaint):
    if not condition:
        raise Disagreement(*complaint)


def run(program, *arguments, **settings):
    done = subprocess.run([program, *arguments], capture_output=True, **settings)
    expect(done.returncode == 0, arguments, done.returncode, done.stderr)
    return done.stdout


def text_of(field):
    """Bytes as a text in which every byte that is no UTF-8 is one replacement character."""
    text = ""
    while field:
        try:
            return text + field.decode()
        except UnicodeDecodeError as error:
            text += field[:error.start].decode() + "\ufffd"
            field = field[error.start + 1:]
    return text


def table_rows(table, path, columns, choice):
    """The rows of a table as dictionaries, numbers as numbers."""
    lines = run(table, path, "--format", "tsv", "--precision", "17", "--columns", ",".join(columns), *choice).split(b"\n")[:-1]
    rows = []
    for line in lines[1:]:
        row = {}
        for name, field in zip(columns, line.split(b"\t")):
            if name.startswith(("lemma", "tag", "relation")):
                row[name] = text_of(field)
            else:
                row[name] = math.nan if field == b"NA" else float(field)
        rows.append(row)
    return rows


def same(a, b):
    return a == b or (a != a and b != b)


def check(programs, path, choice, measures, extra=()):
    """Compares the report of a choice with its table; gives the number of rows."""
    table, report = programs
    named = ["--measures", ",".join(measures)]
    page = report_file.Report(run(report, path, *named, *choice, *extra))
    n = page.meta["n"]
    columns = [f"{name}{k}" for name in ("lemma", "tag", "parent", "relation") for k in range(1, n + 1)]
    columns += [f"cell{i}" for i in range(2**n)] + measures
    ordered = choice if "--sort" in choice else [*choice, "--sort", "-" + measures[0]]
    expected, got = table_rows(table, path, columns, ordered), page.rows()
    expect(len(expected) == len(got) == page.meta["rows"], "rows", len(expected), len(got))
    for line, (a, b) in enumerate(zip(expected, got)):
        for name in columns:
            expect(same(a[name], b[name]), "row", line, name, a[name], b[name])

    def number_of_rows(arguments):
        return len(run(table, path, "--columns", "frequency", "--format", "tsv", *arguments).split(b"\n")) - 2

    told = page.meta["choice"]
    without_top = [word for i, word in enumerate(choice) if word != "--top" and (i == 0 or choice[i - 1] != "--top")]
    expect(told["found"] == number_of_rows([]), "found", told)
    expect(told["chosen"] == number_of_rows(without_top), "chosen", told)
    expect(told["shown"] == len(got), "shown", told)
    expect([m["name"] for m in page.meta["measures"]] == measures, page.meta["measures"])
    if got:
        expect(page.meta["total"] == sum(got[0][f"cell{i}"] for i in range(2**n)), "total")
    tables = [tuple(page.columns[f"cell{i}"][v] for i in range(2**n)) for v in range(page.meta["vectors"])]
    expect(len(set(tables)) == len(tables), "a contingency table stands twice")
    expect(set(page.columns["vector"]) == set(range(len(tables))), "a contingency table that no row has")
    return len(got)


def check_page(report, folder, page_folder):
    """The script and the style are the files of the page, byte for byte, one behind another."""
    path = os.path.join(folder, "plain")
    with open(path, "wb") as file:
        file.write(b"1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t1\n1\t1\t1\t1\t1\t1\n\n\n")
    page = report_file.Report(run(report, path))

    def read(name):
        with open(os.path.join(page_folder, name), encoding="utf-8") as file:
            return file.read()

    lists = dict(re.findall(r"^set\((\w+)(.*?)\)", read("files.cmake"), re.M | re.S))
    scripts, styles = ("".join(map(read, lists[name].split())) for name in ("page_scripts", "page_styles"))
    expect(page.script == "(() => {\n'use strict';\n" + scripts + "})();\n", "the script is not that of its files")
    expect(page.style == styles, "the style is not that of its files")


def random_choice(r, n):
    choice = []
    if r.random() < 0.4:
        choice += ["--min-frequency", str(r.randint(0, 3))]
    if r.random() < 0.4:
        choice += ["--top", str(r.choice([0, 1, 2, 10, 100]))]
    if r.random() < 0.4:
        choice += ["--where", r.choice(["frequency>1", f"parent{n}=0", "lemma1!=a", f"relation{n}~^A", "logDice>5"])]
    if r.random() < 0.4:
        choice += ["--sort", r.choice(["frequency", "lemma1,-logDice", "+MI,lemma2", "-relation1", "G2"])]
    if r.random() < 0.2:
        choice += ["--ignore-case"]
    return choice


def random_measures(r, n):
    known = MEASURES + (OF_PAIRS if n == 2 else [])
    return r.sample(known, r.randint(1, 4))


def check_hostile(programs, folder):
    """Texts that no treebank should have, as lemmas, tags and relations, on the command line and as names of files."""
    path = os.path.join(folder, "<script>&'\"pairs.txt")
    with open(path, "wb") as file:
        for i, lemma in enumerate(HOSTILE):
            other = HOSTILE[i - 1]
            cells = b"%d\t%d\t2\t3" % (2**33 - i // 9, i // 9)
            file.write(b"1\t%s\t%s\t2\t%s\n2\train\tN\t0\tHead\n%s\n1\t1\t1\t1\t1\t1\n\n" % (lemma, other, other, cells))
        file.write(b"\n")
    check(programs, path, [], ["logDice", "odds_ratio"])
    check(programs, path, ["--where", "lemma1=</script>"], ["G2"])
    title = "</title><script>alert(1)</script>\u202e\"&"
    page = report_file.Report(run(programs[1], path, "--title", title))
    expect(page.title == title and page.meta["title"] == title, "title", page.title, page.meta["title"])
    expect(page.tags.count("script") == 3 and page.tags.count("img") == 0, page.tags)
    # The same page but for the data.
    plain = os.path.join(folder, "plain")
    with open(plain, "wb") as file:
        file.write(b"1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t1\n1\t1\t1\t1\t1\t1\n\n\n")
    other = report_file.Report(run(programs[1], plain))
    expect((page.tags, page.script, page.style, page.policy) == (other.tags, other.script, other.style, other.policy), "the page differs")
    named = report_file.Report(run(programs[1], path))
    expect(named.title == os.path.basename(path) and named.meta["input"] == path, named.title, named.meta["input"])
    # A file without a row for the choice is a report all the same.
    expect(check(programs, plain, ["--min-frequency", "2"], ["G2"]) == 0, "rows that are too rare")
    with open(plain, "rb") as file:
        expect(report_file.Report(run(programs[1], "-", input=file.read())).title == "standard input", "the title of standard input")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--table", required=True)
    parser.add_argument("--report", required=True)
    parser.add_argument("--page", required=True)
    parser.add_argument("--cases", type=int, default=80)
    arguments = seeds.parse(parser)
    program, table, report = map(os.path.abspath, (arguments.program, arguments.table, arguments.report))
    with tempfile.TemporaryDirectory() as folder:
        check_hostile((table, report), folder)
        check_page(report, folder, arguments.page)
    rows, sizes = 0, set()
    for number in range(arguments.cases):
        case = differential.Generator(arguments.seed, number).make()
        r = random.Random(f"{arguments.seed}/{number}/report")
        if "-o" not in case.arguments[:-1]:
            continue
        with tempfile.TemporaryDirectory() as folder:
            differential.write_folder(folder, case.files)
            if differential.run_program(program, case, folder).status != 0:
                continue
            name = case.arguments[len(case.arguments) - case.arguments[::-1].index("-o")]
            path = os.path.join(folder, name)
            # Another output may have gone to the same file, and a file without N-grams has no report.
            if not os.path.isfile(path) or case.arguments.count(name) > 1 or not 1 < os.path.getsize(path) < LARGEST:
                continue
            with open(path, "rb") as file:
                n = file.read().split(b"\n\n")[0].count(b"\n") - 1
            choice, measures = random_choice(r, n), random_measures(r, n)
            try:
                rows += check((table, report), path, choice, measures)
            except (Disagreement, AssertionError) as disagreement:
                print(f"case {number}: {case.arguments} {choice} {measures}")
                print(*disagreement.args, sep="\n")
                return 1
            sizes.add(n)
    print(f"{rows} rows of N in {sorted(sizes)} (seed {arguments.seed})")
    return 0 if rows > arguments.cases and len(sizes) > 3 else 1


if __name__ == "__main__":
    sys.exit(main())
