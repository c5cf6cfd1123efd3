"""Searching for a word, its profile, and the way from one to the next and back."""

import urllib.parse

import harness
import tables
from harness import Keys

COLUMNS = "pattern,lemma,tag,parent,relation,frequency,logDice,G2,MI"


def blocks_of(rows, lemma, least=1):
    """What a profile must show: by direction and relation the collocates with frequency and row, in the order of the file."""
    blocks = {}
    for number, row in enumerate(rows, 1):
        if int(row["frequency"]) < least:
            continue
        for k, other in ((1, 2), (2, 1)):
            if row[f"lemma{k}"] != lemma:
                continue
            is_head = row[f"parent{k}"] == "0"
            name = f"{row[f'relation{other}']} of {lemma}" if is_head else f"{lemma} as {row[f'relation{k}']} of"
            blocks.setdefault(name, []).append((row[f"lemma{other}"], row, number))
    return blocks


class ProfileTest(harness.PageTest):
    def shown(self):
        """The blocks on the screen: title to rows of texts (collocate, frequency, score)."""
        return dict(self.page.run("""return [...document.querySelectorAll('.block')].map(block =>
            [block.querySelector('h2').textContent.trim(),
             [...block.querySelectorAll('tbody tr')].map(line =>
                [line.querySelector('a.lemma').textContent, ...[...line.querySelectorAll('td.number')].map(e => e.textContent.trim())])])"""))

    def choose(self, field, value):
        self.page.run("""arguments[0].value = arguments[1];
                         arguments[0].dispatchEvent(new Event('change', {bubbles: true}))""", self.page.one(field), value)
        self.page.settle()


class AProfile(ProfileTest):
    @classmethod
    def setUpClass(cls):
        cls.rows = {report: tables.rows(report, COLUMNS, "--sort", "logDice") for report in ("weather", "many")}

    def assert_blocks(self, report, lemma, by, limit=10, least=1):
        blocks = blocks_of(self.rows[report], lemma, least)
        shown = self.shown()
        self.assertEqual(set(shown), set(blocks))
        frequencies = [sum(int(row["frequency"]) for _, row, _ in blocks[name]) for name in shown]
        self.assertEqual(frequencies, sorted(frequencies, reverse=True))
        score = "logDice" if by == "frequency" else by
        for name, lines in shown.items():
            best = sorted(blocks[name], key=lambda one: (-tables.value(one[1][by]), -int(one[1]["frequency"]), one[2]))[:limit]
            self.assertEqual([line[0] for line in lines], [collocate for collocate, *_ in best], name)
            self.assertEqual([tables.number(line[1]) for line in lines], [int(row["frequency"]) for _, row, _ in best])
            for line, (_, row, _) in zip(lines, best):
                self.assertTrue(abs(tables.number(line[2]) - tables.value(row[score])) < 0.0501, (line, row))
        counts = [(min(limit, len(blocks[name])), len(blocks[name])) for name in shown]
        self.assertEqual([text.strip() for text in self.page.texts(".block-foot > span:first-child")],
                         [f"{some} of {every}" for some, every in counts])

    def test_has_a_block_for_each_relation_and_direction(self):
        for lemma in ("rain", "the", "make"):
            self.page.open("weather", f"#lemma={lemma}")
            self.assertEqual(self.page.texts("h1"), [lemma])
            self.assert_blocks("weather", lemma, "logDice")

    def test_is_sorted_by_what_one_wishes(self):
        self.page.open("many", "#lemma=w1")
        self.assert_blocks("many", "w1", "logDice")
        for by in ("frequency", "G2", "MI"):
            self.choose("#profile-sort", by)
            self.assertIn(f"sort={by}", self.page.address())
            self.assert_blocks("many", "w1", by)
            self.assertEqual(len(self.page.all(".block th[aria-sort=descending]")), len(self.shown()))

    def test_has_only_what_is_frequent_enough_and_so_many_rows_as_one_wishes(self):
        self.page.open("many", "#lemma=w1")
        self.choose("#profile-least", "3")
        self.assert_blocks("many", "w1", "logDice", least=3)
        self.choose("#profile-show", "20")
        self.assert_blocks("many", "w1", "logDice", limit=20, least=3)
        address = self.page.address()
        self.page.open("many", address)
        self.assert_blocks("many", "w1", "logDice", limit=20, least=3)
        self.choose("#profile-least", "1000")
        self.assertEqual(self.shown(), {})
        self.assertIn("as frequent as that", self.page.text())

    def test_shows_all_rows_of_a_block_when_asked(self):
        self.page.open("many", "#lemma=w1&sort=frequency&least=2")
        blocks = blocks_of(self.rows["many"], "w1", 2)
        name = next(iter(self.shown()))
        self.page.click(self.page.all(".block button")[0])
        self.page.settle()
        self.assertEqual(len(self.shown()[name]), len(blocks[name]))
        self.page.open("many", self.page.address())
        self.assertEqual(len(self.shown()[name]), len(blocks[name]))
        self.page.click(self.page.all(".block button")[0])
        self.page.settle()
        self.assertEqual(len(self.shown()[name]), 10)

    def test_leads_to_a_block_once(self):
        self.page.open("weather", "#lemma=rain&block=as-Sb")
        focused = "return document.activeElement.id"
        self.page.until(lambda: self.page.run(focused) == "title-as-Sb", "the focus on the block")
        self.page.run("arguments[0].focus()", self.page.one("#profile-sort"))
        self.choose("#profile-sort", "G2")
        self.assertEqual(self.page.run(focused), "profile-sort")
        self.assertEqual(self.page.address(), "#lemma=rain&sort=G2")

    def test_leads_to_the_profiles_of_its_words_and_back(self):
        self.page.open("weather", "#lemma=rain&sort=G2&show=5")
        before = self.shown()
        self.page.run("scrollTo(0, 200)")
        place = self.page.run("return scrollY")
        link = next(link for link in self.page.all(".block a.lemma") if link.text == "heavy")
        self.page.click(link)
        self.page.until(lambda: self.page.texts("h1") == ["heavy"], "the profile of heavy")
        self.assertIn("G2", self.page.address())
        self.page.driver.back()
        self.page.until(lambda: self.page.texts("h1") == ["rain"], "the profile of rain again")
        self.assertEqual(self.page.address(), "#lemma=rain&sort=G2&show=5")
        self.assertEqual(self.shown(), before)
        self.assertGreater(place, 0)
        self.page.driver.forward()
        self.page.until(lambda: self.page.texts("h1") == ["heavy"], "the profile of heavy again")

    def test_leads_to_its_pairs_and_to_the_table(self):
        self.page.open("weather", "#lemma=rain")
        self.page.click(next(link for link in self.page.all(".block a.ngram") if link.text == "heavy rain"))
        self.page.until(lambda: self.page.texts("h1") == ["heavy <Atr rain"], "heavy rain")
        self.page.driver.back()
        self.page.until(lambda: self.page.texts("h1") == ["rain"], "the profile again")
        self.page.click(self.page.all(".block-foot a")[0])
        self.page.until(lambda: self.page.texts("h1") == ["Table"], "the table")
        self.assertIn("lemma=rain", self.page.address())

    def test_of_a_word_that_is_not_there_says_so(self):
        self.page.open("weather", "#lemma=rainn")
        self.assertEqual(self.page.texts("h1"), ["rainn"])
        self.assertIn("No pair of this report has this word", self.page.text())


class Searching(ProfileTest):
    def suggestions(self):
        return [text for text in self.page.texts("#suggestions [role=option] bdi")]

    def test_suggests_words_while_one_types_the_frequent_ones_first(self):
        self.page.open("weather")
        rows = tables.rows("weather", "lemma,frequency")
        frequency = {}
        for row in rows:
            for lemma in {row["lemma1"], row["lemma2"]}:
                frequency[lemma] = frequency.get(lemma, 0) + int(row["frequency"])
        field = self.page.one("#search")
        field.send_keys("b")
        shown = self.page.until(self.suggestions, "suggestions")
        beginning = sorted((lemma for lemma in frequency if lemma.startswith("b")), key=lambda lemma: -frequency[lemma])
        self.assertEqual([frequency[lemma] for lemma in shown], [frequency[lemma] for lemma in beginning][:len(shown)])
        self.assertTrue(set(shown) <= set(beginning), shown)
        field.send_keys("ank")
        self.page.until(lambda: self.suggestions() == ["bank-1", "bank-2"], "both banks")

    def test_goes_by_arrow_keys_and_enter(self):
        self.page.open("weather")
        self.page.press("/")
        self.page.press("ba", "nk")
        field = self.page.one("#search")
        self.page.until(lambda: self.suggestions() == ["bank-1", "bank-2"], "both banks")
        self.assertEqual(field.get_attribute("aria-expanded"), "true")
        self.page.press(Keys.ARROW_DOWN, Keys.ARROW_DOWN)
        active = field.get_attribute("aria-activedescendant")
        self.assertEqual(self.page.texts(f"#{active} bdi"), ["bank-2"])
        self.assertEqual(self.page.texts("#suggestions [aria-selected=true] bdi"), ["bank-2"])
        self.page.press(Keys.ARROW_UP, Keys.ENTER)
        self.page.until(lambda: self.page.texts("h1") == ["bank-1"], "the profile of the bank")
        self.assertEqual(self.page.address(), "#lemma=bank-1")
        self.assertEqual(field.get_attribute("aria-expanded"), "false")

    def test_takes_the_best_suggestion_without_arrow_keys(self):
        self.page.open("weather", "#about")
        self.page.fill(self.page.one("#search"), "HEAV" + Keys.ENTER)
        self.page.until(lambda: self.page.texts("h1") == ["heavy"], "the profile of heavy")

    def test_is_left_by_escape(self):
        self.page.open("weather")
        field = self.page.one("#search")
        field.send_keys("ra")
        self.page.until(self.suggestions, "suggestions")
        field.send_keys(Keys.ESCAPE)
        self.assertEqual(self.suggestions(), [])
        self.assertEqual(self.page.address(), "")

    def test_goes_by_a_click(self):
        self.page.open("weather")
        self.page.one("#search").send_keys("tea")
        self.page.until(self.suggestions, "suggestions")
        self.page.click(self.page.all("#suggestions [role=option]")[0])
        self.page.until(lambda: self.page.texts("h1") == ["tea"], "the profile of tea")

    def test_finds_letters_with_and_without_their_marks_in_every_script(self):
        self.page.open("scripts")
        for typed, lemma in (("مطر", "مَطَر"), ("μηνις", "μῆνις"), ("ΘΕΑ", "θεά"), ("雨", "雨"), ("גשם", "גשם")):
            self.page.fill(self.page.one("#search"), typed)
            self.page.until(lambda: lemma in self.suggestions(), lemma)
            self.page.press(Keys.ENTER)
            self.page.until(lambda: self.page.texts("h1") == [lemma], "the profile of " + lemma)
            self.assertEqual(urllib.parse.unquote(self.page.address()), "#lemma=" + lemma)

    def test_finds_words_in_the_start_view(self):
        self.page.open("weather")
        self.page.click(next(link for link in self.page.all(".home-words a") if link.text == "rain"))
        self.page.until(lambda: self.page.texts("h1") == ["rain"], "the profile of rain")
        self.page.driver.back()
        self.page.until(lambda: self.page.texts("h1") == ["weather.txt"], "the start")


if __name__ == "__main__":
    harness.main()
