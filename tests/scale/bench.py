"""What the tests of the folder of intermediate files share: small corpora, and the two programs at work on them."""

import argparse
import os
import random
import resource
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import seeds  # noqa: E402

LEMMAS = ["dog", "cat", "run", "big", "house", "see", "tree", "well_x", "rain", "heavy"]
TAGS = ["NN", "VB", "AA"]
RELATIONS = ["Sb", "Obj", "Atr", "Pred"]


def sentence(r, warnings=0.01):
  length = r.randint(1, 9)
  lines = []
  for order in range(1, length + 1):
    if r.random() < warnings:
      order = 77
    lines.append(f"{order}\tw\t{r.choice(LEMMAS)}{r.choice(['', '', str(r.randint(0, 40))])}\t{r.choice(TAGS)}\t"
                 f"{r.randint(0, length)}\t{r.choice(RELATIONS)}\n")
  return "".join(lines) + "\n"


def corpus(r, size, warnings=0.01):
  return "".join(sentence(r, warnings) for _ in range(size))


def read_arguments(*more):
  """The command line of a test: --program NGREX, --scale NGREX_SCALE, --seed S, and what `more` adds to its parser. The
  paths are made absolute."""
  parser = argparse.ArgumentParser()
  parser.add_argument("--program", required=True)
  parser.add_argument("--scale", required=True)
  for name, words in more:
    parser.add_argument(name, **words)
  arguments = seeds.parse(parser)
  arguments.program, arguments.scale = os.path.abspath(arguments.program), os.path.abspath(arguments.scale)
  return arguments


def in_folders(name, checks, make):
  """Calls each check with what `make(program, scale, folder, seed)` makes of a new folder, and says that it holds."""
  arguments = read_arguments()
  for check in checks:
    with tempfile.TemporaryDirectory(prefix=f"ngrex-scale-{name}-") as folder:
      result = check(make(arguments.program, arguments.scale, folder, arguments.seed))
      print(check.__name__, "holds" + (f" ({result})" if result else ""), flush=True)
  return 0


class Bench:
  """A folder with a corpus, and the two programs in it."""

  def __init__(self, ngrex, scale, folder, seed, sizes=(320, 80, 60), warnings=0.01):
    self.ngrex, self.scale, self.folder = ngrex, scale, folder
    self.random = random.Random(seed)
    for name, size in zip("abc", sizes):
      self.write(name, corpus(self.random, size, warnings))
    self.write("rules", "NN -\nVB AA\n")
    self.write("list", "a\nb\n")

  def write(self, name, text):
    with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
      file.write(text)

  def path(self, name):
    return os.path.join(self.folder, name)

  def read(self, name):
    with open(self.path(name), "rb") as file:
      return file.read()

  def run(self, *words, status=0, limit=None):
    """Standard error of a program; `limit` is a resource and how much of it there is."""
    done = subprocess.run(words, cwd=self.folder, capture_output=True, check=False, timeout=300,
                          stdin=subprocess.DEVNULL,
                          preexec_fn=limit and (lambda: resource.setrlimit(limit[0], (limit[1], limit[1]))))
    assert done.returncode == status, (words, done.returncode, done.stderr)
    return done.stderr

  def expect(self, *options):
    """The files and standard error of ngrex."""
    err = self.run(self.ngrex, *options, "-o", "out.n", "-s", "stats.n")
    return self.read("out.n"), self.read("stats.n"), err

  def scaled(self, *options):
    err = self.run(self.scale, "run", "-o", "out.s", "-s", "stats.s", "--work", "work", "--jobs", "2", "--shard", "4000",
                   "--memory", "20K", *options)
    return self.read("out.s"), self.read("stats.s"), err

  def start(self, *options):
    """A run that is at work while this returns, with tasks so small that there are many."""
    return subprocess.Popen([self.scale, "run", "-o", "out.s", "-s", "stats.s", "--jobs", "2", "--shard", "4000",
                             "--memory", "20K", *options], cwd=self.folder, stdin=subprocess.DEVNULL,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)

  def kill_when(self, process, folder, wanted):
    """Kills a run as soon as `wanted(names)` holds of the files in its folder; returns whether that came before its end,
    which may come first wherever nobody looks for a while."""
    folder = self.path(folder)
    while process.poll() is None:
      try:
        if wanted(os.listdir(folder)):
          break
      except FileNotFoundError:
        pass
      time.sleep(0.001)
    process.kill()
    if process.wait() == 0:
      return False
    assert process.returncode == -signal.SIGKILL, process.returncode
    if not os.path.exists(folder):
      return False
    # Its tasks die with it, and let the folder go.
    subprocess.run(["flock", os.path.join(folder, "lock"), "true"], check=True, timeout=60)
    return True

  def kill_again_and_again(self, *options, between):
    """Kills runs in the folder `work`, with more and more tasks done, until one comes to its end; calls `between(kills)`
    after each kill, and returns how many there were. Where they end before they are looked at, it begins
    anew."""
    kills = done = 0
    while True:
      if self.kill_when(self.start("--work", "work", *options), "work",
                        lambda names: sum(name.endswith(".done") for name in names) > done):
        kills += 1
        done += 7
        between(kills)
      elif kills >= 3:
        return kills
      else:
        self.forget()
        kills = done = 0

  def intermediate(self):
    return sorted(os.listdir(self.path("work")))

  def times(self, ending=".done"):
    """When the tasks were done, by the names of their manifests."""
    return {name: os.stat(self.path("work/" + name)).st_mtime_ns for name in self.intermediate()
            if name.endswith(ending) and name != "plan.done"}

  def forget(self):
    subprocess.run(["rm", "-rf", self.path("work")], check=True)
