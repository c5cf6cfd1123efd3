"""axe-core finds nothing to complain about, on no view, in light and in dark, wide and narrow."""

import os
import sys

import harness

AXE = os.path.join(harness.BUILD, "page-tools", "node_modules", "axe-core", "axe.min.js")

COMPLAINTS = """const [only, done] = arguments;
axe.run(document, {resultTypes: ['violations'], runOnly: only ? {type: 'rule', values: only} :
                   ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa', 'best-practice']})
   .then(found => done(found.violations.map(rule => rule.id + ': ' + rule.help + ' ' +
                                                     rule.nodes.slice(0, 3).map(node => node.html.slice(0, 200)).join(' | '))),
         failure => done(['axe-core failed: ' + failure]))"""


class Axe(harness.PageTest):
    @classmethod
    def setUpClass(cls):
        with open(AXE, encoding="utf-8") as file:
            cls.axe = file.read()

    def complaints(self, only=None):
        if not self.page.run("return 'axe' in window"):
            self.page.run(self.axe)
        return self.page.driver.execute_async_script(COMPLAINTS, only)

    def assert_nothing_is_found(self, report, *addresses):
        """All rules in light, and in dark those that have to do with colours."""
        self.page.open(report)
        for address in addresses:
            self.page.go(address)
            for dark in (False, True):
                with self.subTest(report=report, address=address, dark=dark):
                    self.page.screen(dark=dark)
                    self.assertEqual(self.complaints(["color-contrast", "link-in-text-block"] if dark else None), [])

    def test_finds_what_is_wrong(self):
        self.page.open("weather")
        self.page.run("""const picture = document.createElement('canvas');
                         picture.setAttribute('role', 'img');
                         document.querySelector('h1').append(picture)""")
        self.assertEqual([complaint.split(":")[0] for complaint in self.complaints()], ["role-img-alt"])

    def test_finds_nothing_on_any_view(self):
        self.assert_nothing_is_found("weather", *harness.VIEWS.values())

    def test_finds_nothing_on_a_narrow_screen(self):
        self.page.screen(390, 844)
        self.page.open("weather")
        for address in harness.VIEWS.values():
            with self.subTest(address=address):
                self.page.go(address)
                self.assertEqual(self.complaints(), [])

    def test_finds_nothing_where_trees_have_shapes(self):
        self.assert_nothing_is_found("triples", "#lemma=make")
        self.assert_nothing_is_found("fours", "#ngram=1")

    def test_finds_nothing_in_other_scripts(self):
        self.assert_nothing_is_found("scripts", "#lemma=雨", "#ngram=1")

    def test_finds_nothing_where_nothing_is(self):
        self.assert_nothing_is_found("empty", "#", "#table", "#picture")
        self.assert_nothing_is_found("weather", "#lemma=nonesuch", "#ngram=99999", "#table&lemma=nonesuch")

    def test_finds_nothing_while_one_searches_and_folds_open(self):
        self.page.open("weather")
        self.page.one("#search").send_keys("r")
        self.page.one("#suggestions")
        self.assertEqual(self.complaints(), [])
        self.page.open("weather", "#table")
        for summary in self.page.all("#view summary"):
            summary.click()
        self.assertEqual(self.complaints(), [])


if __name__ == "__main__":
    if not os.path.exists(AXE):
        print(f"axe-core is not in {AXE}; scripts/page-tools puts it there")
        sys.exit(harness.MISSING)
    harness.main()
