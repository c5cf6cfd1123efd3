"""Property test: whatever ngrex-import writes, ngrex reads without a word on standard error.

usage: import_then_run.py --import PROGRAM --program NGREX [--seed S] [--cases K]

Makes random treebanks (CoNLL-U, CoNLL-X or datafiles, many of their lines damaged, some with far more tags than ngrex can
hold) from a printed seed, imports each with random options and runs ngrex over the result, without a mask, with the mask that
the importer suggests, or with a random one. The words, sentences and tags that the importer reports must be those that ngrex
counts. What was written must pass the importer's own check, and a datafile that passes the check as it is must be read by
ngrex without a word.
"""

import argparse
import os
import random
import re
import subprocess
import sys
import tempfile

PIECES = ["a", "b", "Praha", "don't", "x_y", "q:r", "a b", "\u00a0", "\u2028", "ž", "^", ";", "_", "-", "1", "\v", "\f", "\x01"]


def field(random_, empty="_"):
    return "".join(random_.choice(PIECES) for _ in range(random_.randint(1, 3))) if random_.random() < 0.9 else empty


def tag(random_, many_tags):
    if many_tags:
        return "".join(random_.choice("ABCDEFGH-") for _ in range(random_.choice([4, 4, 4, 3, 6])))
    return random_.choice(["NN", "VB", "N-"])


def sentence(random_, form, many_tags):
    words = random_.randint(1, 9)
    rows = []
    for i in range(1, words + 1):
        head = random_.choice([h for h in range(words + 1) if h != i])
        if random_.random() < 0.02:
            head = random_.choice([i, words + 5, 70000])
        order = i if random_.random() < 0.98 else random_.choice([0, i + 1, "x", ""])
        relation = random_.choice(["nsubj", "conj", "obj:x", "Sb", "ATR_CO", "root", "_", "appos"])
        if form == "datafile":
            row = [order, field(random_), field(random_), tag(random_, True) if many_tags else field(random_), head,
                   relation]
        else:
            feats = random_.choice(["_", "Case=Nom|Number=Sing", "Tense=Past", "casA"])
            row = [order, field(random_), field(random_), random_.choice(["NOUN", "VERB", "_"]),
                   tag(random_, many_tags), feats, head, relation, "_", "_"]
        if random_.random() < 0.02:
            row.pop()
        rows.append("\t".join(map(str, row)))
        if form == "conllu" and random_.random() < 0.1:
            rows.append("\t".join([random_.choice([f"{i}.1", f"{i}-{i + 1}"])] + ["_"] * 9))
    if form == "conllu" and random_.random() < 0.5:
        rows.insert(0, "# text = " + field(random_))
    end = random_.choice(["\n", "\n", "\n", "\r\n"])
    between = random_.choice([end, end, end, end, "\n", "\r\n", " \n", "\t\n", "\n\n"])
    return end.join(rows) + end + between


def counted(pattern, text):
    found = re.search(pattern, text)
    return int(found.group(1)) if found else None


def unfounded_approval(arguments, folder):
    """What is wrong when the check approves a datafile of which ngrex complains or reads other words."""
    check = subprocess.run([arguments.importer, "--check", "--strict", "--from", "datafile", "--mask", "-", "treebank"],
                           cwd=folder, capture_output=True)
    if check.returncode != 0:
        return None
    with open(os.path.join(folder, "own.list"), "w", encoding="utf-8") as own_list:
        own_list.write("treebank\n")
    run = subprocess.run([arguments.program, "-i", "own.list", "-n", "2", "-o", "pairs", "-s", "counts"], cwd=folder,
                         capture_output=True)
    with open(os.path.join(folder, "counts"), encoding="utf-8") as counts:
        read = counted(r"# of words: (\d+)", counts.read().split("Overall datafiles statistics:")[1])
    told = counted(r"words: +(\d+)", check.stderr.decode())
    if run.stderr or read != told:
        return f"the check approves {told} words, ngrex reads {read}: {run.stderr.decode()}"
    return None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--import", dest="importer", required=True)
    parser.add_argument("--program", required=True)
    parser.add_argument("--seed", type=int, default=random.SystemRandom().randrange(2**32))
    parser.add_argument("--cases", type=int, default=150)
    arguments = parser.parse_args()
    arguments.importer, arguments.program = map(os.path.abspath, (arguments.importer, arguments.program))
    print(f"seed {arguments.seed}", flush=True)
    runs = 0
    too_many = 0
    for case in range(arguments.cases):
        random_ = random.Random(f"{arguments.seed}/{case}")
        form = random_.choice(["conllu", "conllu", "conllx", "datafile"])
        with tempfile.TemporaryDirectory() as folder:
            many_tags = random_.random() < 0.2
            sentences = random_.randint(300, 500) if many_tags else random_.randint(1, 12)
            text = "".join(sentence(random_, form, many_tags) for _ in range(sentences))
            with open(os.path.join(folder, "treebank"), "wb") as treebank:
                treebank.write(text.encode() if random_.random() < 0.9 else text.rstrip().encode())
            if form == "datafile" and (complaint := unfounded_approval(arguments, folder)):
                print(f"case {case}: {complaint}")
                return 1
            options = ["--from", form, "-o", "words.dat", "--list", "list"]
            options += random_.choice([[], ["--tag", "feats"], ["--tag", "upos"], ["--no-protect-lemmas"],
                                       ["--relations", "keep"], ["--tag", "xpos"]])
            if many_tags:
                options += ["--tag", "xpos"]
            mask = random_.choice([None, "suggested", "".join(random_.choice("*-") for _ in range(random_.randint(1, 8)))])
            if mask not in (None, "suggested"):
                options += ["--mask", mask]
            report = subprocess.run([arguments.importer, *options, "treebank"], cwd=folder, capture_output=True)
            if report.returncode != 0:
                print(f"case {case}: import ended with {report.returncode}: {report.stderr.decode()}")
                return 1
            told = report.stderr.decode()
            tags = None
            if mask == "suggested" and (found := re.search(r"suggested mask: +(\S+) \((\d+) distinct", told)):
                mask, tags = found.group(1), int(found.group(2))
                too_many += counted(r"distinct tags: +(\d+)", told) > 254
            elif mask is not None:
                tags = counted(r"distinct masked tags: +(\d+)", told)
                if tags is not None and tags > 254:
                    continue
            masked = ["-m", mask] if tags is not None else []
            run = subprocess.run([arguments.program, "-i", "list", "-n", "2", "-o", "pairs", "-s", "counts", *masked],
                                 cwd=folder, capture_output=True)
            check = subprocess.run([arguments.importer, "--check", "--strict", "-q", "--mask", mask if masked else "-",
                                    "words.dat"], cwd=folder, capture_output=True)
            # A file without sentences is told about.
            if check.returncode != 0 and b"expected sentences, found none" not in check.stderr:
                print(f"case {case} ({form}, {options}): what was written is faulty: {check.stderr.decode()}")
                return 1
            with open(os.path.join(folder, "counts"), encoding="utf-8") as counts:
                overall = counts.read().split("Overall datafiles statistics:")[1]
            words = counted(r"words: +(\d+)", told), counted(r"# of words: (\d+)", overall)
            sentences = counted(r"\nsentences: +(\d+)", told), counted(r"# of sentences: (\d+)", overall)
            masked_tags = tags, counted(r"# of unique tags: (\d+)", overall) if masked else None
            if run.returncode != 0 or run.stderr or any(a != b for a, b in (words, sentences, masked_tags)):
                print(f"case {case} ({form}, {options}, {masked}): status {run.returncode}, words {words}, "
                      f"sentences {sentences}, tags {masked_tags}")
                print(run.stderr.decode())
                return 1
            runs += words[0] > 0
    print(f"{arguments.cases} cases read without a warning, {runs} of them with words, {too_many} with a suggested mask for "
          f"too many tags (seed {arguments.seed})")
    return 0 if runs > 0 and too_many > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
