"""Pictures of every view of the reports that the tests open, to be looked at by a person.

usage: screenshots.py BUILD_FOLDER FOLDER [REPORT...]

Writes FOLDER/REPORT-VIEW-WIDTH-light.png and -dark.png, each with the whole length of the page, up to 3,000 pixels, and
FOLDER/readme.png. The reports are those that the test browser.reports has made (reports.py).
"""

import base64
import os
import sys

import harness

STATES = {
    "weather": {**harness.VIEWS, "filtered": "#table&sort=-G2,%2Blemma1&relation=Atr&least=2"},
    "triples": {"profile": "#lemma=tea", "ngram": "#ngram=1"},
    "fours": {"profile": "#lemma=the", "ngram": "#ngram=1"},
    "scripts": {"profile": "#lemma=雨", "ngram": "#ngram=1", "table": "#table"},
    "many": {"table": "#table", "picture": "#picture"},
    "hostile": {"start": "#", "profile": "#lemma=rain", "table": "#table"},
    "empty": {"start": "#", "table": "#table", "picture": "#picture"},
    "one": {"ngram": "#ngram=1", "picture": "#picture"},
}
WIDTHS = {"desktop": (1280, 900), "telephone": (390, 844)}


def write(page, path, width, height, scale=1):
    picture = page.command("Page.captureScreenshot", captureBeyondViewport=True,
                           clip={"x": 0, "y": 0, "width": width, "height": height, "scale": scale})
    with open(path, "wb") as file:
        file.write(base64.b64decode(picture["data"]))


def write_readme(page, path):
    """What README.md shows: "heavy rain", from its heading to its sentences."""
    page.screen(920, 700)
    page.open("weather", "#lemma=rain")
    page.go(page.run("return [...document.querySelectorAll('a.ngram')].find(link => link.textContent === 'heavy rain').hash"))
    # Without the room that is kept for a scroll bar.
    width, height = page.run("return [document.body.clientWidth, document.querySelectorAll('.ngram-section h2')[1].offsetTop - 30]")
    write(page, path, width, height, 2)


def main():
    folder, wanted = sys.argv[2], sys.argv[3:] or list(STATES)
    os.makedirs(folder, exist_ok=True)
    page = harness.Page(os.path.join(harness.BUILD, "reports"))
    for report in wanted:
        for view, address in STATES[report].items():
            for width, size in WIDTHS.items():
                for dark in (False, True):
                    page.screen(*size, dark=dark)
                    page.open(report, address)
                    page.settle()
                    height = min(3000, page.run("return document.documentElement.scrollHeight"))
                    name = f"{report}-{view}-{width}-{'dark' if dark else 'light'}.png"
                    write(page, os.path.join(folder, name), size[0], max(height, size[1]))
                    print(name)
    write_readme(page, os.path.join(folder, "readme.png"))
    page.close()
    return 0


if __name__ == "__main__":
    sys.exit(main())
