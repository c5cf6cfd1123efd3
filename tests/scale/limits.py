#!/usr/bin/env python3
"""Lowers the limits of counting and compares ngrex-scale with the twin of ngrex, whose records count no further either; and
with --exact, with a twin that counts without limits and works out tables and Pearson's coefficient in whole numbers.

  limits.py --scale NGREX_SCALE_LOWERED [--seed S] [--cases K] [--first C]

The program is ngrex-scale with another main, which takes its limits from the environment. The cases are those of
tests/differential. Files are the same byte for byte, and there is one more warning if, and only if, some count passes and
is not written as it is.
"""

import argparse
import fractions
import math
import os
import random
import shutil
import sys
import tempfile

import agree
import differential
import ngrex_reference
import seeds


class Twin(ngrex_reference.Run):
  """The twin, the last of which can be asked how many N-grams it has counted."""

  last = None

  def __init__(self, *arguments):
    super().__init__(*arguments)
    Twin.last = self

  def all_ngrams(self):
    return sum(stats.extracted for stats in self.overall_stats)


class ExactTables:
  """Tables of whole numbers: each cell by itself, as a sum over the patterns that have its members and more."""

  def __init__(self, frequencies, n):
    types = range(1 << n)
    self.F = list(frequencies)
    self.O = [sum((-1) ** (j ^ t).bit_count() * self.F[j] for j in types if j & t == t) for t in types]
    assert min(self.O) >= 0 and sum(self.O) == self.F[0]
    total = float(self.F[0])
    self.E = []
    for t in types:
      expected = total
      for k in range(n):
        bit = 1 << k
        # Those that have some member of the N-gram, but not this one.
        absent = sum(self.O[j] for j in types if j != 0 and j & bit == 0)
        expected = ngrex_reference.div(float(self.F[bit] if t & bit else absent), total) * expected
      self.E.append(expected)


def exact_pearsons_coefficient(tables):
  neither, second, first, both = tables.O
  numerator = both * neither - first * second
  sums = [both + first, both + second, neither + first, neither + second]
  value = ngrex_reference.div(float(numerator), math.sqrt(float(sums[0]) * float(sums[1]) * (float(sums[2]) * float(sums[3]))))
  if all(sums):
    square = fractions.Fraction(numerator * numerator, math.prod(sums))
    assert abs(fractions.Fraction(value) ** 2 - square) <= square / 10**12 and (value < 0) == (numerator < 0)
  return value


USUAL = ngrex_reference.Tables, ngrex_reference.pearsons_coefficient, ngrex_reference.MAX_FREQUENCY, ngrex_reference.MAX_CARRY


def twin(case, folder, exact, counter, carry, lemmas):
  """The outcome of the twin with a counter, a carried amount and a number of lemmas of other sizes, or of the exact one; and
  whether the fatal error's wording is free."""
  ngrex_reference.MOST_LEMMAS = lemmas
  ngrex_reference.Tables, ngrex_reference.pearsons_coefficient, *_ = USUAL
  ngrex_reference.MAX_FREQUENCY, ngrex_reference.MAX_CARRY = counter, carry
  if exact:
    ngrex_reference.Tables, ngrex_reference.pearsons_coefficient = ExactTables, exact_pearsons_coefficient
    ngrex_reference.MAX_FREQUENCY, ngrex_reference.MAX_CARRY = USUAL[2:]
  ngrex_reference.Run = Twin
  return differential.run_reference(case, folder)


def main():
  parser = argparse.ArgumentParser()
  parser.add_argument("--scale", required=True)
  parser.add_argument("--cases", type=int, default=60)
  parser.add_argument("--first", type=int, default=0)
  options = seeds.parse(parser)
  scale = os.path.abspath(options.scale)
  seed = options.seed
  base = tempfile.mkdtemp(prefix="ngrex-scale-limits-")
  agreed = left_out = passed = exactly = 0
  for number in range(options.first, options.first + options.cases):
    case = differential.Generator(seed, number).make()
    if not case.arguments or not agree.understood(case.arguments):
      left_out += 1
      continue
    r = random.Random(f"{seed}/{number}/limits")
    # A carried amount grows by what the counter holds until it would pass its own limit.
    counter = r.choice([1, 2, 3, 5, 17])
    carry = max(r.choice([1, 2, 3, 4, 7, 20, 1000]), counter)
    lemmas = r.choice([1, 2, 4, 8, 16, 32, 1 << 24])
    folders = [os.path.join(base, name) for name in ("twin", "scale")]
    for folder in folders:
      os.makedirs(folder)
      differential.write_folder(folder, case.files)
    size = sum(len(content) for content in case.files.values() if content)
    exact = r.random() < 0.4
    expected, free_fatal_text = twin(case, folders[0], exact, counter, carry, lemmas)
    if expected is None:
      left_out += 1
      for folder in folders:
        shutil.rmtree(folder)
      continue
    arguments = ["run", *["--exact"][:exact], *agree.own_options(r, size), *case.arguments]
    os.environ["NGREX_LOWERED_LIMITS"] = f"frequency={carry} lemmas={lemmas}"
    got = agree.run(scale, arguments, case, folders[1])
    expected.out = b""
    if expected.status != 0:
      expected.files = got.files = {}
    warning = (f"WARNING: Counts pass {carry}, which is as far as ngrex counts! Frequencies stop there, and statistics "
               "begin again; --exact writes them as they are...\n").encode()
    if not exact and expected.status == 0 and Twin.last.all_ngrams() > carry:
      passed += 1
      expected.err += warning
    exactly += exact
    if free_fatal_text:
      differential.drop_fatal_texts(expected, got)
    lines = differential.differences(expected, got)
    if lines:
      print(f"case {number} of seed {seed} disagrees with a counter to {counter}, a limit of {carry}, and {lemmas} lemmas; "
            f"folder {base}")
      print("command: ngrex-scale " + " ".join(arguments))
      print("\n".join(lines[:80]))
      return 1
    agreed += 1
    for folder in folders:
      shutil.rmtree(folder)
  shutil.rmtree(base)
  assert (passed > 0 and exactly > 0) or options.cases < 20
  print(f"{agreed} cases agree, {passed} of them beyond the limit, {exactly} with --exact, {left_out} left out (seed {seed})")
  return 0


if __name__ == "__main__":
  sys.exit(main())
