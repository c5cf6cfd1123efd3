"""Texts that try to become something else than text, and those that run in other directions or have other letters."""

import harness
import reports
import tables
from harness import Keys

# How the page shows what cannot be seen: the pictures of control characters, and words for what is empty.
SHOWN = {b"a\x00b": "a␀b", b"\x1b[31mred": "␛[31mred", b"": "(empty)", b" ": "U+0020", b"\xf0\x9f": "\ufffd\ufffd"}


class HostileLemmas(harness.PageTest):
    @classmethod
    def setUpClass(cls):
        cls.rows = tables.rows("hostile", "lemma,frequency", "--sort", "logDice")

    def assert_still_itself(self):
        """Nothing of a lemma has become an element, and nothing has run."""
        self.assertEqual(self.page.all("img, b, i, u, iframe, object, embed"), [])
        self.assertNotIn("broken", self.page.driver.title.replace("document.title='broken'", ""))
        scripts = self.page.run("return [...document.querySelectorAll('script')].map(script => script.id)")
        self.assertEqual(scripts, ["report", "columns", ""])

    def test_stay_text_on_every_view(self):
        self.page.open("hostile")
        for address in ("#", "#lemma=rain&show=100", "#table", "#picture", "#about"):
            self.page.go(address)
            self.assert_still_itself()
        for number in range(1, len(self.rows) + 1, 3):
            self.page.go(f"#ngram={number}")
            self.assert_still_itself()

    def test_have_profiles_that_lead_to_one_another(self):
        self.page.open("hostile", "#lemma=rain&show=100")
        self.assertEqual(len(self.page.all(".block a.lemma")), len(reports.HOSTILE))
        for address in self.page.run("return [...document.querySelectorAll('.block a.lemma')].map(link => link.hash)"):
            self.page.go(address)
            # Each is in three pairs: with the lemma before it, with the one after it and with "rain".
            self.assertEqual(len(self.page.all(".block tbody tr")), 3, address[:100])
            self.assertNotEqual(self.page.texts("h1"), ["rain"])
            self.assert_still_itself()

    def test_can_be_seen(self):
        self.page.open("hostile", "#lemma=rain&show=100")
        shown = self.page.run("return [...document.querySelectorAll('.block a.lemma')].map(link => link.textContent)")
        for lemma in reports.HOSTILE:
            text = SHOWN.get(lemma, lemma.decode("utf-8", "replace"))
            if len(text) < 100 and text.strip().isprintable() and text.strip():
                self.assertIn(text, shown)
        self.assertEqual([text for text in shown if text.strip() == ""], [])

    def test_of_60000_letters_are_cut_where_they_are_shown_but_have_their_own_profile(self):
        self.page.open("hostile", "#lemma=" + "x" * 60_000)
        self.assertEqual(len(self.page.all(".block tbody tr")), 3)
        self.assertLess(len(self.page.text()), 5000)
        self.assertLess(self.page.run("return document.documentElement.scrollHeight"), 4000)

    def test_named_like_parts_of_the_language_are_words_like_others(self):
        for lemma in ("__proto__", "constructor", "toString", "hasOwnProperty"):
            self.page.open("hostile", "#lemma=" + lemma)
            self.assertEqual(self.page.texts("h1"), [lemma])
            self.assertEqual(len(self.page.all(".block tbody tr")), 3)
        for lemma in ("valueOf", "__defineGetter__", "isPrototypeOf"):
            self.page.open("hostile", "#lemma=" + lemma)
            self.assertIn("No pair of this report has this word", self.page.text())

    def test_can_be_searched_for(self):
        self.page.open("hostile")
        for typed, heading in (("</scr", reports.HOSTILE[0].decode()), ("__pr", "__proto__"), ("]]", "]]>"), ("100%", "100%25+%2B")):
            self.page.fill(self.page.one("#search"), typed)
            self.page.until(lambda: self.page.texts("#suggestions [role=option]"), "suggestions")
            self.page.press(Keys.ENTER)
            self.page.until(lambda: self.page.texts("h1") == [heading], heading)
            self.assert_still_itself()

    def test_do_not_turn_the_text_around_them(self):
        self.page.open("hostile", "#table")
        turned = self.page.run("""return [...document.querySelectorAll('table.rows tbody bdi')].every(
            node => getComputedStyle(node).unicodeBidi === 'isolate')""")
        self.assertTrue(turned)


class Addresses(harness.PageTest):
    """They come from others."""

    def test_may_be_anything(self):
        for address in ("#lemma=<img src=x onerror=alert(1)>", "#lemma=%", "#lemma=%ff%fe", "#__proto__=1", "#constructor", "#lemma",
                        "#table&sort=__proto__,-constructor&columns=toString&G2=x..y&least=1e999", "#picture&measure=__proto__",
                        "#lemma=rain&sort=constructor&show=-5&least=NaN&open=__proto__&blocks=1e99", "#&&&===", "#ngram=__proto__"):
            with self.subTest(address=address):
                self.page.open("weather", address)
                self.assertEqual(len(self.page.all("#view h1")), 1)
                self.assertEqual(self.page.complaints(), [])


class HostileSentences(harness.PageTest):
    def test_stay_text(self):
        number = 1 + [row["pattern"] for row in tables.rows("sentences", "pattern", "--sort", "logDice")].index("heavy <Atr rain")
        self.page.open("sentences", f"#ngram={number}")
        for summary in self.page.all(".example summary"):
            if not summary.find_element("xpath", "..").get_attribute("open"):
                self.page.click(summary)
        self.page.settle()
        self.assertEqual(len(self.page.all(".example")), 7)
        self.assertEqual(self.page.all("img, b, i, u"), [])
        sentences = self.page.texts(".example .sentence")
        self.assertTrue(any(text.startswith("</script><img/src=x/onerror") for text in sentences), sentences)
        self.assertTrue(any("<u>0</u>\"'&amp;" in text for text in self.page.texts(".example cite")))
        self.assertEqual(len(self.page.all(".example svg[role=img]")), 7)


class OtherScripts(harness.PageTest):
    def number(self, lemma):
        rows = tables.rows("scripts", "lemma", "--sort", "logDice")
        return 1 + next(i for i, row in enumerate(rows) if lemma in (row["lemma1"], row["lemma2"]))

    def test_run_in_their_own_direction(self):
        for lemma, direction in (("مَطَر", "rtl"), ("גשם", "rtl"), ("雨", "ltr"), ("θεά", "ltr")):
            self.page.open("scripts", f"#ngram={self.number(lemma)}")
            for selector in ("h1", ".example .sentence"):
                self.assertEqual(self.page.run("return getComputedStyle(document.querySelector(arguments[0])).direction", selector),
                                 direction, (lemma, selector))

    def test_are_drawn_from_right_to_left_where_they_are_read_so(self):
        places = """return [...document.querySelectorAll('.example .arcs-word')].map(word => Number(word.getAttribute('x')))"""
        for lemma, leftwards in (("مَطَر", True), ("雨", False)):
            self.page.open("scripts", f"#ngram={self.number(lemma)}")
            where = self.page.run(places)[:3]
            self.assertEqual(where, sorted(where, reverse=leftwards), lemma)

    def test_have_each_tag_behind_its_own_word(self):
        self.page.open("phrases", "#lemma=شَاي")
        places = self.page.run("""return [...document.querySelectorAll('.block tbody .tagged')].map(one => [one.textContent.slice(-1),
            ...['.lemma', '.tag'].map(part => one.querySelector(part)?.getBoundingClientRect()).map(box => box && [box.left, box.right])])""")
        tags = [tag for tag, _, box in places if box]
        self.assertEqual(tags, ["V", "N"])
        (_, verb, of_verb), (_, noun, of_noun) = [place for place in places if place[2]]
        ends = [edge for left, right in (verb, of_verb, noun, of_noun) for edge in (right, left)]
        self.assertEqual(ends, sorted(ends, reverse=True))

    def test_have_profiles(self):
        for lemma in ("مَطَر", "גשם", "雨", "θεά"):
            self.page.open("scripts", "#lemma=" + lemma)
            self.assertEqual(self.page.texts("h1"), [lemma])
            self.assertGreater(len(self.page.all(".block tbody tr")), 0)


if __name__ == "__main__":
    harness.main()
