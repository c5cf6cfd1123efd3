#!/usr/bin/env python3
"""Compares ngrex-scale with ngrex, byte for byte, on treebanks: to be run by hand, as no treebank is part of the project.

  treebanks.py --program NGREX --scale NGREX_SCALE [--sizes 2 3 4] [--draws K] [--seed S] DATAFILE[:MASK]...

Each datafile is counted for every N with its mask, without a mask and with short ones; with statistics, with a filter
of its most frequent tags, and with contexts of words and of sentences. Against each of these stand K runs of ngrex-scale, and
one of its command write, with shards, memory and jobs drawn at random. ngrex keeps contexts in memory, so of large
datafiles only the first megabyte is taken for them. At the end all datafiles are counted as one list.
"""

import argparse
import collections
import filecmp
import os
import random
import shlex
import subprocess
import sys
import tempfile
import time

from bench import seeds

MOST_SHARDS = 300  # each is a few processes
MOST_BYTES_WITH_CONTEXTS = 1000000
LIMIT = 3600


def expand(word):
  path, _, mask = word.partition(":")
  return os.path.abspath(path), mask


def frequent_tags(path, mask):
  """The most frequent tags of the beginning of a datafile, under a mask."""
  tags = collections.Counter()
  with open(path, "rb") as file:
    for line in file.read(1 << 20).split(b"\n"):
      fields = line.split()
      if len(fields) == 6:
        tags["".join(chr(letter) if kept == "*" else "-" for letter, kept in zip(fields[3], mask))] += 1
  return [tag for tag, _ in tags.most_common(8) if tag.strip("-") and tag.isascii()]


def rules_file(r, tags, n):
  lines = [" ".join(r.choice([*tags, "-", "-"]) for _ in range(n)) for _ in range(3)]
  return "".join(line + "\n" for line in lines)


def beginning(path, most):
  """The sentences in the first bytes of a datafile."""
  with open(path, "rb") as file:
    text = file.read(most + 1)
  return text if len(text) <= most else text[:text.rindex(b"\n\n") + 2]


class Comparison:
  def __init__(self, arguments, folder, r):
    self.ngrex, self.scale = os.path.abspath(arguments.program), os.path.abspath(arguments.scale)
    self.draws, self.folder, self.r = arguments.draws, folder, r
    self.runs = self.differences = 0

  def _run(self, command):
    done = subprocess.run(command, cwd=self.folder, capture_output=True, check=False, timeout=LIMIT, stdin=subprocess.DEVNULL)
    return done.returncode, done.stderr

  def _files(self, letter, options):
    names = [("-o", "out"), ("-s", "stats")] + ([("-fs", "filter")] if "-f" in options else [])
    names += [("-c", "contexts")] if "-cw" in options or "-cs" in options else []
    return [word for option, name in names for word in (option, f"{name}.{letter}")]

  def _path(self, name):
    return os.path.join(self.folder, name)

  def _check(self, what, expected, got, options):
    self.runs += 1
    wrong = [] if expected == got else [f"status and messages are {got}, not {expected}"]
    for ours, theirs in zip(self._files("s", options)[1::2], self._files("n", options)[1::2]):
      if expected[0] == 0 and not (os.path.exists(self._path(ours)) and
                                   filecmp.cmp(self._path(ours), self._path(theirs), shallow=False)):
        wrong.append(f"{ours} differs from {theirs}")
      if os.path.exists(self._path(ours)):
        os.remove(self._path(ours))
    if wrong:
      self.differences += 1
      print("DIFFERENCE:", shlex.join(what), *wrong, sep="\n  ", flush=True)

  def compare(self, size, *options):
    r = self.r
    begin = time.monotonic()
    expected = self._run([self.ngrex, *options, *self._files("n", options)])
    took = [time.monotonic() - begin]
    for _ in range(self.draws):
      shard = max(r.choice([200, 1000, size // 7, size // 3, size, size + 1]), size // MOST_SHARDS, 1)
      own = ["--jobs", str(r.randint(1, 5)), "--shard", str(shard), "--work", "work"]
      # With less memory there are thousands of files, which prove no more than hundreds do.
      least = size // 4 if size > 200000 else 1
      memory = r.choice([1, 20 << 10, 1 << 20, 16 << 20, 64 << 20, None])
      own += ["--memory", str(max(memory, least))] if memory else []
      command = [self.scale, "run", *own, *options, *self._files("s", options)]
      begin = time.monotonic()
      got = self._run(command)
      took.append(time.monotonic() - begin)
      self._check(command, expected, got, options)
    if expected[0] == 0:
      sieve = r.choice([["-tf", "2"], ["-tl", "3"], ["-ta", "-tf", "3", "-tl", "1"], ["-tc", "3", "-p", "3"]])
      self._run([self.ngrex, *options, *sieve, *self._files("n", options)])
      command = [self.scale, "write", "--work", "work", *sieve, *self._files("s", options)]
      # Warnings are said by the run that reads.
      self._check(command, (0, b""), self._run(command), options)
    for name in os.listdir(self.folder):
      if name.endswith(".n"):
        os.remove(self._path(name))
    subprocess.run(["rm", "-rf", self._path("work")], check=True)
    print(shlex.join(options), "status", expected[0], *(f"{seconds:.1f}s" for seconds in took), flush=True)

  def write(self, name, content):
    with open(self._path(name), "wb") as file:
      file.write(content if isinstance(content, bytes) else content.encode())
    return name

  def datafile(self, path, mask, n):
    r = self.r
    size = os.path.getsize(path)
    self.write("list", path + "\n")
    base = ["-i", "list", "-n", str(n)]
    masked = ["-m", mask] if mask else []
    self.compare(size, *base, *masked)
    self.compare(size, *base, *r.choice([[], ["-m", "*"], ["-m", "**"], ["-m", "-*"]]))
    tags = frequent_tags(path, mask or "*")
    filtered = []
    if tags:
      self.write("rules", rules_file(r, tags, n))
      filtered = ["-f", "rules"]
      self.compare(size, *base, *(masked or ["-m", "*"]), *filtered)
    text = beginning(path, MOST_BYTES_WITH_CONTEXTS >> (n - 2))
    self.write("list", self.write("beginning", text) + "\n")
    self.compare(len(text), *base, *masked, "-cw", "10")
    if tags:
      self.write("context_rules", "".join(tag + "\n" for tag in tags[:3]))
      self.compare(len(text), *base, *(masked or ["-m", "*"]), "-cs", "1", "-cf", "context_rules", *filtered)


def main():
  parser = argparse.ArgumentParser()
  parser.add_argument("--program", required=True)
  parser.add_argument("--scale", required=True)
  parser.add_argument("--sizes", type=int, nargs="+", default=[2, 3, 4])
  parser.add_argument("--draws", type=int, default=2)
  parser.add_argument("datafiles", nargs="+", metavar="DATAFILE[:MASK]")
  arguments = seeds.parse(parser)
  datafiles = [expand(word) for word in arguments.datafiles]
  with tempfile.TemporaryDirectory(prefix="ngrex-scale-treebanks-") as folder:
    comparison = Comparison(arguments, folder, random.Random(arguments.seed))
    for n in arguments.sizes:
      for path, mask in datafiles:
        comparison.datafile(path, mask, n)
    comparison.write("list", "".join(path + "\n" for path, _ in datafiles))
    comparison.compare(sum(os.path.getsize(path) for path, _ in datafiles), "-i", "list", "-n", "2", "-m", "*")
  print(f"{comparison.runs} runs, {comparison.differences} differences (seed {arguments.seed})")
  return 1 if comparison.differences else 0


if __name__ == "__main__":
  sys.exit(main())
