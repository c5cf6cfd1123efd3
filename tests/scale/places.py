#!/usr/bin/env python3
"""Where ngrex-scale is told to work and to write: folders that are used, foreign, strangely named, read-only or none at
all, and commands given from elsewhere. What cannot work is told before anything is counted, and touches nothing.

  places.py --program NGREX --scale NGREX_SCALE [--seed S]
"""

import fcntl
import os
import subprocess
import sys

from bench import Bench, in_folders

OPTIONS = ["-i", "list", "-n", "2", "-m", "**"]
OWN = ["--jobs", "2", "--shard", "1000", "--memory", "20K"]
NOBODY = 65534


class Places(Bench):
  def __init__(self, ngrex, scale, folder, seed):
    super().__init__(ngrex, scale, folder, seed, (40, 10, 5))
    self.expected = self.expect(*OPTIONS)
    os.remove(self.path("out.n"))
    os.remove(self.path("stats.n"))

  def content(self):
    """All that is there, with the content of files."""
    found = {}
    for top, folders, files in os.walk(self.folder):
      found.update((os.path.join(top, name), None) for name in folders)
      found.update((os.path.join(top, name), self.read(os.path.join(top, name))) for name in files)
    return found

  def works(self, work, *others, cwd=None):
    """A run in a folder, and write from it, leave what ngrex writes."""
    err = self.run(self.scale, "run", *OPTIONS, *OWN, "-o", "out", "-s", "stats", "--work", work, *others)
    assert (self.read("out"), self.read("stats"), err) == self.expected, (work, err)
    self.run(self.scale, "write", "-o", "again", "--work", work)
    assert self.read("again") == self.expected[0], work
    for name in ("out", "stats", "again"):
      os.remove(self.path(name))

  def refuses(self, what, *words, status=1):
    """Status, a sentence that says what is wrong, and nothing touched."""
    before = self.content()
    err = self.run(self.scale, *words, status=status)
    assert what in err, (words, err)
    assert self.content() == before, (words, set(self.content()) ^ set(before))
    return err


def check_names(bench):
  """Folders may be called anything."""
  os.mkdir(bench.path("there"))
  os.symlink("there", bench.path("link"))
  for work in ("a b", "a\nb", "ž東", "tab\there", "100%25", "a.b", "./sub.dir/", "-x", "link", "q'\"$(x)", bench.path("absolute")):
    if work == "./sub.dir/":
      os.mkdir(bench.path(work))
    bench.works(work)
    # A damaged file is found, and made again, under such a name too, whoever reads it.
    for maker, ending, reader in (("order-", ".ordered", None), ("arrange-", ".arranged", "order-")):
      folder = os.path.join(bench.folder, work)
      name = next(name for name in sorted(os.listdir(folder)) if name.startswith(maker) and name.endswith(ending))
      with open(os.path.join(folder, name), "r+b") as file:
        file.seek(20)
        byte = file.read(1)[0]
        file.seek(20)
        file.write(bytes([byte ^ 1]))
      if reader is None:
        err = bench.run(bench.scale, "write", "-o", "again", "--work", work, status=1)
        assert name.encode() in err, (work, err)
      else:
        for other in os.listdir(folder):
          if other.startswith(reader):
            os.remove(os.path.join(folder, other))
      bench.works(work)


def check_foreign(bench):
  """A folder that holds something else is left alone, and so is a file in its place."""
  os.mkdir(bench.path("mine"))
  bench.write("mine/number.txt", "precious\n")
  for work in ("mine", "."):
    bench.refuses(b"%s holds other files" % work.encode(), "run", *OPTIONS, "-o", "out", "--work", work, status=2)
  os.mkdir(bench.path("out.ngrex-scale"))
  bench.write("out.ngrex-scale/number.txt", "precious\n")
  bench.refuses(b"out.ngrex-scale holds other files", "run", *OPTIONS, "-o", "out", status=2)
  bench.refuses(b"holds no counts", "write", "-o", "out", "--work", "mine")
  bench.refuses(b"a/lock", "run", *OPTIONS, "-o", "out", "--work", "a")
  bench.refuses(b"no/such", "run", *OPTIONS, "-o", "out", "--work", "no/such")
  bench.refuses(b"expected the name of a folder", "run", *OPTIONS, "-o", "out", "--work", "", status=2)
  # What a workflow keeps there is no work of ours.
  os.makedirs(bench.path("logs/workflow/of an engine"))
  bench.works("logs")


def check_used(bench):
  """Nobody joins a run or a step at work."""
  bench.works("work")
  with open(bench.path("work/lock"), "rb") as lock:
    for kind in (fcntl.LOCK_EX, fcntl.LOCK_SH):
      fcntl.flock(lock, kind)
      bench.refuses(b"another run works in work", "run", *OPTIONS, "-o", "out", "--work", "work")
      bench.refuses(b"another run works in work", "plan", *OPTIONS, "-o", "out", "--work", "work")
      bench.refuses(b"another run works in work", "write", "-o", "out", "--work", "work")
    fcntl.flock(lock, fcntl.LOCK_EX)
    bench.refuses(b"another run works in work", "count", "--work", "work")
  bench.works("work")


def check_elsewhere(bench):
  """Relative names are those of whoever gives the command."""
  bench.works("work")
  os.makedirs(bench.path("some/where"))
  done = subprocess.run([bench.scale, "write", "-o", "out", "-s", "stats", "--work", "../../work"], check=False,
                        cwd=bench.path("some/where"), capture_output=True, stdin=subprocess.DEVNULL)
  assert (done.returncode, done.stderr) == (0, b""), done.stderr
  assert bench.read("some/where/out") == bench.expected[0] and bench.read("some/where/stats") == bench.expected[1]


def check_outputs(bench):
  """Outputs that cannot be, or are inputs, are told as ngrex tells it, before anything is counted."""
  os.mkdir(bench.path("folder"))
  bench.works("work")
  for option, usual in (("-o", []), ("-s", ["-o", "out"]), ("-fs", ["-o", "out", "-f", "rules"])):
    for path in ("no/such", "folder", "a", "b", "list", ""):
      words = [*OPTIONS, *usual, option, path]
      err = bench.refuses(b"FATAL ERROR: ", "run", *OWN, *words)
      before = bench.content()
      told = bench.run(bench.ngrex, *words, status=1)
      assert told == err, (words, told, err)
      if path in ("a", "b", "list"):
        assert bench.content() == before
      if os.path.exists(bench.path("out")):
        os.remove(bench.path("out"))  # ngrex opens it before it finds out
      if "-f" not in usual:
        bench.refuses(b"FATAL ERROR: ", "write", "--work", "work", *usual, option, path)
  bench.refuses(b"work", "run", *OPTIONS, *OWN, "-o", "work", "--work", "work")
  # A link is followed, and what is at its end is replaced.
  os.symlink("folder/end", bench.path("link"))
  bench.run(bench.scale, "run", *OPTIONS, *OWN, "-o", "link")
  assert os.path.islink(bench.path("link")) and bench.read("folder/end") == bench.expected[0]


def check_read_only(bench):
  """Nothing can be made in a folder that is read-only, and nothing is."""
  os.mkdir(bench.path("closed"), 0o755)
  bench.works("work")
  as_nobody = {"user": NOBODY, "group": NOBODY, "extra_groups": []} if os.geteuid() == 0 else {}
  if not as_nobody:
    os.chmod(bench.path("closed"), 0o555)
    os.chmod(bench.path("work"), 0o555)
    os.chmod(bench.path("work/lock"), 0o444)  # which its owner could open in a closed folder as well
  os.chmod(bench.folder, 0o755)
  os.mkdir(bench.path("open"))
  os.chmod(bench.path("open"), 0o777)
  try:
    for what, words in ((b"cannot make the folder closed/work", ["run", *OPTIONS, "-o", "open/out", "--work", "closed/work"]),
                        (b"Cannot open output file: closed/out!", ["run", *OPTIONS, "-o", "closed/out", "--work", "open/work"]),
                        (b"cannot open closed/lock", ["run", *OPTIONS, "-o", "open/out", "--work", "closed"]),
                        (b"work/lock", ["write", "-o", "open/out", "--work", "work"])):
      done = subprocess.run([bench.scale, *words], check=False, cwd=bench.folder, capture_output=True,
                            stdin=subprocess.DEVNULL, **as_nobody)
      assert done.returncode == 1 and what in done.stderr, (words, done)
      assert not os.listdir(bench.path("open")) and not os.listdir(bench.path("closed")), words
  except PermissionError as error:
    print("read-only folders are not tried:", error)  # the program is out of reach for others
  finally:
    os.chmod(bench.path("closed"), 0o755)
    os.chmod(bench.path("work"), 0o755)
    os.chmod(bench.path("work/lock"), 0o644)


def main():
  return in_folders(
    "places", (check_names, check_foreign, check_used, check_elsewhere, check_outputs, check_read_only), Places)


if __name__ == "__main__":
  sys.exit(main())
