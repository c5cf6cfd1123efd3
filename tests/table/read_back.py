"""Property test: whatever ngrex writes, ngrex-table reads, and its tables say the same in every format.

usage: read_back.py --program NGREX --table NGREX-TABLE [--seed S] [--cases K]

Runs ngrex over random corpora with random command lines (those of the differential test) from a printed seed. Each output
datafile is taken apart here, in another way than the program does it, and compared with the tables as tsv, csv and jsonl;
computed measures are recomputed. Sorted tables must have the rows in the order that the manual promises, and of a file that is
cut somewhere the whole N-grams before the cut must be printed.
"""

import argparse
import codecs
import collections
import copy
import csv
import decimal
import fractions
import io
import json
import math
import os
import random
import re
import sqlite3
import subprocess
import sys
import tempfile
import xml.etree.ElementTree
import zipfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "differential"))
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import differential  # noqa: E402
import merging  # noqa: E402
import seeds  # noqa: E402

OWN = ["chi_square", "log_likelihood", "mutual_information", "pearson", "t_test", "z_score"]
MEASURES = ["per_million", "G2", "X2", "simple_ll", "expected", "t", "z", "poisson", "MI", "MI3", "local_mi", "npmi", "Dice", "logDice", "jaccard",
            "min_sensitivity"]
OF_PAIRS = ["phi", "odds_ratio", "log_ratio", "delta_p12", "delta_p21", "p_G2", "p_X2", "Fisher"]
WITH_SIGN = ["G2", "X2", "simple_ll"]
RECOMPUTED = 300  # N-grams of a file whose measures are recomputed, which takes much longer than printing them
PLAIN = ["rank", "lemma", "tag", "parent", "relation", "frequency", "marginal", "total"]
decimal.getcontext().prec = 60
LARGEST = 4_000_000  # bytes of an output datafile that are taken apart here in reasonable time
SIEVES_AND_THRESHOLDS = ["-tf", "-te", "-tc", "-tl", "-tm", "-tp", "-tt", "-tz"]
TEXTS = ("lemma", "tag", "relation", "pattern")

# Every byte that is no UTF-8 becomes one replacement character.
codecs.register_error("byte by byte", lambda error: ("\ufffd", error.start + 1))


def blocks_of(content):
    """The blocks of an output datafile as dictionaries of byte strings, in their order."""
    blocks = []
    for text in content.split(b"\n\n")[:-1]:
        lines = text.split(b"\n")
        members = [line.split(b"\t") for line in lines[:-2]]
        cells = list(map(int, lines[-2].split(b"\t")))
        blocks.append({"members": members, "key": b"".join(line + b"\n" for line in lines[:-2]), "cells": cells,
                       "own": lines[-1].split(b"\t")})
    return blocks


def shown(measure):
    text = measure.lstrip(b"-")
    if text == b"nan":
        return b"NA"
    return (b"-Inf" if measure.startswith(b"-") else b"Inf") if text == b"inf" else measure


def pattern_of(members):
    words = []
    for position, (_, lemma, _, parent, relation) in enumerate(members, 1):
        distance = int(parent) - position
        named = relation + (b":" + parent if abs(distance) != 1 else b"")
        if int(parent) == 0:
            words.append(lemma)
        else:
            words.append(lemma + b" <" + named if distance > 0 else named + b"> " + lemma)
    return b" ".join(words)


def marginals_of(block):
    n = len(block["members"])
    return [sum(count for i, count in enumerate(block["cells"]) if i >> (n - 1 - k) & 1) for k in range(n)]


def row_of(block, rank):
    members = block["members"]
    row = {"rank": rank}
    for name, field in (("lemma", 1), ("tag", 2), ("parent", 3), ("relation", 4)):
        row.update({f"{name}{k}": member[field] for k, member in enumerate(members, 1)})
    row["frequency"] = block["cells"][-1]
    row.update({f"marginal{k}": value for k, value in enumerate(marginals_of(block), 1)})
    row["total"] = sum(block["cells"])
    row.update({name: shown(value) for name, value in zip(OWN, block["own"])})
    row.update({f"cell{i}": count for i, count in enumerate(block["cells"])})
    row["pattern"] = pattern_of(members)
    return {name: value if isinstance(value, bytes) else b"%d" % value for name, value in row.items()}


def ln(ratio):
    """The natural logarithm of a fraction, to sixty digits."""
    if ratio == 0:
        return decimal.Decimal("-Infinity")
    return decimal.Decimal(ratio.numerator).ln() - decimal.Decimal(ratio.denominator).ln()


def log2(ratio):
    return ln(ratio) / decimal.Decimal(2).ln()


def number(fraction):
    return decimal.Decimal(fraction.numerator) / decimal.Decimal(fraction.denominator)


def quotient(a, b):
    """a / b as a fraction; infinite or not a number where b is 0."""
    if b != 0:
        return fractions.Fraction(a) / b
    return None if a == 0 else math.inf


def tail(statistic):
    """Upper tail of the chi-square distribution with one degree of freedom."""
    return math.erfc(math.sqrt(float(statistic) / 2))


def measures_of(block):
    """Textbook measures of an N-gram that occurs, by whole numbers, fractions and logarithms of sixty digits; None where they are
    not a number."""
    cells, n = block["cells"], len(block["members"])
    total, f, marginals = sum(cells), cells[-1], marginals_of(block)

    def expected(cell):
        product = math.prod(f_k if cell >> (n - 1 - k) & 1 else total - f_k for k, f_k in enumerate(marginals))
        return fractions.Fraction(product, total ** (n - 1))

    e = expected(len(cells) - 1)
    sign = -1 if f < e else 1
    table = [(o, expected(i)) for i, o in enumerate(cells) if expected(i) > 0]
    g2 = 2 * sum(o * ln(o / x) for o, x in table if o)
    x2 = number(sum((o - x) ** 2 / x for o, x in table))
    mi = log2(f / e)
    dice = fractions.Fraction(n * f, sum(marginals))
    values = {"per_million": fractions.Fraction(f * 10**6, total), "G2": sign * g2, "X2": sign * x2, "simple_ll": sign * 2 * (f * ln(f / e) - number(f - e)), "expected": e,
              "t": number(f - e) / decimal.Decimal(f).sqrt(), "z": number(f - e) / number(e).sqrt(),
              "poisson": f * (ln(f / e) - 1), "MI": mi, "MI3": mi + 2 * log2(fractions.Fraction(f)), "local_mi": f * mi,
              "npmi": mi / (-(n - 1) * log2(fractions.Fraction(f, total))) if f < total else None, "Dice": dice,
              "logDice": 14 + log2(dice), "jaccard": fractions.Fraction(f, total - cells[0]),
              "min_sensitivity": fractions.Fraction(f, max(marginals))}
    if n == 2:
        f1, f2 = marginals
        product = f1 * f2 * (total - f1) * (total - f2)
        without1, without2 = quotient(cells[1], total - f1), quotient(cells[2], total - f2)
        ratio = quotient(fractions.Fraction(f, f1), without1) if without1 is not None else None
        values.update({
            "phi": (cells[3] * cells[0] - cells[2] * cells[1]) / decimal.Decimal(product).sqrt() if product else None,
            "odds_ratio": quotient(cells[3] * cells[0], cells[2] * cells[1]),
            "log_ratio": ratio if ratio in (None, math.inf) else log2(ratio),
            "delta_p12": None if without1 is None else fractions.Fraction(f, f1) - without1,
            "delta_p21": None if without2 is None else fractions.Fraction(f, f2) - without2,
            "p_G2": tail(g2), "p_X2": tail(x2), "Fisher": fisher(f, f1, f2, total)})
    return values


def fisher(f, f1, f2, total):
    """-log10 of the upper tail, by whole numbers."""
    below = sum(math.comb(f1, x) * math.comb(total - f1, f2 - x) for x in range(max(0, f1 + f2 - total), f))
    everything = math.comb(total, f2)
    lacking = fractions.Fraction(below, everything)
    if lacking < fractions.Fraction(1, 2):
        return -math.log1p(-float(lacking)) / math.log(10)
    return math.log10(everything) - math.log10(everything - below)


def close(printed, expected):
    if expected is None or expected == math.inf:
        return printed == (b"NA" if expected is None else b"Inf")
    # Sixty digits leave a trace where exactly 0 would be right.
    return math.isclose(float(printed), float(expected), rel_tol=1e-9, abs_tol=1e-40)


class Disagreement(Exception):
    pass


def expect(condition, *what):
    if not condition:
        raise Disagreement(*what)


def table_of(program, path, *options, status=0):
    run = subprocess.run([program, *options, path], capture_output=True)
    expect(run.returncode == status, f"status {run.returncode} with {options}", run.stderr)
    return run.stdout


def check_formats(program, path, blocks, r):
    measures = MEASURES + (OF_PAIRS if blocks and len(blocks[0]["members"]) == 2 else [])
    own = OWN[: len(blocks[0]["own"])] if blocks else OWN[:2]
    options = ["--columns", ",".join(PLAIN + own + measures), "--cells", "--pattern"]
    lines = table_of(program, path, *options, "--format", "tsv").split(b"\n")[:-1]
    if not blocks:
        expect(lines == [], "a table without N-grams", lines)
        return
    rows = [row_of(block, rank) for rank, block in enumerate(blocks, 1)]
    names = [name.decode() for name in lines[0].split(b"\t")]
    expect(set(names) == set(rows[0]) | set(measures), "columns", names)
    expect(len(lines) == len(rows) + 1, "rows", len(lines))
    chosen = set(r.sample(range(len(blocks)), min(RECOMPUTED, len(blocks))))
    for line, row, block in zip(lines[1:], rows, blocks):
        got = dict(zip(names, line.split(b"\t")))
        computed = measures_of(block) if int(row["rank"]) - 1 in chosen else {}
        for name in names:
            if name in computed:
                expect(close(got[name], computed[name]), name, got[name], computed[name], block)
            elif name not in measures:
                expect(got[name] == row[name], name, got[name], row[name])

    unsigned = table_of(program, path, "--unsigned", "--columns", ",".join(measures), "--format", "tsv").split(b"\n")[:-1]
    for line, plain in zip(lines[1:], unsigned[1:]):
        got = dict(zip(names, line.split(b"\t")))
        for name, value in zip(measures, plain.split(b"\t")):
            expect(value == (got[name].lstrip(b"-") if name in WITH_SIGN else got[name]), "unsigned", name, value, got[name])

    text = table_of(program, path, *options, "--format", "csv").decode("latin-1")
    read = list(csv.reader(io.StringIO(text, newline="")))
    expect(read == [line.decode("latin-1").split("\t") for line in lines], "csv")

    objects = table_of(program, path, *options, "--format", "jsonl").split(b"\n")[:-1]
    expect(len(objects) == len(rows), "lines of jsonl", len(objects))
    for line, text in zip(lines[1:], objects):
        got = json.loads(text.decode())
        expect(list(got) == names, "keys of jsonl", got)
        for name, field in zip(names, line.split(b"\t")):
            if name.startswith(TEXTS):
                expect(got[name] == field.decode("utf-8", "byte by byte"), "jsonl", name, got[name], field)
            else:
                number = None if field in (b"NA", b"Inf", b"-Inf") else float(field)
                expect(got[name] == number, "jsonl", name, got[name], field)


def check_database(program, path, folder):
    """A database has the values of the table, in its tables and its view."""
    options = ["--cells", "--pattern", "--measures", "MI,logDice"]
    text = table_of(program, path, *options, "--format", "tsv").decode("utf-8", "byte by byte")
    rows = [line.split("\t") for line in text.split("\n")[:-1]]
    base = os.path.join(folder, "base")
    expect(table_of(program, path, *options, "--format", "sqlite", "-o", base) == b"", "output beside the database")
    connection = sqlite3.connect(base)
    about = dict(connection.execute("SELECT key, value FROM about"))
    expect(about["rows"] == max(len(rows) - 1, 0) and about["input"] == path, "about", about)
    expect(connection.execute("PRAGMA integrity_check").fetchall() == [("ok",)], "integrity")
    connection.row_factory = sqlite3.Row
    ngrams = connection.execute("SELECT * FROM ngrams ORDER BY id").fetchall()
    members = {(row["ngram"], row["position"]): row for row in connection.execute("SELECT * FROM members")}
    cells = {(row["ngram"], row["cell"]): row["observed"] for row in connection.execute("SELECT * FROM cells")}
    connection.close()
    n = about["n"] or 0
    expect([len(ngrams), len(members), len(cells)] == [about["rows"] * many for many in (1, n, 2**n)], "numbers of rows")
    for number, fields in enumerate(rows[1:], 1):
        for name, field in zip(rows[0], fields):
            what, k = re.fullmatch(r"(\D*)(\d*)", name).groups()
            if what in members[number, 1].keys():
                value = members[number, int(k)][what]
            elif what == "cell":
                value = cells[number, int(k)]
            else:
                value = ngrams[number - 1]["id" if name == "rank" else name]
            if name.startswith(TEXTS):
                expect(value == field, "database", name, value, field)
            else:
                expect(value == (None if field == "NA" else float(field)), "database", name, value, field)
    os.remove(base)


def rows_of_sheet(path):
    """The rows of a workbook's sheet as lists of texts and numbers."""
    with zipfile.ZipFile(path) as workbook:
        expect(workbook.testzip() is None, "a damaged workbook")
        for name in workbook.namelist():
            xml.etree.ElementTree.fromstring(workbook.read(name))
        sheet = xml.etree.ElementTree.fromstring(workbook.read("xl/worksheets/sheet1.xml"))
    main = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
    expect(not list(sheet.iter(main + "f")), "a formula")

    def value(cell):
        if cell.get("t") != "inlineStr":
            return float(cell.find(main + "v").text)
        text = cell.find(f"{main}is/{main}t").text or ""
        return re.sub("_x([0-9A-F]{4})_", lambda code: chr(int(code.group(1), 16)), text)

    rows = []
    for number, row in enumerate(sheet.iter(main + "row"), 1):
        expect(row.get("r") == str(number), "number of a row", row.get("r"))
        expect(all(re.fullmatch(f"[A-Z]+{number}", cell.get("r")) for cell in row), "name of a cell")
        rows.append([value(cell) for cell in row])
    return rows


def check_workbook(program, path, folder):
    """A workbook has the cells of the table, numbers as numbers and everything else as text."""
    options = ["--pattern", "--measures", "MI,logDice"]
    text = table_of(program, path, *options, "--format", "tsv").decode("utf-8", "byte by byte")
    lines = [line.split("\t") for line in text.split("\n")[:-1]]
    book = os.path.join(folder, "book")
    expect(table_of(program, path, *options, "--format", "xlsx", "-o", book) == b"", "output beside the workbook")
    rows = rows_of_sheet(book)
    expect(rows[:1] == lines[:1] and len(rows) == len(lines), "header or number of rows of a workbook", rows[:1], len(rows))
    for row, fields in zip(rows[1:], lines[1:]):
        wanted = [field if name.startswith(TEXTS) or field in ("NA", "Inf", "-Inf") else float(field)
                  for name, field in zip(lines[0], fields)]
        expect(row == wanted, "row of a workbook", row, wanted)
    os.remove(book)


def check_order(program, path, blocks, r):
    names = ["frequency", "lemma1", "log_likelihood", "pattern", "cell0", "tag2", "relation1", "parent1"]
    keys = [(r.choice(["", "+", "-"]), name) for name in r.sample(names, r.randint(1, 3))]
    top = r.randint(0, len(blocks) + 1) if r.random() < 0.7 else len(blocks)
    # Sorts are stable, so the last key goes first; before all of them the member lines and the place in the file.
    rows = [(row_of(block, 1), block) for block in sorted(blocks, key=lambda block: block["key"])]
    for sign, name in reversed(keys):
        is_text = name.startswith(TEXTS)
        ascending = sign == "+" or sign == "" and is_text
        unknown = [row for row in rows if row[0][name] == b"NA" and not is_text]
        known = [row for row in rows if row[0][name] != b"NA" or is_text]
        known.sort(key=lambda row: row[0][name] if is_text else float(row[0][name]), reverse=not ascending)
        rows = known + unknown
    order = ",".join(sign + name for sign, name in keys)
    limits = [["--top", str(top)], [], ["--memory", "1K"], ["--memory", "1K", "--top", str(top)]][r.randint(0, 3)]
    lines = table_of(program, path, "--sort", order, *limits, "--columns", "lemma,tag,parent,relation,frequency",
                     "--format", "tsv").split(b"\n")[1:-1]
    got = [line.split(b"\t") for line in lines]
    expected = [block for _, block in rows][: top if "--top" in limits else None]
    wanted = [[member[field] for field in (1, 2, 3, 4) for member in block["members"]] + [b"%d" % block["cells"][-1]]
              for block in expected]
    expect(got == wanted, "order by", order, limits)


def random_condition(rows, folder, r):
    """A condition as bytes, and what it says of a row as row_of makes it."""
    name = r.choice(["frequency", "lemma1", "relation1", "tag2", "log_likelihood", "parent2", "pattern", "cell0"])
    value = r.choice(rows)[name]
    if name.startswith(TEXTS):
        shown_value = b"'" + value.replace(b"'", b"''") + b"'" if b"'" in value or b" " in value or r.random() < 0.3 else value
        kind = r.choice(["=", "!=", "in", "not in"])
        if kind in ("=", "!="):
            return name.encode() + kind.encode() + shown_value, lambda row: (row[name] == value) == (kind == "=")
        chosen = {row[name] for row in r.sample(rows, r.randint(1, min(5, len(rows))))} - {b""}
        path = os.path.join(folder, f"set{r.randrange(10**9)}")
        with open(path, "wb") as file:
            file.write(r.choice([b"", codecs.BOM_UTF8]) + b"".join(text + b"\r\n" for text in chosen))
        return f"{name} {kind} {path}".encode(), lambda row: (row[name] in chosen) == (kind == "in")
    sign = r.choice(["=", "!="] if value == b"NA" else ["=", "!=", "<", "<=", ">", ">="])
    number = float(value.replace(b"NA", b"nan"))

    def met(row):
        other = float(row[name].replace(b"NA", b"nan"))
        same = other == number or other != other and number != number
        return {"=": same, "!=": not same, "<": other < number, "<=": other <= number, ">": other > number,
                ">=": other >= number}[sign]

    return name.encode() + sign.encode() + value, met


def check_where(program, path, blocks, folder, r):
    rows = [row_of(block, 1) for block in blocks]
    alternatives = [[random_condition(rows, folder, r) for _ in range(r.randint(1, 3))] for _ in range(r.randint(1, 3))]
    text = b" or ".join(b" and ".join(written for written, _ in joined) for joined in alternatives)
    if b"\0" in text:  # which no argument can hold
        return
    lines = table_of(program, path, b"--where", text, "--columns", "lemma,frequency", "--format", "tsv").split(b"\n")[1:-1]
    wanted = [row for row in rows if any(all(met(row) for _, met in joined) for joined in alternatives)]
    names = [name for name in rows[0] if name.startswith("lemma")] + ["frequency"]
    expect(lines == [b"\t".join(row[name] for name in names) for row in wanted], "rows where", text, len(lines), len(wanted))


def check_measure_order(program, path, r):
    measure = r.choice(MEASURES)
    lines = table_of(program, path, "--sort", measure, "--columns", measure, "--format", "tsv").split(b"\n")[1:-1]
    values = [float(line.replace(b"Inf", b"inf").replace(b"NA", b"nan")) for line in lines]
    expect(all(not b > a for a, b in zip(values, values[1:])), "falling values of", measure, values)


def check_merging(program, path, blocks, r):
    """False when the file lacks pairs, which the program must refuse then."""
    merge = r.sample(["order", "tag", "relation"], r.randint(0, 3))
    within = None if "relation" in merge else r.choice(["relation", "head-relation"] + [None] * bool(merge))
    options = (["--merge", ",".join(merge)] if merge else []) + (["--within", within] if within else [])
    if sum(block["cells"][-1] for block in blocks) != sum(blocks[0]["cells"]):
        expect(table_of(program, path, *options, status=1) == b"", "rows of a file that lacks pairs", options)
        return False
    lines = table_of(program, path, *options, "--cells", "--measures", "G2,logDice", "--format", "tsv")
    header, *lines = [line.split(b"\t") for line in lines.split(b"\n")[:-1]]
    names = [name.decode() for name in header]
    rows = merging.merged_rows(blocks, merge, within)
    expect(set(names) == set(rows[0]) | {"rank", "G2", "logDice"}, "columns", names)
    expect(len(lines) == len(rows), "merged rows", options, len(lines), len(rows))
    recomputed = set(r.sample(range(len(rows)), min(RECOMPUTED // 10, len(rows))))
    for number, (line, row) in enumerate(zip(lines, rows)):
        got = dict(zip(names, line))
        for name in row:
            expect(got[name] == row[name], options, name, got[name], row)
        if number in recomputed:
            computed = measures_of({"members": [0, 1], "cells": [int(row[f"cell{i}"]) for i in range(4)]})
            for name in ("G2", "logDice"):
                expect(close(got[name], computed[name]), options, name, got[name], computed[name], row)
    check_pair_types(program, path, blocks)
    return True


def check_pair_types(program, path, blocks):
    """What a data set of pair types promises: names, and sums that agree."""
    lines = table_of(program, path, "--format", "ucs", "--measures", "G2,min_sensitivity").split(b"\n")[:-1]
    expect(lines[0] == b"id\tl1\tl2\tf\tf1\tf2\tN\tam.G2\tam.min.sensitivity", "header of ucs", lines[0])
    rows = [line.split(b"\t") for line in lines[1:]]
    of_first, of_second = collections.Counter(), collections.Counter()
    for _, first, second, f, *_ in rows:
        of_first[first] += int(f)
        of_second[second] += int(f)
    expect(len({(row[1], row[2]) for row in rows}) == len(rows), "pair types that stand twice")
    total = sum(block["cells"][-1] for block in blocks)
    for number, (rank, first, second, f, f1, f2, n, *_) in enumerate(rows, 1):
        expect((int(rank), int(f1), int(f2), int(n)) == (number, of_first[first], of_second[second], total), "ucs", rows)


def check_without_tags(program, table, path, case, name):
    """Without tags the pairs of a file have the cells that ngrex itself counts when its mask keeps no tag; false when it kept
    none before. Filters see masked tags, so there must be none."""
    options = case.arguments[:-1]  # one at the end has no value
    mask = case.arguments[len(options) - options[::-1].index("-m")]
    if "*" not in mask:
        return False
    untagged = copy.copy(case)
    # What all pairs with tags reached some pairs without may not.
    chosen = {place + k for place, word in enumerate(case.arguments) for k in (0, 1) if word in SIEVES_AND_THRESHOLDS}
    untagged.arguments = ["-" * len(mask) if word == mask else word for place, word in enumerate(case.arguments)
                          if place not in chosen]
    columns = ["--columns", "lemma,parent,relation,cell", "--format", "tsv"]
    with tempfile.TemporaryDirectory() as folder:
        differential.write_folder(folder, case.files)
        status = differential.run_program(program, untagged, folder).status
        expect(status == 0, "status without a mask", status, untagged.arguments)
        counted = table_of(table, os.path.join(folder, name), *columns).split(b"\n")
    merged = table_of(table, path, "--merge", "tag", *columns).split(b"\n")
    expect(sorted(merged) == sorted(counted), "cells without tags", set(merged) ^ set(counted))
    return True


def check_cut(program, content, folder, r):
    size = r.randint(0, len(content) - 1)
    path = os.path.join(folder, "cut")
    with open(path, "wb") as file:
        file.write(content[:size])
    lines = table_of(program, path, "--columns", "lemma", "--format", "tsv", status=1).split(b"\n")[:-1]
    whole = content[:size].count(b"\n\n")
    expect(len(lines) == (whole + 1 if whole else 0), "rows of a cut file", size, len(lines), whole)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--table", required=True)
    parser.add_argument("--cases", type=int, default=150)
    parser.add_argument("--first", type=int, default=0)
    arguments = seeds.parse(parser)
    program, table = os.path.abspath(arguments.program), os.path.abspath(arguments.table)
    files = ngrams = merged = unmasked = 0
    for number in range(arguments.first, arguments.first + arguments.cases):
        case = differential.Generator(arguments.seed, number).make()
        r = random.Random(f"{arguments.seed}/{number}/table")
        if "-o" not in case.arguments[:-1]:
            continue
        with tempfile.TemporaryDirectory() as folder:
            differential.write_folder(folder, case.files)
            if differential.run_program(program, case, folder).status != 0:
                continue
            name = case.arguments[len(case.arguments) - case.arguments[::-1].index("-o")]
            path = os.path.join(folder, name)
            # Another output may have gone to the same file.
            if not os.path.isfile(path) or case.arguments.count(name) > 1 or os.path.getsize(path) > LARGEST:
                continue
            with open(path, "rb") as file:
                content = file.read()
            try:
                blocks = blocks_of(content)
                check_formats(table, path, blocks, r)
                check_database(table, path, folder)
                check_workbook(table, path, folder)
                if blocks:
                    check_order(table, path, blocks, r)
                    check_measure_order(table, path, r)
                    check_where(table, path, blocks, folder, r)
                if blocks and len(blocks[0]["members"]) == 2:
                    complete = check_merging(table, path, blocks, r)
                    merged += complete
                    if complete and "-m" in case.arguments[:-1] and "-f" not in case.arguments:
                        unmasked += check_without_tags(program, table, path, case, name)
                check_cut(table, content, folder, r)
            except Disagreement as disagreement:
                print(f"case {number}: {case.arguments}")
                print(*disagreement.args, sep="\n")
                return 1
            files += 1
            ngrams += len(blocks)
    print(f"{files} files with {ngrams} N-grams read back, {merged} of them merged, {unmasked} counted without tags (seed {arguments.seed})")
    return 0 if ngrams > arguments.cases and merged > arguments.cases / 50 else 1


if __name__ == "__main__":
    sys.exit(main())
