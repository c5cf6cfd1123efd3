#!/usr/bin/env python3
"""Compares ngrex-scale with ngrex where a corpus has more tags or more different N-grams than a run can hold: both end
with the same failure and the same status, and with the same warnings before it where tags end it.

  ends.py --program NGREX_LOWERED --scale NGREX_SCALE_LOWERED [--seed S]

The programs are ngrex and ngrex-scale with another main, which takes limits from the environment.
"""

import os
import random
import subprocess
import sys
import tempfile

from bench import read_arguments

RELATIONS = ["Sb", "Obj", "Atr", "Pred"]


def sentence(r, tags, lemmas):
  length = r.randint(1, 6)
  words = "".join(f"{order} w l{r.randrange(lemmas)} {r.choice(tags)} {r.randint(0, length)} {r.choice(RELATIONS)}\n"
                  for order in range(1, length + 1))
  return ("bad line\n" if r.random() < 0.1 else "") + words + "\n"


def main():
  arguments = read_arguments()
  program, scale = arguments.program, arguments.scale
  r = random.Random(arguments.seed)

  with tempfile.TemporaryDirectory(prefix="ngrex-scale-ends-") as folder:
    def write(name, text):
      with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
        file.write(text)

    def corpus(make):
      """Writes a list of datafiles of some sentences each."""
      names = [f"d{i}" for i in range(r.randint(1, 12))]
      for name in names:
        write(name, "".join(make() for _ in range(r.randint(0, 40))))
      write("last", "".join(make() for _ in range(300)))
      write("list", "".join(f"{name}\n" for name in [*names, "last"]))

    def run(command, limits):
      for name in ("out", "stats"):
        if os.path.exists(os.path.join(folder, name)):
          os.remove(os.path.join(folder, name))
      done = subprocess.run(command, cwd=folder, capture_output=True, check=False, timeout=120, stdin=subprocess.DEVNULL,
                            env={**os.environ, "NGREX_LOWERED_LIMITS": limits})
      files = []
      for name in ("out", "stats"):
        if done.returncode == 0:
          with open(os.path.join(folder, name), "rb") as file:
            files.append(file.read())
      return done.returncode, done.stderr.decode(), files

    def compare(options, limits, expected_end, all_warnings):
      """Runs both; returns whether the run came to that end."""
      options = [*options, "-i", "list", "-n", "2", "-o", "out", "-s", "stats"]
      expected = run([program, *options], limits)
      own = ["--jobs", str(r.randint(1, 4)), "--shard", str(r.choice([50, 500, 5000])), "--memory", r.choice(["1K", "100K", "64M"])]
      got = run([scale, "run", *own, *options], limits)
      if all_warnings or expected[0] == 0:
        assert got == expected, (own, options, limits, expected, got)
      else:
        # ngrex ends while it reads, ngrex-scale when it has read everything.
        assert got[0] == expected[0] and got[2] == expected[2], (own, options, limits, expected, got)
        ends = [err.splitlines()[-1] for err in (got[1], expected[1])]
        assert ends[0] == ends[1], (own, options, limits, ends)
      assert (expected[0] == 1) == (expected_end in expected[1]), expected
      return expected[0] == 1

    ended = 0
    for _ in range(6):
      # 254 tags are as many as there may be, one more is too many.
      count = r.choice([254, 255, 256, 300])
      tags = [f"T{i}" for i in range(count)]
      waiting = [f"1 w l {tag} 0 Sb\n\n" for tag in tags]
      r.shuffle(waiting)
      corpus(lambda: sentence(r, tags[:20], 5) + (waiting.pop() if waiting and r.random() < 0.9 else ""))
      assert compare(["-m", "****"], "", "morphologic tags store has overflowen", True) or count == 254 or waiting
      ended += 1
    records = 0
    write("rules", "NN VB\n")
    for _ in range(4):
      corpus(lambda: sentence(r, ["NN", "VB", "AA"], 5))
      limits = f"records={r.choice([150, 250, 100000])}"
      records += compare(["-m", "**"], limits, "different N-grams of type 3, which is as many as can be counted", False)
    for _ in range(4):
      # More first words than pairs pass the filter.
      corpus(lambda: sentence(r, ["NN", "AA", "AA"] if r.random() < 0.98 else ["NN", "VB"], 3000))
      records += compare(["-m", "**", "-f", "rules"], f"records={r.choice([60, 80])}", "different N-grams of type 1, which is", False)
    print(f"{ended} corpora with too many tags or nearly so, {records} with too many N-grams")
    assert records > 3
  return 0


if __name__ == "__main__":
  sys.exit(main())
