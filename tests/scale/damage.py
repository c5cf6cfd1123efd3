#!/usr/bin/env python3
"""Damages the intermediate files of ngrex-scale, whatever they are, and looks what becomes of it.

  damage.py --program NGREX --scale NGREX_SCALE [--seed S] [--rounds K]

Files of every kind that a run leaves, found in its folder, get a bit wrong, are cut, emptied, filled with zeros as after a loss of
power, exchanged with one another, replaced by those of the same name from runs over another corpus or with other cuts, or are
taken away; alone, with all files of their task, or several at a time. After that `write` names a file that is not what it should
be, or writes what is right; and `run` does, whatever it has to do again.
"""

import os
import random
import re
import shutil
import subprocess
import sys
import tempfile

from bench import Bench, read_arguments

SCENARIOS = {
  "pairs": ["-i", "list", "-n", "2", "-m", "**", "-f", "rules"],
  "contexts": ["-i", "list", "-n", "3", "-m", "*", "-cs", "1"],
}
OWN = ["--jobs", "2", "--memory", "8K"]
SECONDS_FOR_A_RUN = 120


def kind_of(name):
  return re.sub(r"\d+", "N", name)


class Damaged(Bench):
  """A bench whose intermediate files are damaged."""

  def __init__(self, arguments, folder, seed, options):
    super().__init__(os.path.abspath(arguments.program), os.path.abspath(arguments.scale), folder, seed, (60, 15, 10))
    self.options = options
    self.files = ["-o", "out", "-s", "stats"] + (["-c", "contexts"] if "-cs" in options else ["-fs", "filter"])
    self.names = self.files[1::2]
    self.write("list", "b\n")
    self.run(self.scale, "run", *options, *self.files, *OWN, "--shard", "500", "--work", "elsewhere")
    self.write("list", "a\nb\nc\n")
    self.run(self.scale, "run", *options, *self.files, *OWN, "--shard", "1500", "--work", "otherwise")
    self.run(self.ngrex, *options, *self.files)
    self.expected = {name: self.read(name) for name in self.names}
    self.messages = self.run(self.ngrex, *options, *self.files)
    assert self.count() == (0, self.messages)
    self.check("at first")

  def _scale(self, *words):
    for name in self.names:
      if os.path.exists(self.path(name)):
        os.remove(self.path(name))
    done = subprocess.run([self.scale, *words], cwd=self.folder, capture_output=True, check=False,
                          timeout=SECONDS_FOR_A_RUN, stdin=subprocess.DEVNULL)
    return done.returncode, done.stderr

  def count(self):
    return self._scale("run", *self.options, *self.files, *OWN, "--shard", "700", "--work", "work")

  def write_again(self):
    return self._scale("write", *self.files, "--work", "work")

  def check(self, context, names=None):
    for name in self.names if names is None else names:
      assert self.read(name) == self.expected[name], (context, name)

  def present(self):
    """The files that tasks have left; locks say nothing."""
    return [name for name in self.intermediate() if not name.startswith("lock")]

  def _put(self, name, content):
    with open(self.path("work/" + name), "wb") as file:
      file.write(content)

  def _damage_one(self, name, how):
    r = self.random
    content = bytearray(self.read("work/" + name))
    if how == "missing":
      os.remove(self.path("work/" + name))
    elif how in ("elsewhere", "otherwise"):
      if not os.path.exists(self.path(f"{how}/{name}")):
        return False
      shutil.copyfile(self.path(f"{how}/{name}"), self.path("work/" + name))
    elif how == "exchanged":
      other = r.choice([other for other in self.present() if kind_of(other) == kind_of(name)])
      self._put(name, self.read("work/" + other))
      self._put(other, content)
    else:
      place = r.randrange(len(content) + 1) if r.random() < 0.5 else max(len(content) - r.randint(1, 40), 0)
      if how == "bit" and place < len(content):
        content[place] ^= 1 << r.randrange(8)
      elif how == "cut":
        del content[place:]
      elif how == "empty":
        content.clear()
      elif how == "zeros":
        content[place:] = bytes(len(content) - place)
      elif how == "longer":
        content += r.choice([b"\0", b"\n", bytes(content[:100])])
      self._put(name, content)
    return True

  def damage(self, name, how, more):
    """Damages a file and perhaps others. Returns what was done."""
    names = [name]
    if more == "task":
      names = [other for other in self.present() if other.split(".")[0] == name.split(".")[0]]
    elif more == "several":
      names += self.random.sample(self.present(), 3)
    return [(other, how) for other in names if os.path.exists(self.path("work/" + other)) and self._damage_one(other, how)]

  def try_one(self, name, how, more):
    context = self.damage(name, how, more)
    status, err = self.write_again()
    if status == 0:
      assert err == b"", (context, err)
      self.check((context, "write"))
    else:
      # Whoever damages a manifest may have made it that of a task that has not been done.
      named = re.search(rb"intermediate file work/\S+ |folder work (holds no counts|are not complete)", err)
      assert status == 1 and named and err.count(b"\n") == 1, (context, status, err)
      self.check((context, "write"), [name for name in self.names if os.path.exists(self.path(name))])
    status, err = self.count()
    assert (status, err) == (0, self.messages), (context, status, err)
    self.check((context, "run"))


WAYS = ["bit", "bit", "cut", "empty", "zeros", "longer", "missing", "elsewhere", "otherwise", "exchanged"]


def main():
  arguments = read_arguments(("--rounds", {"type": int, "default": 1, "help": "how often each kind of file is damaged"}))
  for scenario, options in SCENARIOS.items():
    with tempfile.TemporaryDirectory(prefix="ngrex-scale-damage-") as folder:
      bench = Damaged(arguments, folder, arguments.seed, options)
      r = random.Random(arguments.seed)
      tried = 0
      for _ in range(arguments.rounds):
        kinds = {}
        for name in bench.present():
          kinds.setdefault(kind_of(name), []).append(name)
        for names in kinds.values():
          name = r.choice(names)
          if name in bench.present():
            bench.try_one(name, r.choice(WAYS), r.choice(["", "", "", "task", "several"]))
            tried += 1
      print(scenario, "survives", tried, "times over", len(kinds), "kinds of files", flush=True)
  return 0


if __name__ == "__main__":
  sys.exit(main())
