#!/usr/bin/env python3
"""Corpora that have many more N-grams than their size lets expect: words on which nearly all others depend. The files are
those of ngrex, and the memory of no process grows with the number of N-grams.

  dense.py --program NGREX --scale NGREX_SCALE [--sanitized]
"""

import argparse
import os
import resource
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from bench import Bench  # noqa: E402

MEMORY = "2M"
# Beside it there is what the program takes in any case.
MOST_DATA = 24 << 20


def stars(count, size, lemmas):
  """Sentences in which all words depend on the first, with so many lemmas in turn."""
  lines = []
  for sentence in range(count):
    for order in range(1, size + 1):
      lemma = f"w{(sentence * size + order) % lemmas}"
      lines.append(f"{order}\tw\t{lemma}\t{'NM'[order * 7 % 5 < 3]}\t{1 if order > 1 else 0}\tAtr\n")
    lines.append("\n")
  return "".join(lines)


def check_bytes(bench):
  """The files of a run that reads a bucket several times."""
  bench.write("a", stars(9, 18, 1000))
  bench.write("b", stars(9, 18, 150))
  options = ["-i", "list", "-n", "5", "-m", "*"]
  bench.write("rules", "M M M M N\n")
  for filtered in ([], ["-f", "rules"]):
    expected = bench.expect(*options, *filtered)
    err = bench.run(bench.scale, "run", *options, *filtered, "--memory", "1M", "--jobs", "2", "-o", "out.s", "-s", "stats.s")
    assert (bench.read("out.s"), bench.read("stats.s"), err) == expected, filtered


def check_memory(bench):
  """The memory of the step that adds up what all runs have, and of the one behind it when the filter refuses most of it."""
  bench.write("a", stars(24, 20, 1 << 20))
  bench.write("list", "a\n")
  bench.write("rules", "M M M M M N\n")
  bench.run(bench.scale, "plan", "-i", "list", "-n", "6", "-m", "*", "-f", "rules", "-o", "out.s", "--memory", MEMORY, "--jobs", "1",
            "--work", "work")
  for step in ("scan", "number", "map"):
    bench.run(bench.scale, step, "--work", "work")
  for step in ("reduce", "arrange"):
    bench.run(bench.scale, step, "--work", "work", limit=(resource.RLIMIT_DATA, MOST_DATA))
  counts = dict(line.split("\t")[:2] for line in bench.read("work/reduce-0.done").decode().splitlines())
  assert int(counts["refused"]) > 200_000 and int(counts["listed"]) + int(counts["refused"]) == 279_072, counts


def main():
  parser = argparse.ArgumentParser()
  parser.add_argument("--program", required=True)
  parser.add_argument("--scale", required=True)
  parser.add_argument("--sanitized", action="store_true", help="leave out the memory, which is that of a sanitizer")
  arguments = parser.parse_args()
  with tempfile.TemporaryDirectory(prefix="ngrex-scale-dense-") as folder:
    bench = Bench(os.path.abspath(arguments.program), os.path.abspath(arguments.scale), folder, 1)
    check_bytes(bench)
    if not arguments.sanitized:
      check_memory(bench)
  return 0


if __name__ == "__main__":
  sys.exit(main())
