#!/usr/bin/env python3
"""Lowers the limits of counting and compares ngrex-scale with the twin of ngrex, whose records count no further either.

  limits.py --scale NGREX_SCALE_LOWERED [--seed S] [--cases K] [--first C]

The program is ngrex-scale with another main, which takes its limits from the environment. The cases are those of
tests/differential. Files are the same byte for byte, and there is one more warning if, and only if, some count passes.
"""

import argparse
import os
import random
import shutil
import sys
import tempfile

import agree
import differential
import ngrex_reference


class Twin(ngrex_reference.Run):
  """The twin, the last of which can be asked how many N-grams it has counted."""

  last = None

  def __init__(self, *arguments):
    super().__init__(*arguments)
    Twin.last = self

  def all_ngrams(self):
    return sum(stats.extracted for stats in self.overall_stats)


def twin(case, folder, counter, carry):
  """The outcome of the twin with a counter and a carried amount of other sizes."""
  ngrex_reference.MAX_FREQUENCY, ngrex_reference.MAX_CARRY = counter, carry
  ngrex_reference.Run = Twin
  return differential.run_reference(case, folder)[0]


def main():
  parser = argparse.ArgumentParser()
  parser.add_argument("--scale", required=True)
  parser.add_argument("--seed", type=int, default=None)
  parser.add_argument("--cases", type=int, default=60)
  parser.add_argument("--first", type=int, default=0)
  options = parser.parse_args()
  scale = os.path.abspath(options.scale)
  environment_seed = os.environ.get("NGREX_TEST_SEED")
  seed = options.seed
  if seed is None:
    seed = int(environment_seed) if environment_seed else random.SystemRandom().randrange(1 << 32)
  print(f"seed {seed}", flush=True)
  base = tempfile.mkdtemp(prefix="ngrex-scale-limits-")
  agreed = left_out = passed = 0
  for number in range(options.first, options.first + options.cases):
    case = differential.Generator(seed, number).make()
    if not case.arguments or not agree.understood(case.arguments):
      left_out += 1
      continue
    r = random.Random(f"{seed}/{number}/limits")
    # A carried amount grows by what the counter holds until it would pass its own limit.
    counter = r.choice([1, 2, 3, 5, 17])
    carry = max(r.choice([1, 2, 3, 4, 7, 20, 1000]), counter)
    folders = [os.path.join(base, name) for name in ("twin", "scale")]
    for folder in folders:
      os.makedirs(folder)
      differential.write_folder(folder, case.files)
    size = sum(len(content) for content in case.files.values() if content)
    expected = twin(case, folders[0], counter, carry)
    if expected is None:
      left_out += 1
      for folder in folders:
        shutil.rmtree(folder)
      continue
    arguments = ["run", *agree.own_options(r, size), *case.arguments]
    os.environ["NGREX_LOWERED_LIMITS"] = f"frequency={carry}"
    got = agree.run(scale, arguments, case, folders[1])
    expected.out = b""
    if expected.status != 0:
      expected.files = got.files = {}
    warning = (f"WARNING: Counts pass {carry}, which is as far as ngrex counts! Frequencies stop there, and statistics "
               "begin again...\n").encode()
    if expected.status == 0 and Twin.last.all_ngrams() > carry:
      passed += 1
      expected.err += warning
    lines = differential.differences(expected, got)
    if lines:
      print(f"case {number} of seed {seed} disagrees with a counter to {counter} and a limit of {carry}; folder {base}")
      print("command: ngrex-scale " + " ".join(arguments))
      print("\n".join(lines[:80]))
      return 1
    agreed += 1
    for folder in folders:
      shutil.rmtree(folder)
  shutil.rmtree(base)
  assert passed > 0 or options.cases < 20
  print(f"{agreed} cases agree, {passed} of them beyond the limit, {left_out} left out (seed {seed})")
  return 0


if __name__ == "__main__":
  sys.exit(main())
