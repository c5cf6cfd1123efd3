"""axe-core finds nothing to complain about, on no view, in light and in dark, wide and narrow."""

import os
import sys

import harness

AXE = os.path.join(harness.BUILD, "page-tools", "node_modules", "axe-core", "axe.min.js")

RULES = """const done = arguments[0];
axe.run(document, {resultTypes: ['violations'],
                   runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa', 'wcag22aa', 'best-practice']})
   .then(found => done(found.violations.map(rule => rule.id + ': ' + rule.help + ' ' +
                                                     rule.nodes.slice(0, 3).map(node => node.html.slice(0, 200)).join(' | '))),
         failure => done(['axe-core failed: ' + failure]))"""


class AxeTest(harness.PageTest):
    @classmethod
    def setUpClass(cls):
        with open(AXE, encoding="utf-8") as file:
            cls.axe = file.read()

    def assert_accessible(self, report, address, *, prepare=None, narrow=False):
        """Looks at one state in light and dark; a screen may be narrow instead of wide."""
        for dark in (False, True):
            with self.subTest(report=report, address=address, dark=dark, narrow=narrow):
                if narrow:
                    self.page.screen(390, 844, dark=dark)
                else:
                    self.page.screen(dark=dark)
                self.page.open(report, address)
                if prepare:
                    prepare()
                self.page.run(self.axe)
                self.assertEqual(self.page.driver.execute_async_script(RULES), [])


class NothingIsFound(AxeTest):
    def test_on_every_view(self):
        for address in harness.VIEWS.values():
            self.assert_accessible("weather", address)

    def test_on_a_narrow_screen(self):
        for address in harness.VIEWS.values():
            self.assert_accessible("weather", address, narrow=True)

    def test_with_shapes_of_trees(self):
        for report in ("triples", "fours"):
            for address in ("#lemma=the", "#ngram=1"):
                self.assert_accessible(report, address)

    def test_with_other_scripts(self):
        for address in ("#lemma=雨", "#ngram=1", "#table"):
            self.assert_accessible("scripts", address)

    def test_without_rows(self):
        for address in ("#", "#table", "#picture"):
            self.assert_accessible("empty", address)

    def test_where_nothing_is_to_be_found(self):
        for address in ("#lemma=nonesuch", "#ngram=99999", "#table&lemma=nonesuch"):
            self.assert_accessible("weather", address)


if __name__ == "__main__":
    if not os.path.exists(AXE):
        print(f"axe-core is not in {AXE}; scripts/page-tools puts it there")
        sys.exit(harness.MISSING)
    harness.main()
