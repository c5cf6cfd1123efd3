"""Property test: ngrex-examples shows as many sentences for an N-gram as ngrex counted.

usage: same_count.py --program NGREX --examples NGREX-EXAMPLES --table NGREX-TABLE [--seed S] [--cases K] [--first C]

Runs ngrex over random corpora (those of the differential test, with lemmas besides that look like parts of a pattern) from a
printed seed. With --examples all every row of the output datafile must have as many hits as its frequency says, at each hit there
must be the words of the row, at its line the sentence, and nothing may be warned of but skipped sentences. What ngrex-table prints as a pattern must find the same N-grams under any tags. A choice of K
must be one of these hits, have as many sentences as there are, and be the same for any order of the list; --first must be the
first hits.
"""

import argparse
import collections
import json
import os
import random
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "differential"))
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "table"))
import differential  # noqa: E402
import ngrex_reference  # noqa: E402
import read_back  # noqa: E402
import seeds  # noqa: E402

LARGEST = 2_000_000  # bytes of an output datafile for which all is tried in reasonable time
MOST_ROWS = 4000
SPECIAL = [b"<", b">", b"<Atr", b"Obj>", b"Sb:1>", b"<Sb:3", b"a/Sb", b"and/Obj", b"/", b"*", b"*/Atr", b"<<", b"\\*"]


class Generator(differential.Generator):
    def _lemmas(self):
        lemmas = super()._lemmas()
        if self.chance(0.3):
            lemmas += self.r.sample(SPECIAL, self.r.randint(1, 4))
        return lemmas


class Disagreement(Exception):
    pass


def expect(condition, *what):
    if not condition:
        raise Disagreement(*what)


def run(command, folder):
    done = subprocess.run(command, cwd=folder, capture_output=True, check=False, timeout=300, stdin=subprocess.DEVNULL)
    return done.returncode, done.stdout, done.stderr


def hits_of(output):
    """By number of the N-gram, from 0, its hits: file, line and positions; and their sentences."""
    lines = output.split(b"\n")
    expect(lines.pop() == b"", "the last line has no end")
    header = lines[0].split(b"\t")
    columns = [header.index(name) for name in (b"file", b"line")]
    columns += [i for i, name in enumerate(header) if name.startswith(b"word")]
    hits = collections.defaultdict(list)
    for line in lines[1:]:
        fields = line.split(b"\t")
        expect(len(fields) == len(header), "columns", header, fields)
        hits[int(fields[0]) - 1].append((tuple(fields[c] for c in columns), fields[-1]))
    return hits


class Corpus:
    """A list with all that counts were made with."""

    def __init__(self, settings, folder):
        self.folder = folder
        self.mask = settings.mask
        self.options = [b"-i", settings.input_file]
        if settings.dir is not None:
            self.options += [b"-d", settings.dir]
        if settings.mask is not None:
            self.options += [b"-m", settings.mask]
        if settings.morphologic_filter_file is not None:
            self.options += [b"-f", settings.morphologic_filter_file]
        radius = b"%d" % settings.window_size
        by_words = settings.window_mode == ngrex_reference.WORDS
        self.counting = [*self.options, b"-cw" if by_words else b"-cs", radius]
        self.options += [b"--context-words" if by_words else b"--context-sentences", radius]

    def examples(self, program, *options, status=0):
        form = [] if "--format" in options else ["--format", "tsv"]
        done = run([program, *self.options, *form, *options], self.folder)
        expect(done[0] == status, options, *done)
        return done[1], done[2]


def told_of(errors):
    """Messages but for those about skipped sentences and rules without a mask."""
    usual = (b"Skipping current sentence", b"further sentences are skipped", b"without a tag mask")
    return [line for line in errors.splitlines() if not any(part in line for part in usual)]


def check_all(program, corpus, blocks):
    output, errors = corpus.examples(program, "--examples", "all", "plain")
    hits = hits_of(output)
    for number, block in enumerate(blocks):
        expect(len(hits[number]) == block["cells"][-1], "frequency", block["members"], block["cells"][-1], hits[number])
    expect(not told_of(errors), "told", errors)
    small, errors = corpus.examples(program, "--examples", "all", "--memory", "1K", "plain")
    expect(small == output, "--memory changes the output")
    return hits


def text_of(words):
    return words.decode(errors="byte by byte")


def lines_of(path):
    """The lines of a datafile as fields; nothing when words do not stand on one line each."""
    with open(path, "rb") as file:
        lines = file.read().split(b"\n")
    if any(line and (len(line.split()) != 6 or line != line.strip()) for line in lines):
        return None
    return [line.split() for line in lines]


def check_members(program, corpus, blocks):
    """Every hit has the lemmas, tags, parents and relations of its row."""
    output, _ = corpus.examples(program, "--examples", "all", "--format", "jsonl", "plain")
    datafiles = {}
    for line in output.splitlines():
        example = json.loads(line)
        name = example["file"]
        if name not in datafiles:
            datafiles[name] = lines_of(os.path.join(corpus.folder, name))
        if datafiles[name] is not None:
            first, count = example["line"] - 1, len(example["words"])
            forms = [text_of(fields[1]) for fields in datafiles[name][first:first + count]]
            expect(forms == [word["form"] for word in example["words"]], "line", name, example["line"], forms)
        positions = example["positions"]
        members = []
        for position in positions:
            word = example["words"][position - 1]
            parent = positions.index(word["parent"]) + 1 if word["parent"] in positions else 0
            known = word["relation"].encode() in ngrex_reference.RELATIONS
            relation = "Head" if parent == 0 else word["relation"] if known else "Undef"
            # What is behind a NUL of a tag is not kept.
            tag = ngrex_reference.mask_tag(corpus.mask, word["tag"].encode()).split(b"\0")[0]
            members.append([word["lemma"], text_of(tag), str(parent), relation])
        expected = [list(map(text_of, member[1:])) for member in blocks[example["rank"] - 1]["members"]]
        expect(members == expected, "members", example["file"], example["line"], positions, members, expected)


def check_choice(program, corpus, blocks, hits, r):
    most = r.choice([1, 2, 3, 10, 100])
    first = hits_of(corpus.examples(program, "--examples", str(most), "--first", "plain")[0])
    for number in range(len(blocks)):
        expect(first[number] == hits[number][:most], "--first", blocks[number]["members"], first[number])

    output, _ = corpus.examples(program, "--examples", str(most), "plain")
    chosen = hits_of(output)
    for number, block in enumerate(blocks):
        expect(len(chosen[number]) == min(most, len(hits[number])), "size of the choice", block["members"])
        expect(not collections.Counter(chosen[number]) - collections.Counter(hits[number]), "chosen", block["members"])
        texts = len({text for _, text in hits[number]})
        expect(len({text for _, text in chosen[number]}) == min(most, texts), "sentences are chosen twice",
               block["members"], chosen[number])
        shown = [6 <= len(text.split(b" ")) <= 25 for _, text in chosen[number]][:texts]
        expect(shown == sorted(shown, reverse=True), "readable sentences first", block["members"], chosen[number])

    path = os.path.join(corpus.folder, os.fsdecode(corpus.options[1]))
    with open(path, "rb") as file:
        lines = file.read().split(b"\n")
    r.shuffle(lines)
    with open(path, "wb") as file:
        file.write(b"\n".join(lines))
    expect(corpus.examples(program, "--examples", str(most), "plain")[0] == output, "the order of the list matters")


def check_patterns(program, table, corpus, blocks, r):
    status, printed, errors = run([table, "--columns", "pattern", "plain"], corpus.folder)
    expect(status == 0, errors)
    patterns = printed.split(b"\n")[1:-1]
    expect(len(patterns) == len(blocks), "patterns", len(patterns), len(blocks))
    frequencies = collections.Counter()  # of patterns, over all tags
    for pattern, block in zip(patterns, blocks):
        frequencies[pattern] += block["cells"][-1]
    tried = r.sample(sorted(frequencies), min(10, len(frequencies)))
    if not tried:
        return 0
    options = [word for pattern in tried for word in (b"--pattern", pattern)]
    hits = hits_of(corpus.examples(program, "--examples", "all", *options)[0])
    for number, pattern in enumerate(tried):
        found = len(hits[number])
        plain = not any(c in pattern.replace(b"> ", b" ").replace(b" <", b" ") for c in b"*/<>")
        expect(found == frequencies[pattern] if plain else found >= frequencies[pattern], "pattern", pattern, found,
               frequencies[pattern])
    return len(tried)


def check(arguments, case, folder, r):
    settings = ngrex_reference.Settings()
    settings.parse([os.fsencode(word) for word in case.arguments])
    if not settings.correct() or settings.input_file in (b"", b"/dev/stdin") or case.stdin is not None:
        return 0, 0
    corpus = Corpus(settings, folder)
    status, _, _ = run([arguments.program, "-n", str(settings.n), "-o", "plain", *corpus.counting], folder)
    path = os.path.join(folder, "plain")
    if status != 0 or os.path.getsize(path) > LARGEST:
        return 0, 0
    # Only a regular file can be read again.
    entries = open(os.path.join(folder, os.fsdecode(settings.input_file)), "rb").read().split(b"\n")
    if any(entry and not os.path.isfile(os.path.join(os.fsencode(folder), (settings.dir or b"") + entry))
           for entry in entries):
        return 0, 0
    with open(path, "rb") as file:
        blocks = read_back.blocks_of(file.read())
    if len(blocks) > MOST_ROWS:
        return 0, 0
    if not blocks:
        corpus.examples(arguments.examples, "plain")
        return 1, 0
    hits = check_all(arguments.examples, corpus, blocks)
    check_members(arguments.examples, corpus, blocks)
    patterns = check_patterns(arguments.examples, arguments.table, corpus, blocks, r)
    check_choice(arguments.examples, corpus, blocks, hits, r)
    return len(blocks), patterns


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--examples", required=True)
    parser.add_argument("--table", required=True)
    parser.add_argument("--cases", type=int, default=200)
    parser.add_argument("--first", type=int, default=0)
    arguments = seeds.parse(parser)
    for name in ("program", "examples", "table"):
        setattr(arguments, name, os.path.abspath(getattr(arguments, name)))
    ngrams = patterns = 0
    for number in range(arguments.first, arguments.first + arguments.cases):
        case = Generator(arguments.seed, number).make()
        with tempfile.TemporaryDirectory() as folder:
            differential.write_folder(folder, case.files)
            try:
                of_case = check(arguments, case, folder, random.Random(f"{arguments.seed}/{number}/examples"))
            except Disagreement as disagreement:
                print(f"case {number} of seed {arguments.seed}: {case.arguments}")
                print(*disagreement.args, sep="\n")
                return 1
        ngrams += of_case[0]
        patterns += of_case[1]
    print(f"{ngrams} N-grams found as often as they were counted, {patterns} patterns (seed {arguments.seed})")
    return 0 if ngrams > arguments.cases and patterns > arguments.cases / 2 else 1


if __name__ == "__main__":
    sys.exit(main())
