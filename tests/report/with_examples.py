"""Property test: the sentences of a report are those in which its N-grams were counted.

usage: with_examples.py --program NGREX --report NGREX-REPORT --import NGREX-IMPORT [--seed S] [--cases K]

Runs ngrex over random corpora with random command lines (those of the differential test) from a printed seed, and makes reports
with the same list, prefix, mask and rules. With all examples a row must have as many hits as its frequency says, each of them
once, and in each the lemmas, the relations and the tree of the row; with a few examples the row has a few of these. At first a
treebank with comments is imported, whose sentences must be cited as they were written.
"""

import argparse
import os
import sys
import tempfile

from same_as_table import Disagreement, differential, expect, report_file, run
import seeds

HOSTILE = ["</script><img>", "<!--", "\"'\\", "\u202e\u2066\ufeff", "\x01\x7f", "\u05d0", "\u6f22", "x" * 60_000, "e\u0301", "__proto__"]
FUNCTIONS = {"Sb", "Obj", "Atr", "AuxP", "Pred"}  # relations that are in the row what they are in the sentence
TREEBANK = "".join(f"# sent_id = s{i}\n# text = It  rains {i} times </script>.\n1\tIt\tit\tPRON\t_\t_\t2\tnsubj\t_\t_\n"
                   f"2\trains\train\tVERB\t_\t_\t0\troot\t_\t_\n\n" for i in range(5))


class Examples:
    """The examples of a report: `hits` by row, each a sentence and positions, and `sentences` with their words."""

    def __init__(self, page):
        columns, n = page.examples, page.meta["n"]
        texts = report_file.texts_of(columns, "texts")
        expect(texts[0] == "", "the first text", texts[0])
        self.sentences, begin = [], 0
        for s, end in enumerate(columns["sentence.words"]):
            told = {name: texts[columns["sentence." + name][s]] for name in ("file", "id", "text", "source")}
            told.update({name: columns["sentence." + name][s] for name in ("line", "sourceLine")})
            told["words"] = [{**{name: texts[columns["word." + name][w]] for name in ("form", "lemma", "tag", "relation")},
                              "parent": columns["word.parent"][w]} for w in range(begin, end)]
            self.sentences.append(told)
            begin = end
        expect(begin == len(columns["word.form"]), "words of no sentence")
        self.hits, begin = [], 0
        expect(len(columns["hits.ends"]) == page.meta["rows"], "hits of other rows")
        for end in columns["hits.ends"]:
            self.hits.append([(columns["hit.sentence"][h], tuple(columns[f"hit.word{k}"][h] for k in range(1, n + 1)))
                              for h in range(begin, end)])
            begin = end
        used = {sentence for hits in self.hits for sentence, _ in hits}
        expect(used == set(range(len(self.sentences))), "sentences without a hit")
        expect(page.meta["examples"]["sentences"] == len(self.sentences), page.meta["examples"])
        expect(page.meta["examples"]["ngrams"] == page.meta["rows"], page.meta["examples"])


def check_hit(row, words, positions):
    """Whether an N-gram stands in a sentence at these positions."""
    expect(list(positions) == sorted(set(positions)) and positions[0] > 0, "positions", positions)
    for k, position in enumerate(positions, 1):
        word = words[position - 1]
        expect(word["lemma"] == row[f"lemma{k}"], "lemma", word, row)
        parent = row[f"parent{k}"]
        expect(parent == 0 or word["parent"] == positions[parent - 1], "parent", word, row)
        if word["relation"] in FUNCTIONS and parent != 0:
            expect(word["relation"] == row[f"relation{k}"], "relation", word, row)


def place_of(examples, hit):
    sentence = examples.sentences[hit[0]]
    return sentence["file"], sentence["line"], hit[1]


def check(report, folder, path, corpus, few):
    """Gives the number of hits and N."""
    page = report_file.Report(run(report, path, *corpus, "--examples", "all", cwd=folder))
    rows = page.rows()
    if not rows:
        return 0, page.meta["n"]
    everything = Examples(page)
    for row, hits in zip(rows, everything.hits):
        expect(len(hits) == row[f"cell{2 ** page.meta['n'] - 1}"], "hits", len(hits), row)
        # From five words on some combinations are counted more than once.
        expect(page.meta["n"] > 4 or len(set(hits)) == len(hits), "a hit stands twice", row)
        for sentence, positions in hits:
            check_hit(row, everything.sentences[sentence]["words"], positions)
    some = Examples(report_file.Report(run(report, path, *corpus, "--examples", str(few), cwd=folder)))
    for hits, chosen in zip(everything.hits, some.hits):
        expect(len(chosen) == min(few, len(hits)), "chosen hits", len(chosen), len(hits))
        places = {place_of(everything, hit) for hit in hits}
        expect({place_of(some, hit) for hit in chosen} <= places, "a hit that is none of all")
    return sum(map(len, everything.hits)), page.meta["n"]


def check_citations(importer, program, report, folder):
    with open(os.path.join(folder, "bank.conllu"), "w", encoding="utf-8") as file:
        file.write(TREEBANK)
    run(importer, "-q", "bank.conllu", "-o", "bank.dat", "--list", "list", "--sentences", "sentences", cwd=folder)
    run(program, "-i", "list", "-n", "2", "-o", "pairs", cwd=folder)
    for cited in (False, True):
        options = ["--sentences", "sentences"] if cited else []
        page = report_file.Report(run(report, "pairs", "-i", "list", "--examples", "all", *options, cwd=folder))
        expect(page.meta["examples"]["cited"] == cited, "cited", page.meta["examples"])
        for i, sentence in enumerate(Examples(page).sentences):
            told = {name: sentence[name] for name in ("file", "line", "id", "text", "source", "sourceLine")}
            expected = {"file": "bank.dat", "line": 3 * i + 1, "id": "", "text": "", "source": "", "sourceLine": 0}
            if cited:
                expected.update({"id": f"s{i}", "text": f"It  rains {i} times </script>.", "source": "bank.conllu",
                                 "sourceLine": 5 * i + 3})
            expect(told == expected, "citation", told, expected)


def check_hostile(program, report, folder):
    """Sentences of texts that no treebank should have are in the report as they are in the datafile."""
    with open(os.path.join(folder, "hostile"), "wb") as file:
        for word in HOSTILE:
            file.write(f"1\t{word}\t{word}\t{word[:100]}\t2\tAtr\n2\tw\tw\tN\t0\tPred\n\n".encode())
        file.write(b"1\t\xff\tw\xc3\tA\xfe\t2\tAtr\n2\tw\tw\tN\t0\tPred\n\n")
    with open(os.path.join(folder, "list"), "w", encoding="utf-8") as file:
        file.write("hostile\n")
    run(program, "-i", "list", "-n", "2", "-o", "pairs", cwd=folder)
    page = report_file.Report(run(report, "pairs", "-i", "list", cwd=folder))
    words = [sentence["words"][0] for sentence in Examples(page).sentences]
    expect([word["form"] for word in words] == HOSTILE + ["\ufffd"], "forms", [word["form"][:20] for word in words])
    expect([word["tag"] for word in words] == [word[:100] for word in HOSTILE] + ["A\ufffd"], "tags", words)
    expect(page.tags.count("script") == 4 and page.tags.count("img") == 0, page.tags)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--report", required=True)
    parser.add_argument("--import", dest="importer", required=True)
    parser.add_argument("--cases", type=int, default=120)
    arguments = seeds.parse(parser)
    program, report, importer = map(os.path.abspath, (arguments.program, arguments.report, arguments.importer))
    with tempfile.TemporaryDirectory() as folder:
        check_citations(importer, program, report, folder)
        check_hostile(program, report, folder)
    hits, sizes = 0, set()
    for number in range(arguments.cases):
        case = differential.Generator(arguments.seed, number).make()
        words = case.arguments
        options = dict(zip(words, words[1:]))
        given = [word for word in words if word[:2] in ("-i", "-d", "-m", "-f", "-o", "-n") and word != "-fs"]
        # What is given twice, in an odd way, or from a pipe, is a matter of another test.
        if len(set(given)) < len(given) or any(len(word) > 2 for word in given) or options.get("-i") != "list" or "-o" not in options:
            continue
        # With a context window ngrex passes over the last sentences of a datafile.
        if any(word.startswith(("-cs", "-cw")) for word in words):
            continue
        # Sentences are read twice; and of a lemma ngrex writes what is before a NUL, so that two N-grams look like one.
        if b"/dev/" in case.files["list"] or any(content is not None and b"\0" in content for content in case.files.values()):
            continue
        corpus = [word for option in ("-i", "-d", "-m", "-f") if option in options for word in (option, options[option])]
        with tempfile.TemporaryDirectory() as folder:
            differential.write_folder(folder, case.files)
            if differential.run_program(program, case, folder).status != 0:
                continue
            path = os.path.join(folder, options["-o"])
            if words.count(options["-o"]) > 1 or not os.path.isfile(path) or not 1 < os.path.getsize(path) < 300_000:
                continue
            try:
                found, n = check(report, folder, options["-o"], corpus, number % 4 + 1)
            except (Disagreement, AssertionError) as disagreement:
                print(f"case {number}: {words}")
                print(*disagreement.args, sep="\n")
                return 1
            hits += found
            sizes.add(n)
    print(f"{hits} hits of N in {sorted(sizes)} (seed {arguments.seed})")
    return 0 if hits > arguments.cases and len(sizes) > 3 else 1


if __name__ == "__main__":
    sys.exit(main())
