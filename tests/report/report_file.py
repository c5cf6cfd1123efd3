"""Takes the HTML file of ngrex-report apart, in another way than the page does it."""

import base64
import hashlib
import html.parser
import json
import re
import struct
import zlib

SIZES = {"u8": "B", "u16": "H", "u32": "I", "f64": "d"}


class Elements(html.parser.HTMLParser):
    """The elements of a page: names of all tags, contents of scripts and styles, and the policy."""

    def __init__(self, page):
        super().__init__()
        self.tags, self.scripts, self.styles, self.metas, self.title = [], [], [], [], ""
        self._open = None
        self.feed(page)
        self.close()

    def handle_starttag(self, tag, attributes):
        self.tags.append(tag)
        self._open = tag
        if tag == "script":
            self.scripts.append([dict(attributes), ""])
        elif tag == "style":
            self.styles.append("")
        elif tag == "meta":
            self.metas.append(dict(attributes))

    def handle_endtag(self, tag):
        self._open = None

    def handle_data(self, data):
        if self._open == "script":
            self.scripts[-1][1] += data
        elif self._open == "style":
            self.styles[-1] += data
        elif self._open == "title":
            self.title += data


def unpacked(text, places):
    """The columns of a container by name, and what is wrong with it."""
    inflater = zlib.decompressobj(16 + zlib.MAX_WBITS)
    data = inflater.decompress(base64.b64decode(text, validate=True))
    assert inflater.eof and not inflater.unused_data, "not one gzip member"
    columns, end = {}, 0
    for place in places:
        size = struct.calcsize(SIZES[place["type"]]) * place["length"]
        assert place["offset"] == end and place["offset"] % 8 == 0, place
        columns[place["name"]] = struct.unpack_from(f"<{place['length']}{SIZES[place['type']]}", data, place["offset"])
        end = (place["offset"] + size + 7) // 8 * 8
    assert len(columns) == len(places), "two columns of one name"
    assert end == len(data), "bytes that belong to no column"
    return columns


def texts_of(columns, pool):
    """The texts of a pool by their numbers."""
    data, begin, texts = bytes(columns[pool + ".bytes"]), 0, []
    for end in columns[pool + ".ends"]:
        texts.append(data[begin:end].decode())
        begin = end
    assert begin == len(data), f"bytes of {pool} behind the last text"
    return texts


class Report:
    """A report: `meta`, `columns` and `examples` (None without) by name, `script`, `style`, `policy`, `title`, `tags`."""

    def __init__(self, content):
        page = content.decode()
        assert "\0" not in page and page.startswith("<!DOCTYPE html>\n")
        elements = Elements(page)
        self.tags, self.title = elements.tags, elements.title
        self.style, = elements.styles
        data = {attributes["id"]: text for attributes, text in elements.scripts if "id" in attributes}
        self.script, = (text for attributes, text in elements.scripts if not attributes)
        assert len(data) == len(elements.scripts) - 1
        self.policy, = (meta["content"] for meta in elements.metas if meta.get("http-equiv") == "Content-Security-Policy")
        self.meta = json.loads(data.pop("report"))
        self.columns = unpacked(data.pop("columns"), self.meta["columns"])
        self.examples = None
        if "examples" in data:
            self.examples = unpacked(data.pop("examples"), self.meta["exampleColumns"])
        assert not data, data.keys()
        for name, text in (("script", self.script), ("style", self.style)):
            digest = base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()
            assert re.search(rf"{name}-src 'sha256-{re.escape(digest)}'(;|$)", self.policy), f"{name} is not that of the policy"
        assert self.policy.startswith("default-src 'none'; "), self.policy

    def rows(self):
        """The N-grams as dictionaries: the columns that ngrex-table has under the same names, numbers as numbers."""
        lemmas, tags, relations = (texts_of(self.columns, pool) for pool in ("lemmas", "tags", "relations"))
        assert sorted(set(lemmas)) == sorted(lemmas), "a lemma stands twice"
        rows = []
        for i in range(self.meta["rows"]):
            row, vector = {}, self.columns["vector"][i]
            for k in range(1, self.meta["n"] + 1):
                row[f"lemma{k}"] = lemmas[self.columns[f"lemma{k}"][i]]
                row[f"tag{k}"] = tags[self.columns[f"tag{k}"][i]]
                row[f"parent{k}"] = self.columns[f"parent{k}"][i]
                row[f"relation{k}"] = relations[self.columns[f"relation{k}"][i]]
            row.update({f"cell{c}": self.columns[f"cell{c}"][vector] for c in range(2 ** self.meta["n"])})
            row.update({m["name"]: self.columns["measure." + m["name"]][vector] for m in self.meta["measures"]})
            rows.append(row)
        return rows
