"""The picture: points that can be named, opened and selected by pointer and by numbers, and how many N-grams each relation has."""

import collections
import math

import harness
import tables
from harness import ActionChains

AXES = """const ticks = (anchor, place) => [...document.querySelectorAll('.plot-axes text.plot-tick')]
    .filter(tick => tick.getAttribute('text-anchor') === anchor).map(tick => [tick.textContent, Number(tick.getAttribute(place))]);
return [ticks('middle', 'x'), ticks('end', 'y')];"""
LOW = 4  # pixels from the number of a tick up to its line


class Picture(harness.PageTest):
    @classmethod
    def setUpClass(cls):
        cls.rows = tables.rows("weather", "pattern,relation,parent,frequency,logDice,G2", "--sort", "logDice")

    def open(self, address="#picture"):
        """Opens the picture and finds out by its axes where a frequency and a logDice stand."""
        self.page.open("weather", address)
        across, up = self.page.run(AXES)
        (f1, x1), (f2, x2) = [(math.log(tables.number(text)), x) for text, x in (across[0], across[-1])]
        (v1, y1), (v2, y2) = [(tables.number(text), y - LOW) for text, y in (up[0], up[-1])]
        self.x = lambda frequency: x1 + (math.log(frequency) - f1) * (x2 - x1) / (f2 - f1)
        self.y = lambda value: y1 + (value - v1) * (y2 - y1) / (v2 - v1)

    def pointer(self, frequency, value):
        """Actions that begin at a place of the picture."""
        plot = self.page.one(".plot")
        self.page.run("arguments[0].scrollIntoView({block: 'center'})", plot)
        box = plot.rect
        return ActionChains(self.page.driver, duration=20).move_to_element_with_offset(
            plot, round(self.x(frequency) - box["width"] / 2), round(self.y(value) - box["height"] / 2))

    def selected(self):
        return [row for row in self.rows if 5 <= int(row["frequency"]) <= 7 and 12.5 <= float(row["logDice"]) <= 13.45]

    def assert_selected(self):
        """The rows of selected() and no others are counted, listed, and shown by the table."""
        wanted = self.selected()
        self.assertIn(len(wanted), range(5, 20))
        self.page.until(lambda: f"{len(wanted)} of {len(self.rows)} N-grams selected" in self.page.text(), f"{len(wanted)} selected")
        best = sorted(wanted, key=lambda row: -float(row["logDice"]))
        self.assertEqual(self.page.texts(".picture-list tbody th"), [row["pattern"] for row in best])
        address = self.page.address()
        self.page.open("weather", address)
        self.assertEqual(self.page.texts(".picture-list tbody th"), [row["pattern"] for row in best])
        self.page.click(self.page.one("#view [role=status] a"))
        self.page.until(lambda: self.page.texts("h1") == ["Table"], "the table")
        self.page.settle()
        self.assertEqual(self.page.texts("table.rows tbody th"), [row["pattern"] for row in best])

    def test_names_the_point_below_the_pointer_and_opens_it_by_a_click(self):
        self.open()
        row = next(row for row in self.rows if row["pattern"] == "heavy <Atr rain")
        place = int(row["frequency"]), float(row["logDice"])
        self.pointer(*place).perform()
        self.page.until(lambda: self.page.texts(".plot-tip .pattern") == ["heavy <Atr rain"], "the name of the point")
        self.assertIn("frequency 9, logDice 13.36", self.page.texts(".plot-tip")[0])
        self.pointer(*place).click().perform()
        self.page.until(lambda: self.page.texts("h1") == ["heavy <Atr rain"], "the view of the point")

    def test_names_nothing_where_nothing_is(self):
        self.open()
        self.pointer(8, 9.5).perform()
        self.page.settle()
        self.assertFalse(self.page.all(".plot-tip")[0].is_displayed())

    def test_is_selected_by_drawing_a_rectangle(self):
        self.open()
        plot = self.page.one(".plot").rect
        self.pointer(4.5, 13.45).click_and_hold().perform()
        ActionChains(self.page.driver, duration=20).move_by_offset(round(self.x(7.5) - self.x(4.5)), round(self.y(12.5) - self.y(13.45))) \
            .release().perform()
        self.assertGreater(plot["width"], 600)
        self.assert_selected()

    def test_is_selected_by_numbers(self):
        self.open()
        for end, value in (("frequency-least", "5"), ("frequency-most", "7"), ("logDice-least", "12.5"), ("logDice-most", "13.45")):
            self.page.fill(self.page.one(f"#filter-{end}"), value)
        self.assert_selected()

    def test_shows_the_measure_that_one_chooses(self):
        self.open()
        self.page.run("""arguments[0].value = 'G2'; arguments[0].dispatchEvent(new Event('change', {bubbles: true}))""",
                      self.page.one("#picture-measure"))
        self.page.settle()
        self.assertIn("measure=G2", self.page.address())
        self.assertIn("G²", self.page.texts(".plot-axes text.plot-title"))
        self.page.open("weather", "#picture&measure=MI")
        self.assertIn("MI", self.page.texts(".plot-axes text.plot-title"))

    def test_says_in_words_what_it_shows(self):
        self.open()
        name = self.page.one(".plot canvas").accessible_name
        frequencies = sorted(int(row["frequency"]) for row in self.rows)
        self.assertIn(f"Frequencies go from 1 to {frequencies[-1]}, with {frequencies[len(frequencies) // 2]} in the middle", name)

    def test_has_a_bar_for_each_relation(self):
        self.open()
        counts = collections.Counter(row["relation1" if row["parent1"] != "0" else "relation2"] for row in self.rows)
        bars = dict(zip(self.page.texts("table.bars tbody th a"), self.page.texts("table.bars .bar-count")))
        self.assertEqual({name: int(count) for name, count in bars.items()}, counts)
        self.assertEqual([int(count) for count in bars.values()], sorted(counts.values(), reverse=True))
        self.page.click(self.page.all("table.bars tbody a")[0])
        self.page.until(lambda: self.page.texts("h1") == ["Table"], "the table")
        self.assertIn("relation=Atr", self.page.address())

    def test_draws_more_points_than_there_are_places(self):
        self.page.open("dense", "#picture")
        self.assertIn("more N-grams lie together", self.page.text())
        self.assertGreater(self.painted(), 500)

    def test_draws_thousands_of_points(self):
        self.page.open("many", "#picture")
        self.assertNotIn("more N-grams lie together", self.page.text())
        self.assertGreater(self.painted(), 500)

    def painted(self):
        """How many pixels of the picture have a colour."""
        return self.page.run("""const canvas = document.querySelector('.plot canvas');
            const data = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data;
            let painted = 0;
            for (let i = 3; i < data.length; i += 4) painted += data[i] !== 0;
            return painted""")


if __name__ == "__main__":
    harness.main()
