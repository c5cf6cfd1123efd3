"""What the tests of the report page share: a headless Chromium that is watched while it shows a report.

Every test ends with the question whether the page said anything on the console, whether anything was against its policy, and
whether anything but the report itself was asked for; so each test of what the page does is also one of what it must not do.
A file of tests starts one browser. Its command line is the build folder, in which reports.py has put the reports.
"""

import json
import os
import re
import shutil
import sys
import tempfile
import time
import unittest
import urllib.parse

MISSING = 77  # the exit status that ctest takes for "skipped"

try:
    from selenium import webdriver
    from selenium.common.exceptions import JavascriptException, StaleElementReferenceException
    from selenium.webdriver.chrome.options import Options
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.action_chains import ActionChains
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
except ImportError:
    print("This Python has no selenium; Debian has it for /usr/bin/python3 in the package python3-selenium")
    sys.exit(MISSING)

PATIENCE = 20  # seconds until what is waited for counts as missing; a machine with other work to do is slow
DESKTOP = (1280, 900)
VIEWS = {"start": "#", "profile": "#lemma=rain", "ngram": "#ngram=1", "table": "#table", "picture": "#picture", "about": "#about"}

# Says on the console what the policy forbade, before the page's own script runs.
WATCH = """addEventListener('securitypolicyviolation',
    event => console.error('against the policy: ' + event.violatedDirective + ' ' + event.blockedURI));"""

# Calls back when the page has not changed for a few frames, and its data have been unpacked.
SETTLED = """const done = arguments[0];
let quiet;
const wait = () => { clearTimeout(quiet); quiet = setTimeout(end, 50); };
const end = () => { if (document.querySelector('[aria-busy=true]')) return wait(); observer.disconnect(); done(); };
const observer = new MutationObserver(wait);
observer.observe(document, {subtree: true, childList: true, attributes: true, characterData: true});
wait();"""


def program(name):
    found = shutil.which(name)
    if found is None:
        print(f"{name} is not here; Debian has it in the packages chromium and chromium-driver")
        sys.exit(MISSING)
    return found


class Page:
    """A window of the browser, and the report in it."""

    def __init__(self, reports):
        self.reports = reports
        self._opened = 0
        self.downloads = tempfile.mkdtemp(prefix="ngrex-downloads-")
        options = Options()
        options.binary_location = program("chromium")
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--lang=en-US",
                         "--disable-background-networking", "--disable-component-update", "--disable-sync",
                         "--disable-dev-shm-usage", "--force-color-profile=srgb", "--hide-scrollbars"):
            options.add_argument(argument)
        options.add_experimental_option("prefs", {"download.default_directory": self.downloads,
                                                  "download.prompt_for_download": False})
        options.add_experimental_option("perfLoggingPrefs", {"enableNetwork": True, "enablePage": False})
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(service=Service(program("chromedriver")), options=options)
        self.driver.set_script_timeout(60)
        self.command("Page.addScriptToEvaluateOnNewDocument", source=WATCH)
        self.command("Browser.grantPermissions", permissions=["clipboardReadWrite", "clipboardSanitizedWrite"])

    def close(self):
        self.driver.quit()
        shutil.rmtree(self.downloads)

    def command(self, name, **parameters):
        """A command of Chromium's own protocol."""
        return self.driver.execute_cdp_cmd(name, parameters)

    # What it is looked at with.

    def screen(self, width=DESKTOP[0], height=DESKTOP[1], scale=1, dark=False, medium=""):
        self.command("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=scale, mobile=False)
        self.command("Emulation.setEmulatedMedia", media=medium, features=[
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"},
            {"name": "prefers-reduced-motion", "value": "reduce"}])

    def zoom(self, factor):
        """What a person does to read more easily: everything that many times as large in the same window."""
        self.screen(DESKTOP[0] // factor, DESKTOP[1] // factor, scale=factor)

    # Going somewhere.

    def path(self, report):
        return os.path.join(self.reports, report + ".html")

    def url(self, report):
        return "file://" + urllib.parse.quote(self.path(report))

    def open(self, report, address="#"):
        """Opens a report as if its address had just been typed, not from within the page."""
        self._opened += 1  # another query makes it another document, even where only the hash differs
        self.driver.get(f"{self.url(report)}?{self._opened}{address}")
        self.until(lambda: self.run("return document.documentElement.dataset.state"), "the page")
        self.settle()

    def go(self, address):
        """Goes on within the page, as a link does."""
        self.run("location.hash = arguments[0]", address)
        self.settle()

    def settle(self):
        """Waits until nothing in the page has changed for a moment."""
        self.driver.execute_async_script(SETTLED)

    def address(self):
        return self.run("return location.hash")

    # Looking.

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def until(self, condition, what):
        """Waits until the condition holds, and returns what it said then."""
        deadline = time.monotonic() + PATIENCE
        while True:
            try:
                value = condition()
            except StaleElementReferenceException:
                value = None
            if value:
                return value
            if time.monotonic() > deadline:
                raise AssertionError(f"waited {PATIENCE} s for {what}; the page shows: {self.text()[:2000]!r}")
            time.sleep(0.02)

    def all(self, selector, below=None):
        return (below or self.driver).find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector, below=None):
        """The only element that the selector finds and that can be seen, once there is one."""
        def seen():
            found = [element for element in self.all(selector, below) if element.is_displayed()]
            if len(found) > 1:
                raise AssertionError(f"{len(found)} elements {selector}")
            return found[0] if found else None

        return self.until(seen, selector)

    def texts(self, selector):
        """What stands in the elements, whether it is on the screen or not."""
        return self.run("return [...document.querySelectorAll(arguments[0])].map(e => e.textContent.trim())", selector)

    def description(self, element):
        """What a screen reader says of a drawing besides its name."""
        return self.run("return document.getElementById(arguments[0].getAttribute('aria-describedby')).textContent", element)

    def text(self):
        return self.run("return document.body ? document.body.innerText : ''")

    # Acting.

    def press(self, *keys):
        ActionChains(self.driver).send_keys(*keys).perform()

    def press_with(self, held, key):
        ActionChains(self.driver).key_down(held).send_keys(key).key_up(held).perform()

    def click(self, element):
        self.run("arguments[0].scrollIntoView({block: 'center'})", element)
        ActionChains(self.driver, duration=20).move_to_element(element).click().perform()

    def fill(self, element, text):
        """Types into a field in place of what is there."""
        element.click()
        self.press_with(Keys.CONTROL, "a")
        self.press(Keys.DELETE)
        element.send_keys(text)

    def clipboard(self):
        return self.driver.execute_async_script("navigator.clipboard.readText().then(arguments[0], error => arguments[0](String(error)))")

    def downloaded(self, ending):
        """The name and the bytes of the file that comes, which is then taken away. None of the files of tests is empty."""
        def complete():
            # An empty file keeps the name until another one, which is complete, is put in its place.
            return [name for name in os.listdir(self.downloads)
                    if name.endswith(ending) and os.path.getsize(os.path.join(self.downloads, name)) > 0]

        name = self.until(complete, f"a download with the name *{ending}")[0]
        path = os.path.join(self.downloads, name)
        with open(path, "rb") as file:
            content = file.read()
        os.remove(path)
        return name, content

    # What it must not do.

    def complaints(self):
        """Messages on the console, violations of the policy and requests since the last time."""
        said = [f"{entry['level']}: {entry['message']}" for entry in self.driver.get_log("browser")]
        for entry in self.driver.get_log("performance"):
            message = json.loads(entry["message"])["message"]
            if message["method"] not in ("Network.requestWillBeSent", "Network.webSocketCreated"):
                continue
            url = urllib.parse.unquote(message["params"].get("request", message["params"])["url"])
            if not (url.startswith(("file://" + self.reports + "/", "blob:")) and re.search(r"\.html(\?\d+)?(#.*)?$|^blob:", url)):
                said.append("asked for " + url)
        return said


_page = None


class PageTest(unittest.TestCase):
    """A test with a fresh screen, after which the page must have been quiet."""

    maxDiff = None

    def setUp(self):
        global _page
        if _page is None:
            _page = Page(os.path.join(BUILD, "reports"))
        self.page = _page
        self.page.screen()

    def tearDown(self):
        self.assertEqual(self.page.complaints(), [], "the page was not quiet")


def tool(name):
    """A program of the build."""
    return os.path.join(BUILD, name)


BUILD = os.path.abspath(sys.argv[1]) if len(sys.argv) > 1 else None


def main():
    """Runs the tests of the calling file; further arguments are those of unittest, such as the name of a test."""
    try:
        unittest.main(argv=[sys.argv[0], *sys.argv[2:]], verbosity=2)
    finally:
        if _page is not None:
            _page.close()
