"""A report is used from beginning to end without a pointer."""

import harness
from harness import Keys

FOCUS = """const node = document.activeElement;
return node === document.body ? null : (node.id ? '#' + node.id : '') + ' ' + (node.getAttribute('aria-label') || node.textContent || '').trim().slice(0, 40)"""


class WithoutAPointer(harness.PageTest):
    def tab_to(self, what, most=80):
        """Goes on with the tabulator until the focus is on what is wanted."""
        for _ in range(most):
            self.page.press(Keys.TAB)
            focus = self.page.run(FOCUS)
            if focus is not None and what in focus:
                return
        self.fail(f"no {what} within {most} steps; the last one was {focus}")

    def heading(self, text):
        self.page.until(lambda: self.page.texts("h1") == [text], f"the heading {text}")
        self.page.settle()

    def test_one_goes_from_the_start_to_a_sentence_and_back(self):
        self.page.open("weather")
        self.page.press("/")
        self.page.press("heav", Keys.ENTER)
        self.heading("heavy")
        self.tab_to("heavy rain")
        self.page.press(Keys.ENTER)
        self.heading("heavy <Atr rain")
        self.tab_to("Copy a citation")
        self.page.press(Keys.ENTER)
        self.page.until(lambda: "Copied" in self.page.text(), "the citation")
        self.tab_to("Tree")
        self.page.press_with(Keys.ALT, Keys.ARROW_LEFT)
        if self.page.texts("h1") != ["heavy"]:
            self.page.driver.back()  # a browser without a window may not have the key
        self.heading("heavy")

    def test_one_skips_what_is_above_every_view(self):
        self.page.open("weather", "#lemma=rain")
        self.page.press(Keys.TAB)
        self.assertIn("Skip", self.page.run(FOCUS))
        self.page.press(Keys.ENTER)
        self.assertIn(self.page.run("return document.activeElement.id"), ("main", "view"))
        self.assertEqual(self.page.address(), "#lemma=rain")
        self.page.press(Keys.TAB)
        self.assertTrue(self.page.run("return document.querySelector('#view').contains(document.activeElement)"))

    def test_one_changes_what_a_profile_shows_and_keeps_ones_place(self):
        self.page.open("many", "#lemma=w1")
        self.tab_to("#profile-sort")
        self.page.press(Keys.ARROW_DOWN)
        self.page.until(lambda: "sort=G2" in self.page.address(), "another order")
        self.page.settle()
        self.assertEqual(self.page.run("return document.activeElement.id"), "profile-sort")

    def test_one_filters_and_sorts_the_table(self):
        self.page.open("weather", "#table")
        self.tab_to("#filter-lemma")
        self.page.press("rain")
        self.page.until(lambda: "lemma=rain" in self.page.address(), "the filter")
        self.tab_to("#sort-G2")
        self.page.press(Keys.ENTER)
        self.page.until(lambda: "-G2" in self.page.address(), "the order")
        self.tab_to("heavy <Atr rain")
        self.page.press(Keys.ENTER)
        self.heading("heavy <Atr rain")

    def test_one_selects_in_the_picture(self):
        self.page.open("weather", "#picture")
        self.tab_to("#filter-frequency-least")
        self.page.press("9")
        self.page.until(lambda: "1 of 529 N-grams selected" in self.page.text(), "the selection")
        self.tab_to("Show this row")
        self.page.press(Keys.ENTER)
        self.heading("Table")

    def test_the_focus_is_always_to_be_seen(self):
        for address in harness.VIEWS.values():
            self.page.open("weather", address)
            for _ in range(25):
                self.page.press(Keys.TAB)
                seen = self.page.run("""const node = document.activeElement, style = getComputedStyle(node), box = node.getBoundingClientRect();
                    return node === document.body || (style.outlineStyle !== 'none' && style.outlineWidth !== '0px' && box.width > 0 &&
                                                      box.bottom > 0 && box.top < innerHeight)""")
                self.assertTrue(seen, (address, self.page.run(FOCUS)))


if __name__ == "__main__":
    harness.main()
