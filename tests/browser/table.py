"""The table of all rows: order, filters, scrolling, and files that are the same bytes as those of ngrex-table."""

import codecs

import harness
import tables
from harness import Keys

MEASURES = ["logDice", "G2", "MI", "t", "odds_ratio"]
COLUMNS = "rank,pattern,frequency," + ",".join(MEASURES)


class TableTest(harness.PageTest):
    @classmethod
    def setUpClass(cls):
        cls.rows = tables.rows("weather", "rank,pattern,lemma,tag,relation,frequency," + ",".join(MEASURES), "--sort", "logDice")

    def lines(self):
        """The rows that exist now, as texts of their cells."""
        return self.page.run("""return [...document.querySelectorAll('table.rows tbody tr')].map(
            line => [...line.cells].map(cell => cell.textContent.trim()))""")

    def numbers(self):
        return [int(tables.number(line[0])) for line in self.lines()]

    def head(self, name):
        return self.page.one(f"#sort-{name}")

    def order(self):
        """What the headings say: column to direction."""
        return self.page.run("""return Object.fromEntries([...document.querySelectorAll('table.rows th[aria-sort]')].map(
            head => [head.querySelector('button').id.slice(5), head.getAttribute('aria-sort')]))""")

    def sorted_numbers(self, rows, *keys):
        """Numbers of rows in the order of some columns, of which "-" descends; equal rows keep the order of the report."""
        for key in reversed(keys):
            name = key.lstrip("-")
            rows = sorted(rows, key=lambda row: tables.value(row[name]), reverse=key.startswith("-"))
        return [int(row["rank"]) for row in rows]

    def count(self):
        return self.page.texts(".table-count")[0]


class Rows(TableTest):
    def test_are_those_of_ngrex_table(self):
        self.page.open("weather", "#table")
        self.assertEqual(self.count(), f"{len(self.rows)} rows")
        lines = self.lines()
        self.assertGreater(len(lines), 10)
        for line, row in zip(lines, self.rows):
            self.assertEqual(line[:3], [row["rank"], row["pattern"], row["frequency"]])
            for shown, name in zip(line[3:], MEASURES, strict=True):
                exact = tables.value(row[name])
                self.assertTrue(shown in ("∞", "–") or abs(tables.number(shown) - exact) < 0.0501, (name, shown, exact))
                self.assertEqual(shown == "∞", exact == float("inf"))

    def test_exist_where_one_looks_and_no_more_of_them(self):
        every = tables.rows("many", "rank,pattern", "--sort", "logDice")
        self.page.open("many", "#table")
        table = self.page.one("table.rows")
        self.assertEqual(table.get_attribute("aria-rowcount"), str(len(every) + 1))
        for share in (0, 0.3, 0.999, 1, 0.5, 0):
            self.page.run("const rows = document.querySelector('#rows'); rows.scrollTop = arguments[0] * rows.scrollHeight", share)
            self.page.settle()
            numbers = self.numbers()
            self.assertIn(len(numbers), range(10, 60))
            self.assertEqual(numbers, list(range(numbers[0], numbers[0] + len(numbers))))
            self.assertEqual([line[1] for line in self.lines()], [every[number - 1]["pattern"] for number in numbers])
            self.assertEqual(self.page.run("return Number(document.querySelector('table.rows tbody tr').ariaRowIndex)"), numbers[0] + 1)
            if share == 1:
                self.assertEqual(numbers[-1], len(every))
            self.assertTrue(abs(numbers[0] - share * len(every)) < 60, (share, numbers[0]))

    def test_lead_to_their_n_grams_and_one_comes_back_to_the_same_place(self):
        self.page.open("many", "#table&sort=-frequency")
        self.page.run("document.querySelector('#rows').scrollTop = 40000")
        self.page.settle()
        before = self.lines()
        link = self.page.all("table.rows tbody a")[5]
        pattern = link.text
        self.page.click(link)
        self.page.until(lambda: self.page.texts("h1") == [pattern], pattern)
        self.page.driver.back()
        self.page.until(lambda: self.page.texts("h1") == ["Table"], "the table again")
        self.page.settle()
        self.assertIn(before[5], self.lines())


class Order(TableTest):
    def test_is_by_the_column_that_one_clicks_on_and_then_the_other_way_round(self):
        self.page.open("weather", "#table")
        self.assertEqual(self.order(), {"rank": "ascending"})
        for name in ("frequency", "G2", "odds_ratio"):
            self.page.click(self.head(name))
            self.page.settle()
            self.assertEqual(self.order(), {name: "descending"})
            self.assertEqual(self.numbers(), self.sorted_numbers(self.rows, "-" + name)[:len(self.numbers())])
            self.page.click(self.head(name))
            self.page.settle()
            self.assertEqual(self.order(), {name: "ascending"})
            self.assertEqual(self.numbers(), self.sorted_numbers(self.rows, name)[:len(self.numbers())])

    def test_is_by_several_columns_with_the_shift_key(self):
        self.page.open("weather", "#table")
        self.page.click(self.head("frequency"))
        self.page.run("arguments[0].dispatchEvent(new MouseEvent('click', {shiftKey: true, bubbles: true}))", self.head("MI"))
        self.page.settle()
        wanted = self.sorted_numbers(self.rows, "-frequency", "-MI")
        self.assertEqual(self.numbers(), wanted[:len(self.numbers())])
        address = self.page.address()
        self.assertEqual(address, "#table&sort=-frequency,-MI")
        self.page.open("weather", address)
        self.assertEqual(self.numbers(), wanted[:len(self.numbers())])
        self.assertIn("2", self.head("MI").text)

    def test_is_told_by_the_address(self):
        self.page.open("weather", "#table&sort=+frequency,-G2,+nonesuch")
        self.assertEqual(self.numbers(), self.sorted_numbers(self.rows, "frequency", "-G2")[:len(self.numbers())])
        self.page.open("weather", "#table&sort=+lemma2,-frequency")
        lemmas = [self.rows[number - 1]["lemma2"] for number in self.numbers()]
        self.assertEqual(lemmas, sorted(lemmas))
        self.assertEqual(lemmas[0], min(row["lemma2"] for row in self.rows))


class Filters(TableTest):
    def assert_chosen(self, condition, sort=()):
        """Exactly the rows that meet the condition are there."""
        chosen = [row for row in self.rows if condition(row)]
        self.assertIn(len(chosen), range(1, len(self.rows)))
        self.page.until(lambda: self.count() == f"{len(chosen)} of {len(self.rows)} rows", f"{len(chosen)} rows")
        self.assertEqual(self.numbers(), self.sorted_numbers(chosen, *sort)[:len(self.numbers())])

    def choose(self, field, value):
        self.page.run("""arguments[0].value = arguments[1];
                         arguments[0].dispatchEvent(new Event('input', {bubbles: true}))""", self.page.one(field), value)

    def test_choose_by_words(self):
        self.page.open("weather", "#table")
        self.page.fill(self.page.one("#filter-lemma"), "RAI")
        self.assert_chosen(lambda row: "rai" in row["lemma1"] or "rai" in row["lemma2"])
        self.page.fill(self.page.one("#filter-lemma"), "rain heavy")
        self.assert_chosen(lambda row: {row["lemma1"], row["lemma2"]} == {"heavy", "rain"})
        self.page.fill(self.page.one("#filter-lemma"), "a")
        self.page.click(self.page.one("#filter-whole"))
        self.assert_chosen(lambda row: "a" in (row["lemma1"], row["lemma2"]))

    def test_choose_by_relation_tag_frequency_and_measures_together(self):
        self.page.open("weather", "#table")
        self.choose("#filter-relation", "Atr")
        self.assert_chosen(lambda row: "Atr" in (row["relation1"], row["relation2"]))
        self.choose("#filter-tag", "A----")
        self.assert_chosen(lambda row: "Atr" in (row["relation1"], row["relation2"]) and "A----" in (row["tag1"], row["tag2"]))
        self.page.fill(self.page.one("#filter-frequency-least"), "2")
        self.page.fill(self.page.one("#filter-frequency-most"), "7")
        self.page.click(self.page.all("summary")[0])
        self.page.fill(self.page.one("#filter-G2-least"), "20.5")

        def meets(row):
            return ("Atr" in (row["relation1"], row["relation2"]) and "A----" in (row["tag1"], row["tag2"]) and
                    2 <= int(row["frequency"]) <= 7 and float(row["G2"]) >= 20.5)

        self.assert_chosen(meets)
        address = self.page.address()
        self.page.open("weather", address)
        self.assert_chosen(meets)
        self.page.click(self.page.one("#filter-none"))
        self.page.until(lambda: self.count() == f"{len(self.rows)} rows", "all rows")
        self.assertEqual(self.page.address(), "#table")

    def test_that_nothing_meets_leave_an_empty_table(self):
        self.page.open("weather", "#table&lemma=nonesuch")
        self.assertEqual(self.count(), f"0 of {len(self.rows)} rows")
        self.assertEqual(self.lines(), [])


class Downloads(TableTest):
    def assert_downloads(self, report, *options):
        for form, ending in (("tsv", ".tsv"), ("csv", ".csv")):
            self.page.click(self.page.one(f"#download-{form}"))
            name, content = self.page.downloaded(ending)
            self.assertEqual(name, report + ending)
            self.assertEqual(content, tables.printed(report, *options, "--format", form))

    def test_are_what_ngrex_table_prints(self):
        self.page.open("weather", "#table")
        self.assert_downloads("weather", "--columns", COLUMNS, "--sort", "logDice")

    def test_are_what_one_sees(self):
        self.page.open("weather", "#table&sort=-G2&relation=Atr&least=2&columns=pattern,lemma,tag,relation,frequency,per_million,marginal,G2")
        self.assert_downloads("weather", "--columns", "pattern,lemma,tag,relation,frequency,per_million,marginal,G2", "--sort", "-G2,-logDice",
                              "--where", "relation1=Atr or relation2=Atr", "--min-frequency", "2")

    def test_have_columns_that_are_switched_on(self):
        self.page.open("weather", "#table")
        self.page.click(next(summary for summary in self.page.all("summary") if summary.text == "Columns"))
        for box in self.page.all(".column-list label"):
            if box.text.strip() == "Lemmas":
                box.click()
        self.page.settle()
        self.assertIn("lemma", self.page.address())
        self.assert_downloads("weather", "--columns", "rank,pattern,lemma,frequency," + ",".join(MEASURES), "--sort", "logDice")

    def test_keep_every_text(self):
        # Each byte that is not UTF-8 becomes a sign of replacement in the page; ngrex-table prints the bytes as they are.
        codecs.register_error("byte by byte", lambda error: ("\ufffd", error.start + 1))
        self.page.open("hostile", "#table&columns=lemma,tag")
        for form in ("tsv", "csv"):
            self.page.click(self.page.one(f"#download-{form}"))
            _, content = self.page.downloaded("." + form)
            wanted = tables.printed("hostile", "--columns", "lemma,tag", "--sort", "logDice", "--format", form)
            self.assertEqual(content.decode(), wanted.decode("utf-8", "byte by byte"))


class ByKeyboard(TableTest):
    def test_one_goes_from_row_to_row(self):
        self.page.open("many", "#table")
        self.page.run("document.querySelector('table.rows tbody a').focus()")
        first = self.page.run("return document.activeElement.textContent")
        for _ in range(40):
            self.page.press(Keys.ARROW_DOWN)
        self.page.settle()
        every = tables.rows("many", "pattern", "--sort", "logDice")
        self.assertEqual(first, every[0]["pattern"])
        self.assertEqual(self.page.run("return document.activeElement.textContent"), every[40]["pattern"])
        self.page.press(Keys.ARROW_UP, Keys.ENTER)
        self.page.until(lambda: self.page.texts("h1") == [every[39]["pattern"]], "the row of the focus")

    def test_one_sorts_by_the_headings(self):
        self.page.open("weather", "#table")
        self.page.run("document.querySelector('#sort-G2').focus()")
        self.page.press(Keys.ENTER)
        self.page.settle()
        self.assertEqual(self.order(), {"G2": "descending"})
        self.assertEqual(self.page.run("return document.activeElement.id"), "sort-G2")
        self.page.press(" ")
        self.page.settle()
        self.assertEqual(self.order(), {"G2": "ascending"})


if __name__ == "__main__":
    harness.main()
