"""Property test: what --compare prints about two output datafiles is what plain sums and logarithms of sixty digits give.

usage: compare.py --program NGREX --table NGREX-TABLE [--seed S] [--cases K]

Two corpora over the same few words go through ngrex with the same N, and perhaps with a sieve, or output datafiles with counts
up to 2^53 are made up; some are compressed. All rows are expected in their order: those of the file, then those that only the
other one has. Sorted, filtered and merged comparisons must choose among the same rows.
"""

import argparse
import fractions
import gzip
import os
import random
import subprocess
import sys
import tempfile

import read_back
from read_back import Disagreement, blocks_of, close, expect, ln, log2, row_of
import seeds

WORDS = ["a", "b", "ab", "ž", "NA", "x'y"]
FUNCTIONS = ["Atr", "Sb", "Obj", "AuxP_Co"]


def corpus(r):
    """Sentences of random trees as a datafile."""
    lines = []
    for _ in range(r.randint(0, 30)):
        size = r.randint(1, 6)
        for order in range(1, size + 1):
            word = r.choice(WORDS)
            lines.append(f"{order} {word} {word} {r.choice('NV')} {r.randint(0, order - 1)} {r.choice(FUNCTIONS)}")
        lines.append("")
    return "".join(line + "\n" for line in lines)


def output_of(program, folder, name, n, r):
    """An output datafile of ngrex, as bytes."""
    with open(os.path.join(folder, "corpus"), "w", encoding="utf-8") as file:
        file.write(corpus(r))
    with open(os.path.join(folder, "list"), "w", encoding="utf-8") as file:
        file.write("corpus\n")
    sieve = r.choice([[], [], ["-tf", str(r.randint(1, 3))]])
    path = os.path.join(folder, name)
    subprocess.run([program, "-i", "list", "-n", str(n), "-m", "*", "-o", path, *sieve], cwd=folder, check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    with open(path, "rb") as file:
        return file.read()


def made_up(n, r):
    """An output datafile with any counts; its measures mean nothing."""
    total = r.choice([1, 7, 1000, 10**9, 2**53])
    blocks = []
    ngrams = sorted({tuple(r.choice(WORDS) for _ in range(n)) for _ in range(r.randint(0, 8))})
    r.shuffle(ngrams)
    for words in ngrams:
        cells, left = [], total
        for _ in range(2**n - 1):
            cells.append(r.choice([0, left, r.randint(0, left), left // 2]))
            left -= cells[-1]
        r.shuffle(cells)
        members = [f"{k}\t{word}\tN\t{k - 1}\t{'Atr' if k > 1 else 'Head'}\n" for k, word in enumerate(words, 1)]
        blocks.append("".join(members) + "\t".join(map(str, cells + [left])) + "\n" +
                      "\t".join(["0.5"] * (6 if n == 2 else 2)) + "\n\n")
    return ("".join(blocks) + "\n").encode()


def keyness(f, n, f_other, n_other):
    cells = [(f, n, f + f_other), (n - f, n, n + n_other - f - f_other), (f_other, n_other, f + f_other),
             (n_other - f_other, n_other, n + n_other - f - f_other)]
    g2 = 2 * sum(o * ln(fractions.Fraction(o * (n + n_other), row * column)) for o, row, column in cells if o)
    return -g2 if f * n_other < f_other * n else g2


def log_ratio(f, n, f_other, n_other):
    if f == 0 or f_other == 0:
        return None if f == f_other else float("inf") if f else float("-inf")
    return log2(fractions.Fraction(f * n_other, f_other * n))


def expected_rows(blocks, others):
    """The rows as dictionaries: printed texts as bytes, computed values as numbers."""
    total = sum(blocks[0]["cells"]) if blocks else 0
    total_other = sum(others[0]["cells"]) if others else 0
    here = {block["key"] for block in blocks}
    there = {other["key"]: other["cells"][-1] for other in others}
    rows = []
    for block in blocks + [other for other in others if other["key"] not in here]:
        f = block["cells"][-1] if block["key"] in here else 0
        f_other = there.get(block["key"], 0)
        row = row_of(block, len(rows) + 1)
        if block["key"] not in here:
            row.update({name: b"NA" for name in row if name.startswith(("marginal", "cell")) or name in read_back.OWN})
        known = total > 0 and total_other > 0
        row.update({
            "total": b"%d" % total, "frequency": b"%d" % f, "frequency_other": b"%d" % f_other,
            "per_million": fractions.Fraction(10**6 * f, total) if total else None,
            "per_million_other": fractions.Fraction(10**6 * f_other, total_other) if total_other else None,
            "keyness": keyness(f, total, f_other, total_other) if known else None,
            "keyness_log_ratio": log_ratio(f, total, f_other, total_other) if known else None})
        rows.append(row)
    return rows


def agrees(printed, value):
    if isinstance(value, bytes):
        return printed == value
    if value == float("-inf"):
        return printed == b"-Inf"
    return close(printed, value)


def table_of(program, *options):
    run = subprocess.run([program, *options, "--precision", "17"], capture_output=True, check=False)
    expect(run.returncode == 0, f"status {run.returncode} with {options}", run.stderr)
    names, *lines = [line.split(b"\t") for line in run.stdout.split(b"\n")[:-1]] or [[]]
    return [dict(zip([name.decode() for name in names], line)) for line in lines]


def check(program, path, other, r):
    with (gzip.open if path.endswith(".gz") else open)(path, "rb") as file:
        blocks = blocks_of(file.read())
    with (gzip.open if other.endswith(".gz") else open)(other, "rb") as file:
        others = blocks_of(file.read())
    rows = expected_rows(blocks, others)
    compare = [path, "--compare", other]
    default = table_of(program, *compare)
    everything = table_of(program, *compare, "--cells", "--pattern", "--measures", "G2")
    whole = [{**row, **more} for row, more in zip(default, everything)]
    expect(len(default) == len(everything) == len(rows), "rows", len(default), len(rows))
    for got, row in zip(whole, rows):
        for name, printed in got.items():
            if name == "G2":
                expect((printed == b"NA") == (row["cell0"] == b"NA" or row["total"] == b"0"), "G2", got)
            else:
                expect(agrees(printed, row[name]), f"{name}: {printed}, expected {row[name]}", got)
    if not rows:
        return 0
    least = r.randint(1, 3)
    frequent = table_of(program, *compare, "--min-frequency", str(least), "--columns", "lemma,frequency,frequency_other")
    expect(len(frequent) == sum(max(int(row["frequency"]), int(row["frequency_other"])) >= least for row in rows),
           "--min-frequency", least, len(frequent))
    only = table_of(program, *compare, "--where", "frequency_other=0", "--where", "keyness>0")
    expect([row["lemma1"] for row in only] ==
           [row["lemma1"] for row in rows if row["frequency_other"] == b"0" and row["keyness"] and row["keyness"] > 0],
           "--where", only)
    for order in ("-keyness", "+frequency_other", "+lemma1,-keyness_log_ratio"):
        got = table_of(program, *compare, "--sort", order)
        identity = [name for name in got[0] if name != "rank"]
        expect(sorted(tuple(row[name] for name in identity) for row in got) ==
               sorted(tuple(row[name] for name in identity) for row in default), "rows lost by --sort", order)
        first = table_of(program, *compare, "--sort", order, "--top", "2")
        expect(first == got[:2], "--sort with --top", order, first, got[:2])
        if order == "-keyness":
            values = [float(row["keyness"]) for row in got if row["keyness"] != b"NA"]
            expect(all(a >= b - 1e-11 * abs(b) for a, b in zip(values, values[1:])), "order of keyness", values)
    return len(rows)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--table", required=True)
    parser.add_argument("--cases", type=int, default=60)
    arguments = seeds.parse(parser)
    program, table = os.path.abspath(arguments.program), os.path.abspath(arguments.table)
    rows = 0
    for number in range(arguments.cases):
        r = random.Random(f"{arguments.seed}/{number}")
        n = r.choice([2, 2, 3, 4])
        with tempfile.TemporaryDirectory() as folder:
            paths = []
            for name in ("one", "other"):
                content = made_up(n, r) if number % 3 == 0 else output_of(program, folder, name, n, r)
                compressed = r.random() < 0.3
                paths.append(os.path.join(folder, name + (".gz" if compressed else "")))
                with open(paths[-1], "wb") as file:
                    file.write(gzip.compress(content) if compressed else content)
            try:
                rows += check(table, *paths, r)
            except Disagreement as disagreement:
                print(f"case {number}")
                print(*disagreement.args, sep="\n")
                return 1
    print(f"{arguments.cases} comparisons with {rows} rows (seed {arguments.seed})")
    return 0 if rows > arguments.cases else 1


if __name__ == "__main__":
    sys.exit(main())
