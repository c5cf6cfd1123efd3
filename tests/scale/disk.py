#!/usr/bin/env python3
"""What goes from the folder of intermediate files while a run is at work, to make room, and that the files are those of
ngrex whatever happens then: killed and resumed runs, damaged files whose sources have gone, longer lists.

  disk.py --program NGREX --scale NGREX_SCALE [--seed S]
"""

import os
import re
import subprocess
import sys

import resume
from bench import Bench, corpus, in_folders

# What write reads, and what tells whether it is right.
STAYS = re.compile(r"lock|lock\..*|.*\.done|order-\d+\.ordered|count-\d+\.frequencies|number\.(lemmas|tags)|scan-\d+\.warnings|"
                   r"merge-\d+\.cells|format-\d+\.text")
OPTIONS = ["-i", "list", "-n", "2", "-m", "**", "-f", "rules"]


class DroppingBench(Bench):
  def dropping(self, *options):
    return self.scaled(*options, "--drop")

  def spent(self):
    return [name for name in self.intermediate() if not STAYS.fullmatch(name)]


def check_what_stays(bench):
  """With --drop the folder holds what write reads; nothing is done twice, and what was not dropped before goes later."""
  for options in (OPTIONS, ["-i", "list", "-n", "3", "-c", "contexts", "-cw", "3"]):
    bench.forget()
    bench.write("contexts", "none")
    expected = bench.expect(*options)
    contexts = bench.read("contexts")
    bench.write("contexts", "none")
    assert bench.dropping(*options) == expected
    assert bench.read("contexts") == contexts
    assert not bench.spent(), bench.spent()
    before = bench.times()
    assert bench.dropping(*options) == expected
    assert bench.scaled(*options) == expected
    assert bench.times() == before
    bench.run(bench.ngrex, *options, "-tf", "3", "-o", "out.n")
    bench.run(bench.scale, "write", "--work", "work", "-tf", "3", "-o", "out.w")
    assert bench.read("out.w") == bench.read("out.n")
  bench.forget()
  expected = bench.expect(*OPTIONS)
  assert bench.scaled(*OPTIONS) == expected
  assert bench.spent()
  before = bench.times()
  assert bench.dropping(*OPTIONS) == expected
  assert not bench.spent(), bench.spent()
  assert bench.times() == before


def check_usual_folder(bench):
  """In a folder that is removed at the end, files go behind the step that was the last to read them."""
  expected = bench.expect(*OPTIONS)
  while not bench.kill_when(bench.start(*OPTIONS), "out.s.ngrex-scale", lambda names: "count-0.done" in names):
    pass
  names = os.listdir(bench.path("out.s.ngrex-scale"))
  gone = re.compile(r"scan-\d+\.(words|lemmas|tags)|number\.numbers-.*|map-\d+\.run-.*|reduce-\d+\.(listed|refused|pieces)|"
                    r"arrange-\d+\.(arranged|candidates)")
  assert not [name for name in names if gone.fullmatch(name)], names
  err = bench.run(bench.scale, "run", "-o", "out.s", "-s", "stats.s", "--jobs", "2", "--shard", "4000", "--memory", "20K",
                  *OPTIONS)
  assert (bench.read("out.s"), bench.read("stats.s"), err) == expected
  assert not os.path.exists(bench.path("out.s.ngrex-scale"))


def check_kills(bench):
  """Killed at any moment the run goes on; what is damaged by then is made again, with all that is needed for it."""
  expected = bench.expect(*OPTIONS)

  def damage_some(kills):
    for _ in range(kills % 3):
      names = [name for name in bench.intermediate() if name not in ("lock", "plan.done")]
      if names:
        resume.damage(bench, bench.random.choice(names), bench.random.choice(["missing", "cut", "bit"]))

  kills = bench.kill_again_and_again(*OPTIONS, "--drop", between=damage_some)
  assert bench.dropping(*OPTIONS) == expected
  assert not bench.spent(), bench.spent()
  return kills


def check_damage(bench):
  """Whatever is damaged is made again, although nothing is left of what it was made of; write refuses it by name."""
  expected = bench.expect(*OPTIONS)
  assert bench.dropping(*OPTIONS) == expected
  names = [name for name in bench.intermediate() if name not in ("lock", "plan.done")]
  kinds = sorted({re.sub(r"\d+", "", name) for name in names})
  for kind in kinds:
    name = bench.random.choice([name for name in names if re.sub(r"\d+", "", name) == kind])
    for how in ("missing", bench.random.choice(["cut", "empty", "foreign", "bit"])):
      resume.damage(bench, name, how)
      if name.endswith((".ordered", ".frequencies")) and how == "missing":
        err = bench.run(bench.scale, "write", "--work", "work", "-o", "other", status=1)
        assert b"not complete" in err or name.encode() in err, (name, err)
      assert bench.dropping(*OPTIONS) == expected, (name, how)
      assert not bench.spent(), bench.spent()


def check_lists(bench):
  """A longer list and a changed datafile are counted, and with them whatever is needed again."""
  assert bench.dropping(*OPTIONS) == bench.expect(*OPTIONS)
  bench.write("list", "a\nb\nc\n")
  assert bench.dropping(*OPTIONS) == bench.expect(*OPTIONS)
  bench.write("b", bench.read("b").decode().replace("dog", "pig"))
  assert bench.scaled(*OPTIONS) == bench.expect(*OPTIONS)
  bench.write("list", "c\na\n")
  assert bench.dropping(*OPTIONS) == bench.expect(*OPTIONS)


def check_steps(bench):
  """Behind single steps, files go as far as steps are over, and not before; steps make again what is needed again."""
  options = ["-i", "list", "-n", "2", "-m", "**", "-cw", "3"]
  files = ["-o", "out.s", "-s", "stats.s", "-c", "contexts.s"]
  steps = subprocess.run([bench.scale, "steps"], check=True, capture_output=True, text=True).stdout.split()

  def told(*words, status=0):
    return bench.run(bench.scale, *words, "--work", "work", status=status)

  def do_steps():
    told("plan", *options, *files, "--shard", "4000", "--memory", "20K")
    halves = 0
    for step in steps:
      told(step, "--task", "0", "--of", "2")
      before = bench.intermediate()
      told("drop")
      after = bench.intermediate()
      told(step, "--task", "1", "--of", "2")
      if set(bench.times()) - set(after):
        halves += 1
        assert set(after) >= set(before), (step, set(before) - set(after))
      told("drop")
    assert not bench.spent(), bench.spent()
    return halves

  def expect_files():
    expected = bench.expect(*options, "-c", "contexts.n")
    told("write", *files)
    assert (bench.read("out.s"), bench.read("stats.s")) == expected[:2]
    assert bench.read("contexts.s") == bench.read("contexts.n")

  assert b"holds no counts" in told("drop", status=1)
  assert b"drop takes no --jobs" in told("drop", "--jobs", "1", status=2)
  assert do_steps() > 4
  expect_files()
  before = bench.times()
  do_steps()
  assert bench.times() == before

  bench.write("list", "a\nb\nc\n")
  do_steps()
  expect_files()

  # One file that is damaged takes all that it was made of with it; asking each step once makes them again.
  for name in ("scan-0.warnings", "number.lemmas", "order-0.ordered", "count-0.frequencies", "format-0.text"):
    open(bench.path("work/" + name), "wb").close()
    os.remove(bench.path("work/" + name.split(".")[0] + ".done"))
    do_steps()
    expect_files()


def check_early_steps(bench):
  """A step that comes before the one whose files it reads, when these are of a smaller corpus, is refused."""
  options = ["-i", "list", "-n", "2", "-m", "**", "-cw", "3"]
  files = ["-o", "out.s", "-s", "stats.s", "-c", "contexts.s"]
  steps = subprocess.run([bench.scale, "steps"], check=True, capture_output=True, text=True).stdout.split()
  early = {"arrange": ("order", rb"work/arrange-\d+\.done is of older counts"),
           "merge": ("format", rb"work/merge-\d+\.done is of older counts")}

  def told(*words, status=0):
    return bench.run(bench.scale, *words, "--work", "work", status=status)

  told("plan", *options, *files, "--shard", "8000", "--memory", "20K")
  for step in steps:
    told(step)
  bench.write("c", corpus(bench.random, 1500))
  bench.write("list", "a\nb\nc\n")
  told("plan", *options, *files, "--shard", "8000", "--memory", "20K")
  for step in steps:
    if step in early:
      too_early, message = early[step]
      err = told(too_early, status=1)
      assert re.search(message, err), err
    told(step)
  expected = bench.expect(*options, "-c", "contexts.n")
  told("write", *files)
  assert (bench.read("out.s"), bench.read("stats.s")) == expected[:2]
  assert bench.read("contexts.s") == bench.read("contexts.n")


def main():
  return in_folders("disk", (check_what_stays, check_usual_folder, check_kills, check_damage, check_lists, check_steps,
                             check_early_steps), DroppingBench)


if __name__ == "__main__":
  sys.exit(main())
