"""Property test: whatever ngrex-import writes, ngrex reads without a word on standard error.

usage: import_then_run.py --import PROGRAM --program NGREX [--seed S] [--cases K]

Makes random treebanks (CoNLL-U, CoNLL-X or datafiles, many of their lines damaged, some with far more tags than ngrex can
hold) from a printed seed, imports each with random options and runs ngrex over the result, without a mask, with the mask that
the importer suggests, or with a random one. The words, sentences and tags that the importer reports must be those that ngrex
counts. What was written must pass the importer's own check, and a datafile that passes the check as it is must be read by
ngrex without a word. The sentence file must have every sentence that was written, in whole datafiles and in parts of a
split one, with its place in the treebank and the comments that stand there.
"""

import argparse
import os
import random
import re
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import seeds  # noqa: E402

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
        rows.insert(0, "# text = " + field(random_) + random_.choice(["", " ", "\xff"]))
    if form == "conllu" and random_.random() < 0.5:
        rows.insert(random_.randint(0, len(rows) > 0 and rows[0].startswith("#")), f"# sent_id = s-{random_.randrange(2**32)}")
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


def comments_above(lines, row):
    """The identifier and the text that the comments above a line of a treebank give."""
    found = {b"sent_id": b"", b"text": b""}
    while row > 0 and lines[row - 1].startswith(b"#"):
        row -= 1
        key, sign, value = lines[row][1:].partition(b"=")
        if sign and key.strip() in found:
            found[key.strip()] = value.strip()
    return [re.sub(rb"[\0-\x1f\x7f]", b" ", value.decode(errors="replace").encode()) for value in found.values()]


def misplaced_sentence(folder, notes, datafiles):
    """What is wrong with the sentence file of an import of the file treebank."""
    def read(name):
        with open(os.path.join(folder, name), "rb") as file:
            return file.read()
    treebank = read("treebank").split(b"\n")
    expected = []
    for datafile in datafiles:
        line = 1
        for sentence_ in re.findall(rb"(?:.+\n)+", read(datafile)):
            expected.append((datafile.encode(), line, sentence_.count(b"\n")))
            line += expected[-1][2] + 1
    header, *records = read(notes).split(b"\n")[:-1]
    if header != b"# ngrex sentences 1":
        return f"header {header}"
    found = []
    for record in records:
        datafile, line, words, source, source_line, *comments = record.split(b"\t")
        found.append((datafile, int(line), int(words)))
        if source != b"treebank" or not re.match(rb"\s*1\s", treebank[int(source_line) - 1]):
            return f"no sentence begins there: {record}"
        if comments != comments_above(treebank, int(source_line) - 1):
            return f"other comments stand there: {record}"
    return "" if found == expected else f"sentences {found}, expected {expected}"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--import", dest="importer", required=True)
    parser.add_argument("--program", required=True)
    parser.add_argument("--cases", type=int, default=150)
    arguments = seeds.parse(parser)
    arguments.importer, arguments.program = map(os.path.abspath, (arguments.importer, arguments.program))
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
                text = text if random_.random() < 0.9 else text.rstrip()
                treebank.write(text.encode().replace("\xff".encode(), b"\xff"))
            if form == "datafile" and (complaint := unfounded_approval(arguments, folder)):
                print(f"case {case}: {complaint}")
                return 1
            options = ["--from", form, "-o", "words.dat", "--list", "list", "--sentences", "notes"]
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
            wrong = misplaced_sentence(folder, "notes", ["words.dat"])
            if not wrong and random_.random() < 0.3:
                subprocess.run([arguments.importer, "-q", "--from", form, "-o", "part.dat", "--split", "20", "--sentences", "notes2",
                                "treebank"], cwd=folder, capture_output=True, check=True)
                parts = sorted(name for name in os.listdir(folder) if name.startswith("part-"))
                wrong = misplaced_sentence(folder, "notes2", parts)
            if wrong:
                print(f"case {case} ({form}): {wrong}")
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
