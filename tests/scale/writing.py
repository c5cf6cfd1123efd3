#!/usr/bin/env python3
"""Writing by several processes: the same bytes from one to five of them, in files and pipes, and nothing that is not
finished whatever ends it.

  writing.py --program NGREX --scale NGREX_SCALE [--seed S]
"""

import glob
import os
import resource
import subprocess
import sys
import time

from bench import Bench, corpus, in_folders

OPTIONS = ["-i", "list", "-n", "2"]


def prepare(bench, memory):
  """A corpus with some ten thousands of N-grams, and its counts in a work folder."""
  bench.write("a", corpus(bench.random, 7000))
  bench.run(bench.scale, "run", *OPTIONS, "-o", "out.s", "--work", "work", "--jobs", "2", "--memory", memory)


def expected(bench, *options):
  bench.run(bench.ngrex, *OPTIONS, *options, "-o", "out.n")
  return bench.read("out.n")


def damage(bench, pattern):
  """Damages a byte in the first segment of a file, where only its reader will notice."""
  path = sorted(glob.glob(bench.path("work/" + pattern)))[-1]
  with open(path, "r+b") as file:
    file.seek(20)
    byte = file.read(1)
    file.seek(20)
    file.write(bytes([byte[0] ^ 1]))
  return os.path.basename(path).encode()


def leftovers(bench):
  return [name for name in os.listdir(bench.folder) if name.endswith(".part")]


def check_jobs(bench):
  """Whatever the jobs and the memory, and what is asked for, the file is that of ngrex."""
  for memory in ("1", "300K", "64M"):
    bench.forget()
    prepare(bench, memory)
    content = expected(bench)
    assert bench.read("out.s") == content
    for jobs in range(1, 6):
      for extra in ([], [["-tf", "2"], ["-tl", "3", "-p", "4"], ["-te", "0.5"]][jobs % 3]):
        bench.run(bench.scale, "write", "--work", "work", *extra, "--jobs", str(jobs), "-o", "out.w")
        assert bench.read("out.w") == (expected(bench, *extra) if extra else content), (memory, jobs, extra)
    with subprocess.Popen([bench.scale, "write", "--work", "work", "--jobs", "3", "-o", "/dev/stdout"],
                          cwd=bench.folder, stdout=subprocess.PIPE) as process:
      assert process.stdout.read() == content
    assert process.returncode == 0


def check_exact(bench):
  """While nothing wraps, --exact changes Pearson's coefficient and nothing else, and only where that wraps: where it is
  negative, or its denominator takes more than 32 bits."""
  prepare(bench, "300K")
  files = {}
  for name, words in (("plain", []), ("exact", ["--exact"])):
    bench.run(bench.scale, "write", "--work", "work", *words, "--jobs", "3", "-o", name, "-s", name + ".stats")
    files[name] = bench.read(name)
  assert files["plain"] == bench.read("out.s")
  assert bench.read("plain.stats") == bench.read("exact.stats")
  bench.run(bench.scale, "run", *OPTIONS, "--exact", "-o", "out.e", "--work", "work", "--jobs", "2")
  assert bench.read("out.e") == files["exact"]
  same = other = 0
  plain, exact = (files[name].decode().split("\n") for name in ("plain", "exact"))
  assert len(plain) == len(exact)
  for i in range(3, len(plain) - 1, 5):
    assert plain[i - 3:i] == exact[i - 3:i]
    neither, second, first, both = map(int, plain[i - 1].split("\t"))
    denominator = (both + first) * (both + second) * (neither + first) * (neither + second)
    wraps = both * neither < first * second or denominator >= 1 << 32
    a, b = plain[i].split("\t"), exact[i].split("\t")
    assert a[:3] + a[4:] == b[:3] + b[4:]
    if not wraps:
      assert a[3] == b[3], (plain[i - 1], a[3], b[3])
      same += 1
    else:
      other += a[3] != b[3]
    assert -1 <= float(b[3]) <= 1
  assert same > 0 and other > 100, (same, other)
  least = ["-tp", "0.05"]
  bench.run(bench.scale, "write", "--work", "work", "--exact", *least, "-o", "sieved")
  blocks = [exact[i - 3:i + 2] for i in range(3, len(exact) - 1, 5) if float(exact[i].split("\t")[3]) >= 0.05]
  assert bench.read("sieved").decode() == "".join(line + "\n" for block in blocks for line in block) + "\n"
  for command in (["plan", *OPTIONS, "-o", "x"], ["map"]):
    err = bench.run(bench.scale, *command, "--work", "work", "--exact", status=2)
    assert f"{command[0]} takes no --exact".encode() in err, err


def check_full(bench):
  """A file that cannot grow any more ends the writing at whatever place."""
  prepare(bench, "300K")
  bench.run(bench.scale, "write", "--work", "work", "-o", "whole")
  size = len(bench.read("whole"))
  bench.write("out.w", "of before")
  for most in [5000, *(bench.random.randrange(5000, size) for _ in range(6)), size - 1]:
    err = bench.run(bench.scale, "write", "--work", "work", "--jobs", str(bench.random.randint(2, 4)), "-o", "out.w",
                    status=1, limit=(resource.RLIMIT_FSIZE, most))
    assert err == b"FATAL ERROR: Cannot write to file: out.w!\n", err
    assert bench.read("out.w") == b"of before" and not leftovers(bench)
    assert not os.path.exists(bench.path("work/output.unfinished"))


def check_damage(bench):
  """What turns out to be damaged while it is written is named by write and made again by run."""
  for pattern in ("order-*.ordered", "count-*.frequencies"):
    bench.forget()
    prepare(bench, "300K")
    content = bench.read("out.s")
    name = damage(bench, pattern)
    bench.write("out.w", "of before")
    err = bench.run(bench.scale, "write", "--work", "work", "--jobs", "3", "-o", "out.w", status=1)
    assert b"intermediate file work/" + name + b" is damaged: ngrex-scale run makes it again" in err, err
    assert bench.read("out.w") == b"of before" and not leftovers(bench)
    bench.run(bench.scale, "run", *OPTIONS, "-o", "out.w", "--work", "work", "--jobs", "3")
    assert bench.read("out.w") == content


def check_kills(bench):
  """What is left by a run that was killed while it wrote, in whatever way, is removed by the next one."""
  prepare(bench, "300K")
  content = bench.read("out.s")
  kills = 0
  for _ in range(200):
    process = subprocess.Popen([bench.scale, "write", "--work", "work", "--jobs", "2", "-o", "out.w"], cwd=bench.folder)
    while process.poll() is None and not os.path.exists(bench.path("work/output.unfinished")):
      time.sleep(0.0005)
    process.kill()
    process.wait()
    assert not os.path.exists(bench.path("out.w")) or bench.read("out.w") == content
    subprocess.run(["flock", bench.path("work/lock"), "true"], check=False, timeout=60)
    if leftovers(bench):
      kills += 1
      bench.write("out.w.1.part", "not ours")
      bench.run(bench.scale, "write", "--work", "work", "--jobs", "2", "-o", "out.w")
      assert leftovers(bench) == ["out.w.1.part"], leftovers(bench)
      os.remove(bench.path("out.w.1.part"))
      os.remove(bench.path("out.w"))
    if kills == 3:
      return kills
  raise AssertionError(f"{kills} kills came while the file was written")


def main():
  return in_folders("writing", (check_jobs, check_exact, check_full, check_damage, check_kills), Bench)


if __name__ == "__main__":
  sys.exit(main())
