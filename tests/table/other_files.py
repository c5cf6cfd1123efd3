"""Property test: the tables of contexts files and statistics files say what these files say.

usage: other_files.py --program NGREX --table NGREX-TABLE [--seed S] [--cases K]

Random corpora go through ngrex with random N, windows, masks and filters; both files are taken apart here by plain splitting.
"""

import argparse
import os
import random
import subprocess
import sys
import tempfile

from compare import corpus
import seeds


def contexts_of(content, n):
    """The expected rows of a contexts file, header first, as lists of byte strings."""
    names = [f"{name}{k}" for name in ("lemma", "tag", "parent", "relation") for k in range(1, n + 1)]
    rows = [[name.encode() for name in ["type", *names, "word", "word_tag", "role", "frequency"]]]
    lines = content.split(b"\n")[:-1]
    at = 0
    while lines[at]:
        members = [line.split(b"\t")[1:] for line in lines[at:at + n]]
        is_open = [member == [b"*"] for member in members]
        kind = sum(2 ** (n - 1 - k) for k in range(n) if not is_open[k])
        fields = [[b"NA" if gap and i == 2 else b"*" if gap else member[i] for gap, member in zip(is_open, members)]
                  for i in range(4)]
        at += n + 1
        for role in (b"narrow", b"wide") if not any(is_open) else (b"wide",):
            while lines[at]:
                word, tag, frequency = lines[at].split(b"\t")
                rows.append([b"%d" % kind, *sum(fields, []), word, tag, role, frequency])
                at += 1
            at += 1
        at += 1
    return rows


def statistics_of(content, n):
    """The same of a statistics file."""
    rows = [[name.encode() for name in
             ("scope", "datafile", "n", "words", "sentences", "extracted", "passed", "filtered")]]
    for paragraph in content.split(b"\n\n"):
        title, *counters = paragraph.split(b"\n")
        if not title.startswith((b"Statistics for datafile ", b"Overall")):
            break
        name = title[len(b"Statistics for datafile "):-1] if title.startswith(b"S") else b""
        counts = [line.split(b": ")[1] for line in counters]
        rows.append([b"datafile" if name else b"overall", name, b"%d" % n, *counts, *[b"NA"] * (5 - len(counts))])
    return rows


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--table", required=True)
    parser.add_argument("--cases", type=int, default=40)
    arguments = seeds.parse(parser)
    program, table = os.path.abspath(arguments.program), os.path.abspath(arguments.table)
    rows = 0
    for number in range(arguments.cases):
        r = random.Random(f"{arguments.seed}/{number}")
        n = r.choice([2, 2, 3, 4])
        options = r.choice([[], ["-m", "*"]]) + r.choice([[], ["-cs", "1"], ["-cw", "2"]])
        with tempfile.TemporaryDirectory() as folder:
            for name in ("one: x", "two"):
                with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                    file.write(corpus(r))
            with open(os.path.join(folder, "list"), "w", encoding="utf-8") as file:
                file.write("one: x\ntwo\n")
            with open(os.path.join(folder, "rules"), "w", encoding="utf-8") as file:
                file.write(" ".join(r.choice("NV-") for _ in range(n)) + "\n")
            if "-m" in options and r.random() < 0.5:
                options += ["-f", "rules"]
            subprocess.run([program, "-i", "list", "-n", str(n), "-o", "out", "-c", "contexts", "-s", "statistics", *options],
                           cwd=folder, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            for kind, expected_of in (("contexts", contexts_of), ("statistics", statistics_of)):
                with open(os.path.join(folder, kind), "rb") as file:
                    content = file.read()
                run = subprocess.run([table, f"--{kind}", kind], cwd=folder, capture_output=True, check=False)
                got = [line.split(b"\t") for line in run.stdout.split(b"\n")[:-1]]
                expected = expected_of(content, n)
                # A contexts file without N-grams does not say what N is.
                if content == b"\n":
                    expected = []
                if run.returncode != 0 or run.stderr or got != expected:
                    print(f"case {number}: {options}, n = {n}, {kind}: status {run.returncode} {run.stderr}")
                    print(*[pair for pair in zip(got, expected) if pair[0] != pair[1]][:3], len(got), len(expected), sep="\n")
                    return 1
                rows += len(got)
    print(f"{arguments.cases} runs with {rows} rows (seed {arguments.seed})")
    return 0 if rows > 10 * arguments.cases else 1


if __name__ == "__main__":
    sys.exit(main())
