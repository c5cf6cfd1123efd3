"""What ngrex-table says of the N-grams of a report, and what follows from that by plain sums."""

import csv
import io
import math
import os
import subprocess

import harness


def printed(report, *options):
    """What ngrex-table prints of the file that a report was made of, as bytes."""
    command = [harness.tool("ngrex-table"), *options, os.path.join(harness.BUILD, "reports", report + ".txt")]
    return subprocess.run(command, check=True, capture_output=True).stdout


def rows(report, columns, *options):
    """The rows as dictionaries of texts by the names of the columns."""
    text = printed(report, "--columns", columns, "--format", "tsv", *options).decode("utf-8", "replace")
    return list(csv.DictReader(io.StringIO(text, newline=""), delimiter="\t", quoting=csv.QUOTE_NONE))


def cells(row):
    return [int(row[f"cell{i}"]) for i in range(sum(name.startswith("cell") for name in row))]


def expected(observed):
    """The counts that would be expected if the words had nothing to do with one another."""
    n = len(observed).bit_length() - 1
    total = sum(observed)
    marginals = [sum(count for i, count in enumerate(observed) if i >> (n - 1 - k) & 1) for k in range(n)]
    return [total * math.prod((m if i >> (n - 1 - k) & 1 else total - m) / total for k, m in enumerate(marginals))
            for i in range(len(observed))]


def number(shown):
    """A number of the page, which has a true minus sign, thousands apart and signs for what is not finite."""
    text = shown.replace(",", "").replace("\u2212", "-").replace("\u221e", "inf")
    return math.nan if text == "\u2013" else float(text)


def value(printed):
    """A number of ngrex-table."""
    return math.nan if printed == "NA" else float(printed)


def same(shown, exact, digits=4):
    """Whether a number of the page is that number to so many digits."""
    if math.isnan(exact):
        return math.isnan(number(shown))
    return math.isclose(number(shown), exact, rel_tol=0.6 * 10 ** (1 - digits), abs_tol=1e-12)
