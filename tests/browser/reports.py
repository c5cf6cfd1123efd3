"""Makes the reports that the tests of the page open, each with the file of N-grams that it was made of, by the real programs.

usage: reports.py BUILD_FOLDER SOURCE_FOLDER

    weather    pairs of the sample corpus, with sentences, statistics and all measures of pairs
    triples    the same at N = 3;  fours  at N = 4
    scripts    sentences in Arabic, Hebrew, Chinese and Greek;  phrases  the same at N = 3
    many       some thousand pairs of a random corpus, always the same one, without sentences and statistics
    dense      more pairs than the picture has dots for
    hostile    lemmas and tags that try to become something else than text;  sentences  forms and names of sentences that do
    empty      no N-gram, as all are too rare;  one  a single one, in which no measure is finite
"""

import os
import random
import shutil
import subprocess
import sys

MEASURES_OF_PAIRS = "logDice,G2,MI,t,odds_ratio"

# Lemmas of a file of N-grams. TAB and line feed cannot stand in one.
HOSTILE = [
    b"</script><img src=x onerror=document.title='broken'>",
    b"<!--<script>",
    b"]]>",
    b"\"'`&amp;&lt;",
    b"${document.title='broken'}",
    b"\xe2\x80\xae\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d\xe2\x80\xac",  # a mark that turns the direction around, and one that ends that
    b"\xe2\x81\xa6isolated",  # an isolate that nothing ends
    b"a\x00b",
    b"caf\xe9",  # not UTF-8
    b"\xf0\x9f",  # the first half of a character
    b"\xe2\x80\xa8line\xe2\x80\xa9",
    b"x" * 60_000,
    b"__proto__",
    b"constructor",
    b"toString",
    b"hasOwnProperty",
    b" ",
    b"",
    b"a&sort=G2#about",
    b"100%25+%2B",
    b"\x1b[31mred",
    b"=HYPERLINK(1)",
]

# Words as form, lemma, tag, parent and function; some sentences twice, so that pairs recur.
SENTENCES = {
    "ar": [[("هطل", "هَطَل", "V", 0, "Pred"), ("مطر", "مَطَر", "N", 1, "Sb"), ("غزير", "غَزِير", "A", 2, "Atr")],
           [("شرب", "شَرِب", "V", 0, "Pred"), ("الولد", "وَلَد", "N", 1, "Sb"), ("الشاي", "شَاي", "N", 1, "Obj")]],
    "he": [[("ירד", "ירד", "V", 0, "Pred"), ("גשם", "גשם", "N", 1, "Sb"), ("כבד", "כבד", "A", 2, "Atr")]],
    "zh": [[("下", "下", "V", 0, "Pred"), ("大", "大", "A", 3, "Atr"), ("雨", "雨", "N", 1, "Obj")]],
    "el": [[("μῆνιν", "μῆνις", "N", 2, "Obj"), ("ἄειδε", "ἀείδω", "V", 0, "Pred"), ("θεὰ", "θεά", "N", 2, "Sb")]],
}


def run(*command, **settings):
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, **settings)


def datafile(sentences):
    return "".join("".join(f"{i}\t" + "\t".join(map(str, word)) + "\n" for i, word in enumerate(words, 1)) + "\n"
                   for words in sentences)


def random_sentences(seed, number):
    """Sentences over a vocabulary in which the word of rank r is about 1/r as frequent as the first."""
    r = random.Random(seed)
    ranks = range(1, 400)
    sentences = []
    for _ in range(number):
        length = r.randint(3, 9)
        words = []
        for i, rank in enumerate(r.choices(ranks, [1 / rank for rank in ranks], k=length), 1):
            parent = r.choice([0 if i == 1 else i - 1, r.randint(1, length)]) if i > 1 else 0
            words.append((f"w{rank}", f"w{rank}", "NVA"[rank % 3], parent if parent != i else 1,
                          r.choice(["Sb", "Obj", "Atr", "Adv"])))
        sentences.append(words)
    return sentences


def hostile_pairs():
    """A file of N-grams as ngrex writes it: each hostile lemma as attribute of the one after it, and of "rain"."""
    blocks = []
    total = 1000
    for i, lemma in enumerate(HOSTILE):
        for head, both in ((HOSTILE[(i + 1) % len(HOSTILE)], 3), (b"rain", 5)):
            cells = b"\t".join(b"%d" % cell for cell in (total - both - 7, 4, 3, both))
            blocks.append(b"1\t%b\t<b>\t2\tAtr\n2\t%b\t&amp;\t0\tHead\n%b\n-nan\tinf\t1\t0.5\t0.5\t0.5\n\n" % (lemma, head, cells))
    return b"".join(blocks) + b"\n"


def hostile_treebank():
    """Sentences in CoNLL-U with pairs of "heavy" and "rain", whose forms, texts and names are markup; the last is a long one."""
    sentences = []
    for i, form in enumerate(("</script><img/src=x/onerror=document.title='broken'>", "&lt;b&gt;", "\u202eנייר\u202c", "\u2067גשם",
                              "<!--", "x" * 3000, "rain")):
        length = 3 if form != "rain" else 150
        rows = [f"1\t{form}\theavy\tX\tA\t_\t2\tAtr\t_\t_", "2\t<i>rain</i>\train\tX\tN\t_\t3\tSb\t_\t_",
                "3\tfell\tfall\tX\tV\t_\t0\tPred\t_\t_"]
        rows += [f"{k}\tword{k}\tword{k}\tX\tN\t_\t{3 if k % 2 else k - 1}\tAdv\t_\t_" for k in range(4, length + 1)]
        sentences.append(f"# sent_id = <u>{i}</u>\"'&amp;\n# text = {form} <i>rain</i> fell\n" + "\n".join(rows) + "\n\n")
    return "".join(sentences)


def write(name, content):
    with open(name, "wb") as file:
        file.write(content if isinstance(content, bytes) else content.encode())


class Maker:
    def __init__(self, build, source):
        self.build = build
        self.source = source

    def tool(self, name, *arguments):
        run(os.path.join(self.build, name), *arguments, stdin=subprocess.DEVNULL)

    def report(self, name, *options):
        self.tool("ngrex-report", name + ".txt", "-o", name + ".html", *options)

    def make(self):
        self.tool("ngrex-import", "-q", os.path.join(self.source, "examples", "weather.conllu"), "-o", "weather.dat", "--list",
                  "weather.list", "--tag", "xpos", "--sentences", "weather.sentences")
        corpus = ["-i", "weather.list", "-m", "*----"]
        seen = [*corpus, "--examples", "3", "--sentences", "weather.sentences"]
        for name, n, measures, options in (("weather", "2", MEASURES_OF_PAIRS, []), ("triples", "3", "logDice,G2", ["--where", "frequency>=2", "--ignore-case", "--top", "12"]),
                                           ("fours", "4", "logDice,G2", [])):
            self.tool("ngrex", *corpus, "-n", n, "-o", name + ".txt", "-s", name + ".statistics")
            self.report(name, "--measures", measures, "-s", name + ".statistics", *seen, *options)

        for name, sentences, options in (
                ("scripts", [words for several in SENTENCES.values() for words in several] * 2, ["--examples", "2"]),
                ("many", random_sentences(10, 2500), []), ("dense", random_sentences(11, 14000), [])):
            write(name + ".dat", datafile(sentences))
            write(name + ".list", name + ".dat\n")
            listed = ["-i", name + ".list", "-m", "*"]
            self.tool("ngrex", *listed, "-n", "2", "-o", name + ".txt")
            self.report(name, "--measures", "logDice,G2,MI", *(listed + options if options else []))
        self.tool("ngrex", "-i", "scripts.list", "-m", "*", "-n", "3", "-o", "phrases.txt")
        self.report("phrases")

        write("hostile.txt", hostile_pairs())
        self.report("hostile", "--measures", "logDice,G2")
        write("sentences.conllu", hostile_treebank())
        self.tool("ngrex-import", "-q", "sentences.conllu", "-o", "sentences.dat", "--list", "sentences.list", "--tag", "xpos",
                  "--sentences", "sentences.side")
        corpus = ["-i", "sentences.list", "-m", "*"]
        self.tool("ngrex", *corpus, "-n", "2", "-o", "sentences.txt")
        self.report("sentences", "--measures", "logDice", *corpus, "--examples", "10", "--sentences", "sentences.side")
        self.tool("ngrex-report", "weather.txt", "-o", "empty.html", "--min-frequency", "1000")
        write("one.txt", "1\ta\tA\t2\tAtr\n2\tb\tN\t0\tHead\n0\t0\t0\t1\n-nan\t-nan\tinf\t-nan\t0\t-nan\n\n\n")
        self.report("one", "--measures", "G2,MI,odds_ratio,npmi")


def main():
    build, source = map(os.path.abspath, sys.argv[1:])
    folder = os.path.join(build, "reports")
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    os.chdir(folder)
    Maker(build, source).make()
    print("\n".join(sorted(name for name in os.listdir(".") if name.endswith(".html"))))
    return 0


if __name__ == "__main__":
    sys.exit(main())
