"""N-grams of three and four words: profiles by the shape of the tree and the place of the word, and lists of their cells."""

import collections

import harness
import tables


class ProfilesByShape(harness.PageTest):
    def blocks_of(self, report, lemma, n):
        """By the place of the word, parents and relations: patterns and frequencies of the rows."""
        blocks = collections.defaultdict(list)
        for row in tables.rows(report, "pattern,lemma,parent,relation,frequency,logDice", *self.choice(report)):
            for k in range(1, n + 1):
                if row[f"lemma{k}"] == lemma:
                    shape = tuple((row[f"parent{j}"], row[f"relation{j}"]) for j in range(1, n + 1))
                    blocks[k, shape].append(row)
        return blocks

    @staticmethod
    def choice(report):
        return ["--sort", "logDice"] + (["--where", "frequency>=2", "--top", "12"] if report == "triples" else [])

    def assert_blocks(self, report, lemma, n):
        self.page.open(report, f"#lemma={lemma}&blocks=500&show=100")
        blocks = self.blocks_of(report, lemma, n)
        shown = self.page.run("""return [...document.querySelectorAll('.block')].map(block => [
            block.querySelector('svg desc').textContent, [...block.querySelectorAll('tbody tr')].map(
                line => Number(line.querySelector('a[href^="#ngram="]').hash.slice(7)))])""")
        every = tables.rows(report, "pattern", *self.choice(report))
        wanted = sorted(sorted(row["pattern"] for row in rows) for rows in blocks.values())
        self.assertEqual(sorted(sorted(every[number - 1]["pattern"] for number in numbers) for _, numbers in shown), wanted)
        self.assertGreater(len(wanted), 1)
        for description, numbers in shown:
            top = every[numbers[0] - 1]["pattern"]
            self.assertEqual(description.count("depends on"), n - 1, top)
            self.assertIn("is at the top", description)

    def test_of_three_words(self):
        self.assert_blocks("triples", "make", 3)

    def test_of_four_words(self):
        self.assert_blocks("fours", "the", 4)
        self.assert_blocks("fours", "rain", 4)

    def test_lead_to_the_n_grams_and_to_the_other_words(self):
        self.page.open("triples", "#lemma=make")
        link = self.page.all(".block a.lemma")[0]
        word = link.text
        self.page.click(link)
        self.page.until(lambda: self.page.texts("h1") == [word], "the profile of " + word)
        self.page.click(self.page.all('.block a[href^="#ngram="]')[0])
        self.page.until(lambda: self.page.all(".ngram-tree"), "an N-gram")


class Relations(harness.PageTest):
    def test_of_the_first_page_count_each_n_gram_once(self):
        wanted = collections.defaultdict(lambda: [0, 0])
        for row in tables.rows("fours", "parent,relation,frequency"):
            for relation in {row[f"relation{k}"] for k in range(1, 5) if row[f"parent{k}"] != "0"}:
                wanted[relation][0] += 1
                wanted[relation][1] += int(row["frequency"])
        self.page.open("fours")
        shown = self.page.run("""return [...document.querySelectorAll('section[aria-labelledby=relations] tbody tr')].map(
            line => [line.querySelector('a').textContent, ...[...line.querySelectorAll('td')].map(cell => cell.textContent)])""")
        self.assertEqual({name: [tables.number(rows), tables.number(sum)] for name, rows, sum in shown}, wanted)


class Cells(harness.PageTest):
    def assert_cells(self, report, n):
        row = tables.rows(report, "lemma,frequency,logDice,G2", "--cells", *ProfilesByShape.choice(report))[0]
        self.page.open(report, "#ngram=1")
        observed = tables.cells(row)
        expected = tables.expected(observed)
        lines = self.page.run("""return [...document.querySelectorAll('table.cells tbody tr')].map(
            line => [...line.cells].map(cell => cell.textContent.trim()))""")
        self.assertEqual(len(lines), 2 ** n)
        found = set()
        for pattern, count, chance in lines:
            # A cell is known by its words: a star stands for one that is another.
            words = [word for word in pattern.split() if not word.startswith("<") and not word.endswith(">")]
            cell = sum(1 << (n - k) for k in range(1, n + 1) if words[k - 1] != "*")
            self.assertEqual([word for word in words if word != "*"],
                             [row[f"lemma{k}"] for k in range(1, n + 1) if cell >> (n - k) & 1])
            self.assertEqual(tables.number(count), observed[cell])
            self.assertTrue(tables.same(chance, expected[cell]), (pattern, chance, expected[cell]))
            found.add(cell)
        self.assertEqual(len(found), 2 ** n)
        for name, shown in zip(("logDice", "G2"), self.page.texts(".ngram-measures dd.number"), strict=True):
            self.assertTrue(tables.same(shown, tables.value(row[name]), 6), (name, shown))

    def test_of_three_words(self):
        self.assert_cells("triples", 3)

    def test_of_four_words(self):
        self.assert_cells("fours", 4)


if __name__ == "__main__":
    harness.main()
