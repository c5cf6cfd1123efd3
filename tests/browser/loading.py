"""A report opens from the disk, by itself, on every view, and says what is wrong when it cannot."""

import os

import harness

REPORTS = ("weather", "triples", "fours", "scripts", "many", "hostile", "empty", "one")


class AReport(harness.PageTest):
    def test_opens_whatever_it_holds_and_shows_every_view(self):
        for report in REPORTS:
            self.page.open(report)
            for view, address in harness.VIEWS.items():
                with self.subTest(report=report, view=view):
                    self.page.go(address)
                    self.assertEqual(self.page.complaints(), [])
                    self.assertEqual(len(self.page.all("#view h1")), 1)

    def test_has_the_title_of_what_it_shows_in_front_of_its_own(self):
        titles = {}
        for view, address in harness.VIEWS.items():
            self.page.open("weather", address)
            titles[view] = self.page.driver.title
            self.assertTrue(titles[view].endswith("weather.txt"), titles[view])
        self.assertEqual(len(set(titles.values())), len(titles), titles)

    def test_without_rows_says_so(self):
        self.page.open("empty")
        self.assertRegex(self.page.text(), r"None of the \d+ pairs of the datafile was chosen for this report")
        self.assertEqual(self.page.all("#view table, #view h2"), [])

    def test_needs_nothing_but_itself(self):
        # Whether it asks for anything harness.PageTest looks at after every test.
        self.page.open("weather")
        policy = self.page.run("return document.querySelector('meta[http-equiv]').content")
        self.assertRegex(policy, r"^default-src 'none'; script-src 'sha256-[A-Za-z0-9+/]{43}='; "
                                 r"style-src 'sha256-[A-Za-z0-9+/]{43}='; base-uri 'none'; form-action 'none'$")


class ADamagedReport(harness.PageTest):
    """Cut off or changed on its way."""

    def assert_refused(self, change):
        with open(self.page.path("weather"), encoding="utf-8") as file:
            text = file.read()
        path = self.page.path("damaged")
        with open(path, "w", encoding="utf-8") as file:
            file.write(change(text))
        try:
            self.page.open("damaged")
            self.assertEqual(self.page.texts("h1"), ["This report cannot be opened"])
            self.assertIn("Its data are damaged", self.page.text())
        finally:
            os.remove(path)

    def test_says_so_when_a_part_of_its_data_is_missing(self):
        def shortened(text):
            begin = text.index(">", text.index('id="columns"')) + 1
            return text[:begin] + text[begin:begin + 1000] + text[text.index("</script>", begin):]

        self.assert_refused(shortened)

    def test_says_so_when_its_data_are_others(self):
        def changed(text):
            begin = text.index(">", text.index('id="columns"')) + 2000
            return text[:begin] + ("A" if text[begin] != "A" else "B") + text[begin + 1:]

        self.assert_refused(changed)

    def test_says_so_when_its_data_are_none(self):
        def emptied(text):
            begin = text.index(">", text.index('id="columns"')) + 1
            return text[:begin] + "?" + text[text.index("</script>", begin):]

        self.assert_refused(emptied)

    def test_says_so_when_it_was_cut_before_its_script(self):
        with open(self.page.path("weather"), encoding="utf-8") as file:
            text = file.read()
        path = self.page.path("damaged")
        with open(path, "w", encoding="utf-8") as file:
            file.write(text[:text.index('id="columns"') + 500])
        try:
            self.page.driver.get(self.page.url("damaged"))
            notice = self.page.until(lambda: self.page.texts("#too-old"), "a notice")
            self.assertIn("not complete", notice[0])
        finally:
            os.remove(path)


if __name__ == "__main__":
    harness.main()
