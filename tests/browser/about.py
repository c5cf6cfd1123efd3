"""What a report says about itself: where its numbers come from, what was left out, and how its measures are computed."""

import os
import re

import harness


class About(harness.PageTest):
    def facts(self):
        return self.page.run("""return Object.fromEntries([...document.querySelectorAll('dl.facts > div')].map(
            fact => [fact.querySelector('dt').textContent.trim(), fact.querySelector('dd').textContent.trim()]))""")

    def test_names_the_command_and_gives_it_away(self):
        self.page.open("triples", "#about")
        command = self.page.texts("pre.command")[0]
        self.assertRegex(command, r"^ngrex-report triples\.txt -o triples\.html --measures logDice,G2 -s triples\.statistics ")
        self.page.click(next(button for button in self.page.all("button") if button.text == "Copy the command"))
        self.page.until(lambda: "Copied" in self.page.text(), "the copy")
        self.assertEqual(self.page.clipboard(), command)

    def test_knows_the_corpus_by_the_statistics(self):
        with open(os.path.join(harness.BUILD, "reports", "weather.statistics"), encoding="utf-8") as file:
            overall = file.read().split("Overall")[1]
        words, sentences, pairs = (re.search(rf"# of {what}: (\d+)", overall).group(1) for what in ("words", "sentences", "2-grams extracted"))
        self.page.open("weather", "#about")
        facts = self.facts()
        self.assertEqual([facts["Files"], facts["Words"], facts["Sentences"]], ["1", words, sentences])
        self.assertIn(pairs, facts.values())

    def test_says_when_the_corpus_was_not_told(self):
        self.page.open("many", "#about")
        self.assertNotIn("Sentences", self.facts())
        self.assertIn("was not told to the program (option -s)", self.page.text())

    def test_says_what_was_left_out(self):
        self.page.open("triples", "#about")
        with open(os.path.join(harness.BUILD, "reports", "triples.txt"), encoding="utf-8") as file:
            every = len(file.read().strip().split("\n\n"))
        facts = self.facts()
        self.assertEqual(self.page.texts("dd li"), ["frequency>=2", "with capital and small letters taken for the same"])
        self.assertEqual(facts["Order"], "logDice, descending")
        self.assertEqual(int(facts["N-grams in this report"]), 12)
        self.assertEqual(int(facts["N-grams in the datafile"]), every)
        met = int(facts["N-grams that meet both"])
        self.assertIn(f"Left out: {every - met} that are rarer or do not meet the conditions, and {met - 12} that come after the first 12.", self.page.text())
        self.page.open("weather", "#about")
        self.assertIn("Nothing was left out.", self.page.text())

    def test_explains_its_measures(self):
        self.page.open("weather", "#about")
        self.assertEqual(self.page.texts("dl.measures dt"), ["logDice", "G²", "MI", "t", "odds ratio"])
        self.assertEqual(len(self.page.texts("dl.measures .formula")), 5)
        self.assertIn("log2(f / E)", self.page.texts("dl.measures .formula"))


if __name__ == "__main__":
    harness.main()
