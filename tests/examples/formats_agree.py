"""Property test: every format of ngrex-examples shows the same occurrences, and sentences as they were written.

usage: formats_agree.py --import PROGRAM --program NGREX --examples PROGRAM [--seed S] [--cases K]

Makes random treebanks in CoNLL-U, in which words may be written as one, imports them into one or several datafiles with
--sentences, shuffles the list, counts N-grams and asks for all their examples. tsv, jsonl and conllu must have the same
hits; identifiers, texts, places and words must be those of the treebank; what conllu writes must pass the check of
ngrex-import; and text must be, but for its brackets, the sentences as they were written.
"""

import argparse
import collections
import json
import os
import random
import re
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import seeds  # noqa: E402

FORMS = ["rain", "fell", "New\u00a0York", "雨", "גשם", "é", "\u00e9t\u00e9", ".", ",", "[", "\"", "a\\b", "=", "#"]


def treebank(random_, name):
    """A treebank as text, and its sentences by identifier: text, line of the first word, words."""
    lines, sentences = [], {}
    for number in range(random_.randint(1, 15)):
        words, text = [], ""
        count = random_.randint(1, 9)
        for i in range(1, count + 1):
            form = random_.choice(FORMS)
            relation = random_.choice(["Atr", "Sb", "Obj"])
            words.append((form, random_.choice("xyz"), random_.choice([0] + [h for h in range(1, i)]), relation))
            written = form.replace("\u00a0", " ") if random_.random() < 0.9 else "zum"
            text += written + random_.choice([" ", " ", "", "  "])
        text = text.strip()
        identifier = f"{name}-{number}" if random_.random() < 0.8 else ""
        has_text = random_.random() < 0.8
        lines += [f"# sent_id = {identifier}"] if identifier else []
        lines += [f"# text = {text}"] if has_text else []
        sentences[name, len(lines) + 1] = identifier, text if has_text else "", words
        lines += ["\t".join(map(str, (i, form, lemma, "NOUN", "NN", "_", head, relation, "_", "_")))
                  for i, (form, lemma, head, relation) in enumerate(words, 1)]
        lines.append("")
    return "\n".join(lines) + "\n", sentences


def expect(condition, *what):
    if not condition:
        raise AssertionError(what)


def run(folder, *command):
    done = subprocess.run(command, cwd=folder, capture_output=True, check=False)
    expect(done.returncode == 0, command, done)
    return done.stdout.decode()


def hits_of_tsv(text, sentences, n):
    header, *rows = [line.split("\t") for line in text.split("\n")[:-1]]
    hits = collections.Counter()
    for row in rows:
        expect(len(row) == len(header), row)
        of = dict(zip(header, row))
        place = of["treebank"], int(of["treebank_line"])
        identifier, written, words = sentences[place]
        expect((of["id"], of["sentence"]) == (identifier, written or " ".join(word[0] for word in words)), of)
        hits[of["rank"], place, tuple(int(of[f"word{k}"]) for k in range(1, n + 1))] += 1
    return hits


def hits_of_jsonl(text, sentences):
    hits = collections.Counter()
    for line in text.split("\n")[:-1]:
        of = json.loads(line)
        place = of["treebank"], of["treebank_line"]
        identifier, written, words = sentences[place]
        expect((of["id"], of["text"]) == (identifier or None, written or None), of)
        shown = [(word["form"], word["lemma"], word["parent"], word["relation"]) for word in of["words"]]
        expect(shown == words, shown, words)
        tops = [p for p in of["positions"] if words[p - 1][2] not in of["positions"]]
        expect(tops == [of["top"]], of)
        hits[str(of["rank"]), place, tuple(of["positions"])] += 1
    return hits


def hits_of_conllu(text, sentences):
    hits = collections.Counter()
    places = []
    for block in text.split("\n\n")[:-1]:
        comments = dict(line[2:].split(" = ", 1) for line in block.split("\n") if line.startswith("# "))
        rows = [line.split("\t") for line in block.split("\n") if not line.startswith("# ")]
        source, line = comments["treebank"].rsplit(":", 1)
        place = source, int(line)
        identifier, written, words = sentences[place]
        expect(comments["sent_id"] == (identifier or f"{source}:{line}"), comments)
        expect(comments["text"] == (written or " ".join(word[0] for word in words)), comments)
        expect([(row[1], row[2], int(row[6]), row[7]) for row in rows] == words, rows)
        members = collections.defaultdict(dict)
        for row in rows:
            for hit in re.findall(r"(?:^Hit=|(?<=,))(\d+:\d+)", row[9].split("|")[0]):
                number, member = hit.split(":")
                members[number][int(member)] = int(row[0])
        for number, of in members.items():
            rank = comments["hit_" + number].split(" ")[0]
            hits[rank, place, tuple(of[k] for k in sorted(of))] += 1
        expect(place not in places, place)
        places.append(place)
    return hits


def check_text(text, sentences):
    """Below each name stands its sentence."""
    known = {(identifier or f"{place[0]}:{place[1]}"): (written, " ".join(word[0] for word in words))
             for place, (identifier, written, words) in sentences.items()}
    for name, shown in re.findall(r"^  (\S+)\n    (.*)\n", text, re.M):
        plain = [re.sub(r"[\[\]]", "", form) for form in known[name]]
        expect(re.sub(r"[\[\]]", "", shown) in plain, name, shown)


def try_case(random_, arguments, folder):
    sentences, names = {}, []
    for name in ("one", "two")[: random_.randint(1, 2)]:
        text, of_file = treebank(random_, name)
        with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
            file.write(text)
        sentences |= of_file
        split = random_.choice([[], ["--split", "12"]])
        run(folder, arguments.importer, "-q", "--relations", "keep", "-o", name + ".dat", *split, "--list", "list",
            "--sentences", "sentences", name)
    with open(os.path.join(folder, "list"), encoding="utf-8") as file:
        names = file.readlines()
    random_.shuffle(names)
    with open(os.path.join(folder, "list"), "w", encoding="utf-8") as file:
        file.writelines(names)
    n = random_.randint(2, 3)
    run(folder, arguments.program, "-i", "list", "-n", str(n), "-o", "ngrams")
    shown = {form: run(folder, arguments.examples, "-i", "list", "--sentences", "sentences", "--examples", "all", "--format", form,
                       "ngrams") for form in ("tsv", "jsonl", "conllu", "text", "kwic")}
    hits = hits_of_tsv(shown["tsv"], sentences, n)
    expect(hits == hits_of_jsonl(shown["jsonl"], sentences), "jsonl", hits)
    expect(hits == hits_of_conllu(shown["conllu"], sentences), "conllu", hits)
    expect(len(re.findall(r"^  \S", shown["text"], re.M)) == hits.total(), "text")
    check_text(shown["text"], sentences)
    expect(len(shown["kwic"].split("\n")) == 1 + hits.total() + 2 * len({hit[0] for hit in hits}) - bool(hits), "kwic")
    if hits:
        with open(os.path.join(folder, "shown"), "w", encoding="utf-8") as file:
            file.write(shown["conllu"])
        run(folder, arguments.importer, "--check", "--strict", "-q", "shown")
    return hits.total()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--import", dest="importer", required=True)
    parser.add_argument("--program", required=True)
    parser.add_argument("--examples", required=True)
    parser.add_argument("--cases", type=int, default=60)
    arguments = seeds.parse(parser)
    for name in ("importer", "program", "examples"):
        setattr(arguments, name, os.path.abspath(getattr(arguments, name)))
    hits = 0
    for case in range(arguments.cases):
        with tempfile.TemporaryDirectory() as folder:
            try:
                hits += try_case(random.Random(f"{arguments.seed}/{case}"), arguments, folder)
            except AssertionError as problem:
                print(f"case {case}: {problem}")
                return 1
    print(f"{arguments.cases} cases agree, with {hits} hits (seed {arguments.seed})")
    return 0 if hits > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
