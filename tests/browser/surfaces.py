"""Dark mode, narrow screens, large letters and paper."""

import base64
import re

import harness

REPORTS = {"weather": harness.VIEWS, "fours": {"profile": "#lemma=the", "ngram": "#ngram=1", "table": "#table"},
           "scripts": harness.VIEWS, "hostile": {"start": "#", "profile": "#lemma=rain", "ngram": "#ngram=23", "table": "#table"},
           "sentences": {"ngram": "#ngram=1"}, "empty": {"start": "#", "table": "#table", "picture": "#picture"}}

# What sticks out of the page to the right, outermost first; boxes that scroll by themselves keep what is in them.
STICKS_OUT = """const wide = document.documentElement.clientWidth;
const kept = node => { for (let at = node.parentElement; at; at = at.parentElement) {
  const style = getComputedStyle(at);
  if (style.overflowX !== 'visible' || style.position === 'fixed') return true; } return false; };
return document.documentElement.scrollWidth <= wide ? [] :
  ['the page scrolls'].concat([...document.body.querySelectorAll('*')].filter(node => node.getBoundingClientRect().right > wide + 1 && !kept(node))
    .slice(0, 5).map(node => node.outerHTML.slice(0, 150)));"""

# The relative luminance of the page's background and of its text.
LUMINANCE = """const of = colour => { const [r, g, b] = colour.match(/[0-9.]+/g).map(x => x / 255)
    .map(x => x <= 0.04045 ? x / 12.92 : ((x + 0.055) / 1.055) ** 2.4);
  return 0.2126 * r + 0.7152 * g + 0.0722 * b; };
const nodes = [document.body, document.documentElement].map(node => getComputedStyle(node).backgroundColor);
return [of(nodes.find(colour => !colour.startsWith('rgba')) ?? 'rgb(255, 255, 255)'), of(getComputedStyle(document.body).color)];"""


class NothingSticksOut(harness.PageTest):
    def assert_fits(self, *reports):
        for report in reports:
            self.page.open(report)
            for view, address in REPORTS[report].items():
                with self.subTest(report=report, view=view):
                    self.page.go(address)
                    self.assertEqual(self.page.run(STICKS_OUT), [])

    def test_of_a_screen_of_390_points(self):
        self.page.screen(390, 844)
        self.assert_fits("weather", "fours")

    def test_of_a_screen_of_320_points(self):
        self.page.screen(320, 568)
        self.assert_fits(*REPORTS)

    def test_at_twice_the_size(self):
        self.page.zoom(2)
        self.assert_fits("weather", "hostile")


class Colours(harness.PageTest):
    def test_follow_the_wish_for_dark_or_light(self):
        self.page.open("weather")
        background, text = self.page.run(LUMINANCE)
        self.assertGreater((background + 0.05) / (text + 0.05), 7)
        self.page.screen(dark=True)
        background, text = self.page.run(LUMINANCE)
        self.assertLess(background, 0.05)
        self.assertGreater((text + 0.05) / (background + 0.05), 7)


class Paper(harness.PageTest):
    def test_gets_every_view_without_what_one_clicks_on(self):
        for view, address in harness.VIEWS.items():
            with self.subTest(view=view):
                self.page.open("weather", address)
                pdf = base64.b64decode(self.page.command("Page.printToPDF", preferCSSPageSize=True)["data"])
                self.assertTrue(pdf.startswith(b"%PDF-"))
                pages = len(re.findall(rb"/Type\s*/Page\b", pdf))
                self.assertIn(pages, range(1, 30))  # of a long table only so many rows
                self.page.screen(medium="print")
                self.assertFalse(self.page.all("#search")[0].is_displayed())
                self.assertFalse(self.page.all("#navigation")[0].is_displayed())
                self.assertTrue(self.page.one("h1").is_displayed())
                self.page.screen()

    def test_is_white_also_for_those_who_read_in_the_dark(self):
        self.page.screen(dark=True, medium="print")
        self.page.open("weather", "#lemma=rain")
        background, text = self.page.run(LUMINANCE)
        self.assertGreater(background, 0.9)
        self.assertLess(text, 0.1)
        colours = []
        for dark in (False, True):
            self.page.screen(dark=dark, medium="print")
            self.page.open("weather", "#ngram=1")
            colours.append(self.page.run("""return ['.cell-full', 'mark', '.ngram-tree .member'].map(selector => {
                const style = getComputedStyle(document.querySelector(selector));
                return [style.color, style.backgroundColor, style.fill]; })"""))
        self.assertEqual(*colours)


if __name__ == "__main__":
    harness.main()
