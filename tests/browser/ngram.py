"""The view of one N-gram: its tree, its contingency table, its measures, its sentences, and what can be copied of it."""

import os
import re

import harness
import tables

MEASURES = ["logDice", "G2", "MI", "t", "odds_ratio"]
ORDER = ["--sort", "logDice"]  # what a report has without another wish


def treebank(path):
    """The sentences of a file in CoNLL-U by their id: text and words as (form, lemma, head, relation)."""
    sentences = {}
    with open(path, encoding="utf-8") as file:
        for part in file.read().strip().split("\n\n"):
            comments = dict(re.findall(r"^# (\w+) = (.*)$", part, re.M))
            rows = [line.split("\t") for line in part.split("\n") if not line.startswith("#")]
            sentences[comments["sent_id"]] = (comments["text"], [(row[1], row[2], int(row[6]), row[7]) for row in rows])
    return sentences


class APair(harness.PageTest):
    @classmethod
    def setUpClass(cls):
        columns = "pattern,lemma,relation,parent,frequency,marginal,total," + ",".join(MEASURES)
        cls.rows = tables.rows("weather", columns, "--cells", *ORDER)

    def some(self):
        """Numbers of rows: the best, one with a cell of 0, those of "heavy rain" and "take place", and the last."""
        patterns = [row["pattern"] for row in self.rows]
        return sorted({1, 1 + next(i for i, row in enumerate(self.rows) if row["cell1"] == "0"), 1 + patterns.index("heavy <Atr rain"),
                       1 + patterns.index("take Obj> place"), len(self.rows)})

    def test_has_its_pattern_as_heading_and_title(self):
        for number in self.some():
            self.page.open("weather", f"#ngram={number}")
            pattern = self.rows[number - 1]["pattern"]
            self.assertEqual(self.page.texts("h1"), [pattern])
            self.assertTrue(self.page.driver.title.startswith(pattern), self.page.driver.title)

    def test_has_the_counts_of_ngrex_table_and_those_to_be_expected(self):
        for number in self.some():
            self.page.open("weather", f"#ngram={number}")
            observed = tables.cells(self.rows[number - 1])
            expected = tables.expected(observed)
            # With both words, with the first only, with the second only, with neither.
            shown = self.page.texts("table.square td:not(.cell-margin) .cell-observed")
            self.assertEqual([tables.number(text) for text in shown], [observed[i] for i in (3, 2, 1, 0)])
            shown = self.page.texts("table.square .cell-expected")
            for text, i in zip(shown, (3, 2, 1, 0), strict=True):
                self.assertTrue(tables.same(text.removeprefix("expected "), expected[i]), (number, text, expected))
            margins = [tables.number(text) for text in self.page.texts("table.square .cell-margin")]
            first, second, total = observed[3] + observed[2], observed[3] + observed[1], sum(observed)
            self.assertEqual(margins, [first, total - first, second, total - second, total])

    def test_has_every_measure_with_its_value_and_a_sentence(self):
        for number in self.some():
            self.page.open("weather", f"#ngram={number}")
            values = self.page.texts(".ngram-measures dd.number")
            readings = self.page.texts(".ngram-measures dd.soft")
            for name, shown, reading in zip(MEASURES, values, readings, strict=True):
                exact = tables.value(self.rows[number - 1][name])
                self.assertTrue(tables.same(shown, exact, 6), (number, name, shown, exact))
                self.assertGreater(len(reading), 20)

    def test_is_drawn_as_a_tree_that_can_be_read_as_text(self):
        self.page.open("weather", f"#ngram={1 + [row['pattern'] for row in self.rows].index('heavy <Atr rain')}")
        drawing = self.page.one(".ngram-tree svg[role=img]")
        self.assertEqual(sorted(self.page.texts(".ngram-tree svg text")), ["Atr", "heavy", "rain"])
        self.assertEqual(self.page.description(drawing), "heavy depends on rain as Atr; rain is at the top.")

    def test_leads_to_its_neighbours_and_to_the_profiles_of_its_words(self):
        self.page.open("weather", "#ngram=2")
        self.page.click(self.page.one("a[rel=next]"))
        self.page.until(lambda: self.page.address() == "#ngram=3", "the next one")
        self.page.click(self.page.one("a[rel=previous]"))
        self.page.until(lambda: self.page.address() == "#ngram=2", "the one before")
        self.page.click(self.page.all("h1 a")[0])
        self.page.until(lambda: self.page.address() == "#lemma=" + self.rows[1]["lemma1"], "a profile")

    def test_can_be_cited(self):
        number = self.some()[1]
        row = self.rows[number - 1]
        self.page.open("weather", f"#ngram={number}")
        self.page.click(self.page.one(".ngram-figures .copy button"))
        self.page.until(lambda: self.page.texts(".ngram-figures [role=status]") == ["Copied"], "the word that it is copied")
        citation = self.page.clipboard()
        head, figures = citation.split(": frequency ")
        self.assertEqual(head, row["pattern"])
        figures, source = re.fullmatch(r"(.*) \((.*)\)", figures).groups()
        self.assertRegex(source, rf"^weather\.txt, {row['total']} N-grams; ngrex-report \d+\.\d+\.\d+$")
        frequency, *measures = figures.split(", ")
        self.assertEqual(frequency, row["frequency"])
        for name, measure in zip(MEASURES, measures, strict=True):
            self.assertTrue(tables.same(measure.split(" ")[-1], tables.value(row[name])), (name, measure))

    def test_with_a_number_that_is_not_there_is_not_found(self):
        for number in ("0", str(len(self.rows) + 1), "-1", "1.5", "x", "", "1e999"):
            self.page.open("weather", f"#ngram={number}")
            self.assertEqual(self.page.texts("h1"), ["No such N-gram"])


class Sentences(harness.PageTest):
    """Those of the sample corpus, against the treebank itself."""

    @classmethod
    def setUpClass(cls):
        cls.treebank = treebank(os.path.join(SOURCE, "examples", "weather.conllu"))
        cls.rows = tables.rows("weather", "pattern,lemma,relation,parent,frequency", *ORDER)

    def test_have_the_pair_in_them_and_its_words_marked(self):
        for number in range(1, 40, 4):
            row = self.rows[number - 1]
            self.page.open("weather", f"#ngram={number}")
            examples = self.page.all(".example")
            self.assertEqual(len(examples), min(3, int(row["frequency"])), row)
            cited = [text.split(",")[0] for text in self.page.texts(".example cite")]
            self.assertEqual(len(set(cited)), len(examples), cited)
            for example, sentence in zip(examples, cited):
                text, words = self.treebank[sentence]
                shown = self.page.run("return arguments[0].querySelector('.sentence').textContent", example)
                self.assertEqual(shown, text)
                marked = self.page.run("return [...arguments[0].querySelectorAll('.sentence mark')].map(e => e.textContent)", example)
                self.assertIn(marked, self.occurrences(row, words), sentence)

    @staticmethod
    def occurrences(row, words):
        """The forms of the pair wherever it stands in the sentence."""
        first, second = row["lemma1"], row["lemma2"]
        dependent = 0 if row["parent1"] == "2" else 1
        found = []
        for i, (form, lemma, head, relation) in enumerate(words):
            pair = sorted((i, head - 1))
            if head and relation == row[f"relation{dependent + 1}"] and pair.index(i) == dependent and \
                    [words[k][1] for k in pair] == [first, second]:
                found.append([words[k][0] for k in pair])
        return found

    def test_are_drawn_with_an_arc_for_each_dependency(self):
        number = 1 + [row["pattern"] for row in self.rows].index("heavy <Atr rain")
        self.page.open("weather", f"#ngram={number}")
        sentence = self.page.texts(".example cite")[0].split(",")[0]
        _, words = self.treebank[sentence]
        drawing = self.page.one(".example svg[role=img]")
        self.assertRegex(self.page.description(drawing), "heavy.*rain")
        shown = self.page.run("return [...arguments[0].querySelectorAll('.arcs-word')].map(e => e.textContent)", drawing)
        self.assertEqual(shown, [form for form, *_ in words])
        labels = self.page.run("return [...arguments[0].querySelectorAll('.arc-label')].map(e => e.textContent)", drawing)
        self.assertEqual(sorted(labels), sorted(relation for *_, relation in words))
        members = self.page.run("return [...arguments[0].querySelectorAll('.arcs-word.member')].map(e => e.textContent.toLowerCase())",
                                drawing)
        self.assertEqual([member[:4] for member in members], ["heav", "rain"])

    def test_can_be_copied_with_their_place(self):
        self.page.open("weather", "#ngram=1")
        self.page.click(self.page.all(".example .copy button")[0])
        self.page.until(lambda: self.page.texts(".example [role=status]")[0] == "Copied", "the word that it is copied")
        sentence = self.page.texts(".example cite")[0]
        self.assertEqual(self.page.clipboard(), f"“{self.treebank[sentence.split(',')[0]][0]}” ({sentence})")

    def test_are_not_there_and_the_page_says_how_to_get_them(self):
        self.page.open("many", "#ngram=1")
        self.assertIn("no sentences in this report", self.page.text())
        self.assertEqual(self.page.all(".example"), [])


SOURCE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")

if __name__ == "__main__":
    harness.main()
