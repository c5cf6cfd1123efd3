#!/usr/bin/env python3
"""What becomes of the folder of intermediate files: killed and resumed runs, damaged files, two runs at a time, files
written again, longer lists and changed datafiles. Whatever happens, the files are those of ngrex.

  resume.py --program NGREX --scale NGREX_SCALE [--seed S]
"""

import fcntl
import os
import re
import resource
import signal
import subprocess
import sys
import tempfile

from bench import Bench, corpus, read_arguments


def check_kills(bench, options):
  """Killed at moments that lie closer and closer to the end, the run goes on from what is done."""
  expected = bench.expect(*options)
  bench.forget()
  kills = bench.kill_again_and_again(*options, between=lambda kills: None)
  assert bench.scaled(*options) == expected
  return kills


def check_nothing_done_twice(bench, options):
  expected = bench.expect(*options)
  assert bench.scaled(*options) == expected
  before = bench.times()
  assert bench.scaled(*options) == expected
  assert bench.times() == before


def damage(bench, name, how):
  """Damages a file of the folder; returns whether there was anything to damage, as an empty file cannot be cut."""
  path = bench.path("work/" + name)
  with open(path, "rb") as file:
    before = file.read()
  content = bytearray(before)
  if how == "missing":
    os.remove(path)
    return True
  if how == "cut":
    content = content[:len(content) // 2]
  elif how == "empty":
    content = b""
  elif how == "foreign":
    content = b"1\tdog\tNN\t0\tSb\n" * 20
  elif content:
    content[bench.random.randrange(len(content))] ^= 1 << bench.random.randrange(8)
  else:
    content = b"\0"
  with open(path, "wb") as file:
    file.write(content)
  return content != before


def check_damage(bench, options):
  """Whatever is damaged is made again, and write refuses it by name."""
  expected = bench.expect(*options)
  assert bench.scaled(*options) == expected
  names = [name for name in bench.intermediate() if name not in ("lock", "plan.done")]
  for name in bench.random.sample(names, 40):
    how = bench.random.choice(["missing", "cut", "empty", "foreign", "bit", "bit"])
    is_damaged = damage(bench, name, how)
    # Patterns that are missing may have been removed, as nothing behind their counts needs them.
    is_spent = how == "missing" and name.endswith(".patterns")
    if name.startswith(("count-", "order-")) and how != "bit" and is_damaged and not is_spent:
      err = bench.run(bench.scale, "write", "--work", "work", "-o", "other", status=1)
      assert b"not complete" in err or name.encode() in err, (name, how, err)
    got = bench.scaled(*options)
    assert got == expected, (name, how)
  # Damage that only shows when a task reads the file: its maker is asked again.
  name = next(name for name in names if name.startswith("order-") and name.endswith(".ordered"))
  path = bench.path("work/" + name)
  content = bytearray(open(path, "rb").read())
  content[20] ^= 1
  with open(path, "wb") as file:
    file.write(content)
  err = bench.run(bench.scale, "write", "--work", "work", "-o", "other", status=1)
  assert name.encode() in err, err
  assert bench.scaled(*options) == expected


def check_damaged_warnings(bench, options):
  """Warnings that have been said when a damaged file is met are not said again."""
  bench.write("a", "first bad line\n\n" + corpus(bench.random, 200) + "last bad line\n\n")
  bench.write("list", "a\n")
  expected = bench.expect(*options)
  assert bench.scaled(*options) == expected
  shards = sum(name.startswith("scan-") and name.endswith(".done") for name in bench.intermediate())
  assert shards > 1
  name = f"scan-{shards - 1}.warnings"
  content = bytearray(bench.read("work/" + name))
  content[20] ^= 1
  with open(bench.path("work/" + name), "wb") as file:
    file.write(content)
  assert bench.scaled(*options) == expected


def check_damaged_plan(bench, options):
  """Without its plan a folder is refused by write; run makes it again, and counts nothing again that is right."""
  expected = bench.expect(*options)
  assert bench.scaled(*options) == expected
  before = bench.times()
  damage(bench, "plan.done", "bit")
  err = bench.run(bench.scale, "write", "--work", "work", "-o", "other", status=1)
  assert b"work/plan.done" in err, err
  assert bench.scaled(*options) == expected
  assert bench.times() == before


def check_older_version(bench, options):
  """What another version of the program has left is refused by write; run makes all of it again."""
  expected = bench.expect(*options)
  assert bench.scaled(*options) == expected
  before = bench.times()
  for name in [*before, "plan.done"]:
    text = bench.read("work/" + name).decode()
    older, found = re.subn(r"\nchecksum\t\d+\t", "\nchecksum\t", text)
    assert found == 1
    bench.write("work/" + name, older)
  left = bench.times()
  err = bench.run(bench.scale, "write", "--work", "work", "-o", "other", status=1)
  assert b"work/plan.done is of another version" in err, err
  assert bench.scaled(*options) == expected
  assert set(bench.times()) == set(left) and all(at != left[name] for name, at in bench.times().items())


def check_ignored_children(bench, options):
  """Where the surroundings ignore that processes end, a run ends as ever."""
  expected = bench.expect(*options)
  done = subprocess.run([bench.scale, "run", *options, "-o", "out.s", "--jobs", "2"], cwd=bench.folder, capture_output=True,
                        check=False, timeout=60, stdin=subprocess.DEVNULL,
                        preexec_fn=lambda: signal.signal(signal.SIGCHLD, signal.SIG_IGN))
  assert (done.returncode, done.stderr) == (0, expected[2]), done
  assert bench.read("out.s") == expected[0]


def check_same_number(bench, options):
  """A file that a process of the same number has left, as it may in a container, is in nobody's way."""
  expected = bench.expect(*options)
  def leave():
    with open(f"out.s.{os.getpid()}.part", "wb") as file:
      file.write(b"left")
  done = subprocess.run([bench.scale, "run", *options, "-o", "out.s"], cwd=bench.folder, capture_output=True, check=False,
                        timeout=60, stdin=subprocess.DEVNULL, preexec_fn=leave)
  assert (done.returncode, done.stderr) == (0, expected[2]), done
  assert bench.read("out.s") == expected[0]


def check_usual_folder(bench, options):
  """A folder that nobody asked for, left by a run that was killed, does not stand in the way of another command."""
  while not bench.kill_when(bench.start(*options), "out.s.ngrex-scale", lambda names: "plan.done" in names):
    pass
  bench.write("elsewhere", "")
  err = bench.run(bench.scale, "run", *options, "-o", "out.s", "--work", ".", status=2)
  assert b"holds other files" in err and not os.path.exists(bench.path("plan.done")), err
  other = ["3" if word == "2" else word for word in options]
  expected = bench.expect(*other)
  bench.run(bench.scale, "run", "--jobs", "2", "-o", "out.s", *other)
  assert bench.read("out.s") == expected[0]
  assert not os.path.exists(bench.path("out.s.ngrex-scale"))


def check_file_size(bench, options):
  """Files that may not grow any more are told, and leave nothing unfinished."""
  expected = bench.expect(*options)
  size = len(expected[0])
  for most, what in ((4096, b"cannot write to work/"), (size // 2, b"Cannot write to file: out.s!")):
    err = bench.run(bench.scale, "run", "--shard", "16K", "--work", "work", "-o", "out.s", *options, status=1,
                    limit=(resource.RLIMIT_FSIZE, most))
    assert what in err, err
    assert not [name for name in os.listdir(bench.folder) if name.startswith("out.s")]
  bench.run(bench.scale, "run", "--shard", "16K", "--work", "work", "-o", "out.s", *options)
  assert bench.read("out.s") == expected[0]


def check_lock(bench, options):
  with open(bench.path("work/lock"), "rb") as lock:
    fcntl.flock(lock, fcntl.LOCK_EX)
    err = bench.run(bench.scale, "run", *options, "-o", "out.s", "--work", "work", status=1)
  assert b"another run works in work" in err, err


def check_write(bench, options):
  """Files under other sieves are those of ngrex, and nothing is counted for them."""
  assert bench.scaled(*options) == bench.expect(*options)
  before = bench.times()
  for extra in (["-tf", "2"], ["-tl", "3", "-p", "4"], ["-ta", "-tc", "5", "-tl", "1"], ["-te", "0.5"]):
    bench.run(bench.ngrex, *options, *extra, "-o", "out.n")
    bench.run(bench.scale, "write", "--work", "work", *extra, "-o", "out.w")
    assert bench.read("out.w") == bench.read("out.n"), extra
  assert bench.times() == before
  err = bench.run(bench.scale, "write", "--work", "work", "-n", "3", "-o", "out.w", status=2)
  assert b"write takes no -n" in err, err
  err = bench.run(bench.scale, "write", "--work", "work", "-c", "contexts.w", "-o", "out.w", status=2)
  assert b"holds no contexts" in err, err
  err = bench.run(bench.scale, "write", "--work", "work", status=2)
  assert b"expected an output datafile" in err, err
  err = bench.run(bench.scale, "write", "--work", "nowhere", "-o", "out.w", status=1)
  assert b"holds no counts" in err, err
  bench.write("elsewhere", "")
  err = bench.run(bench.scale, "run", *options, "-o", "out.s", "--work", ".", status=2)
  assert b"holds other files" in err and not os.path.exists(bench.path("plan.done")), err
  other = ["3" if word == "2" else word for word in options]
  err = bench.run(bench.scale, "run", *other, "-o", "out.s", "--work", "work", status=2)
  assert b"holds counts for other options" in err, err


def check_lists(bench, options):
  """A longer list is counted where it is new; a changed datafile is counted again, one that was only touched is not."""
  assert bench.scaled(*options) == bench.expect(*options)
  maps = {name: at for name, at in bench.times().items() if name.startswith(("scan-", "map-"))}
  bench.write("list", "a\nb\nc\n")
  assert bench.scaled(*options) == bench.expect(*options)
  now = bench.times()
  assert all(now[name] == at for name, at in maps.items())
  os.utime(bench.path("b"), ns=(1, 1))
  scans = {name: at for name, at in now.items() if name.startswith("scan-")}
  assert bench.scaled(*options) == bench.expect(*options)
  now = bench.times()
  assert all(now[name] == at for name, at in scans.items())
  text = bench.read("b").decode()
  bench.write("b", text.replace("dog", "pig") + corpus(bench.random, 5))
  assert bench.scaled(*options) == bench.expect(*options)
  bench.write("b", text.replace("dog", "cow"))
  assert bench.scaled(*options) == bench.expect(*options)
  # Changed in place, and the time set back.
  status = os.stat(bench.path("b"))
  with open(bench.path("b"), "r+", encoding="utf-8") as file:
    file.write(text.replace("dog", "owl"))
  os.utime(bench.path("b"), ns=(status.st_atime_ns, status.st_mtime_ns))
  assert bench.scaled(*options) == bench.expect(*options)
  bench.write("list", "b\na\n")
  assert bench.scaled(*options) == bench.expect(*options)


def check_outgrown(bench, options):
  """A corpus many times as large as the one of the first plan is planned anew; from then on what is new is counted alone."""
  def counted():
    return {name: at for name, at in bench.times().items() if name.startswith("map-")}

  def bucket_bits():
    return re.search(rb"^bucket_bits\t(\d+)$", bench.read("work/plan.done"), re.MULTILINE).group(1)

  bench.write("small", corpus(bench.random, 12))
  bench.write("list", "small\n")
  assert bench.scaled(*options) == bench.expect(*options)
  first = bucket_bits()
  bench.write("list", "small\na\n")
  assert bench.scaled(*options) == bench.expect(*options)
  assert int(bucket_bits()) > int(first), (first, bucket_bits())
  before = counted()
  bench.write("list", "small\na\nb\n")
  assert bench.scaled(*options) == bench.expect(*options)
  now = counted()
  assert len(now) > len(before) and all(now[name] == at for name, at in before.items())


def check_small_datafiles(bench, options):
  """Small datafiles share tasks, and a longer list leaves the tasks that there were as they are."""
  names = [f"small{i}" for i in range(300)]
  for name in names:
    bench.write(name, corpus(bench.random, bench.random.randint(0, 3)) + "bad line\n" * (bench.random.random() < 0.1))
  bench.write("list", "".join(name + "\n" for name in [*names[:200], "a", *names[200:290]]))
  options = [*options, "-fs", "filters", "-c", "contexts", "-cw", "3"]

  def files(outcome):
    return outcome, bench.read("filters"), bench.read("contexts")

  def tasks():
    return {name: at for name, at in bench.times().items() if name.startswith(("scan-", "map-"))}

  assert files(bench.scaled(*options)) == files(bench.expect(*options))
  before = tasks()
  datafiles = sum(line.startswith("datafile") for line in bench.read("work/plan.done").decode().splitlines())
  assert len(before) // 2 < datafiles // 4, (len(before), datafiles)
  bench.write("list", bench.read("list").decode() + "".join(name + "\n" for name in names[290:]))
  assert files(bench.scaled(*options)) == files(bench.expect(*options))
  assert len(tasks()) == len(before) + 2
  assert all(tasks()[name] == at for name, at in before.items())
  bench.write(names[150], corpus(bench.random, 2))
  assert files(bench.scaled(*options)) == files(bench.expect(*options))
  scans = {name for name, at in before.items() if name.startswith("scan-") and tasks()[name] != at}
  assert len(scans) == 1, scans


def check_warnings_of_write(bench, options):
  """What ngrex warns of when it looks at its options is said again by write."""
  triples = ["-i", "list", "-n", "3"]
  bench.run(bench.scale, "run", *triples, "-o", "out.s", "--work", "work")
  writing = ["-tm", "3", "-tz", "2", "-fs", "filters", "-o", "out.s"]
  about_reading = bench.run(bench.ngrex, *triples, "-o", "out.n")
  expected = bench.run(bench.ngrex, *triples, *writing)
  warnings = bench.run(bench.scale, "write", "--work", "work", *writing)
  assert warnings.count(b"\n") == 3 and warnings + about_reading == expected, warnings


def check_pipe(bench, options):
  """With its output into a pipe a run that fails leaves no folder that no other run would find."""
  temporary = bench.path("temporary")
  os.mkdir(temporary)
  bench.write("b", "".join(f"1\tw\tl\tT{i}\t0\tSb\n\n" for i in range(300)))
  for pipe in ("/dev/null", "/dev/stdout"):
    done = subprocess.run([bench.scale, "run", *options, "-m", "****", "-o", pipe], cwd=bench.folder, capture_output=True,
                          check=False, env={**os.environ, "TMPDIR": temporary}, stdin=subprocess.DEVNULL)
    assert done.returncode == 1 and b"morphologic tags store has overflowen" in done.stderr, done
    assert os.listdir(temporary) == []


def check_keep_going(bench, options):
  """What does not depend on a task that fails is done, if that is asked for, and all failures are told."""
  expected = bench.expect(*options)
  assert bench.scaled(*options) == expected
  for name in bench.intermediate():
    if name.startswith("map-"):
      os.remove(bench.path("work/" + name))
  shards = sum(name.startswith("scan-") and name.endswith(".done") for name in bench.intermediate())
  assert shards > 3
  in_the_way = ["map-0.run-0", "map-2.run-0"]
  for name in in_the_way:
    os.mkdir(bench.path("work/" + name))
  steps = ([bench.scale, "run", *options, "-o", "out.s", "-s", "stats.s", "--work", "work", "--jobs", "1"],
           [bench.scale, "map", "--work", "work"])
  for command in steps:
    err = bench.run(*command, status=1)
    assert b"cannot rename work/map-0.run-0." in err and b"map-2.run-0" not in err, err
    assert not [name for name in bench.times() if name.startswith("map-")]
  for command in reversed(steps):
    err = bench.run(*command, "--keep-going", status=1)
    lines = [line for line in err.decode().splitlines() if not line.startswith("WARNING: ")]
    assert len(lines) == 2 and all(line.startswith("ngrex-scale: cannot rename work/" + name)
                                   for line, name in zip(lines, in_the_way)), err
    maps = sum(name.startswith("map-") for name in bench.times())
    assert maps == shards - 2, (maps, shards)
  for name in in_the_way:
    os.rmdir(bench.path("work/" + name))
  assert bench.scaled(*options, "--keep-going") == expected


def check_many_shards(bench, options):
  """More runs, and more parts of the listing, than files that may be open."""
  def limit():
    resource.setrlimit(resource.RLIMIT_NOFILE, (24, 24))

  bench.write("a", corpus(bench.random, 3000))
  expected = bench.expect(*options)
  size = len(bench.read("a")) + len(bench.read("b"))
  done = subprocess.run([bench.scale, "run", *options, "-o", "out.s", "-s", "stats.s", "--work", "work", "--jobs", "2",
                         "--shard", str(size // 400), "--memory", "8K"], cwd=bench.folder, capture_output=True,
                        check=False, timeout=300, stdin=subprocess.DEVNULL, preexec_fn=limit)
  assert done.returncode == 0, done.stderr[-500:]
  for files in (r"map-\d+\.run-\d+", r"order-\d+\.ordered"):
    assert sum(re.fullmatch(files, name) is not None for name in bench.intermediate()) > 24, files
  assert (bench.read("out.s"), bench.read("stats.s"), done.stderr) == expected


def main():
  arguments = read_arguments()
  options = ["-i", "list", "-n", "2", "-m", "**", "-f", "rules"]
  plain = ["-i", "list", "-n", "2"]
  for check, line in ((check_kills, options), (check_nothing_done_twice, plain), (check_damage, plain),
                      (check_damaged_warnings, plain), (check_damaged_plan, plain), (check_older_version, plain),
                      (check_ignored_children, plain), (check_same_number, plain), (check_usual_folder, plain),
                      (check_file_size, plain), (check_lock, plain), (check_write, options), (check_lists, plain),
                      (check_keep_going, plain), (check_warnings_of_write, plain), (check_pipe, plain),
                      (check_small_datafiles, options), (check_outgrown, options), (check_many_shards, plain)):
    with tempfile.TemporaryDirectory(prefix="ngrex-scale-resume-") as folder:
      bench = Bench(arguments.program, arguments.scale, folder, arguments.seed)
      if check is check_lock:
        bench.scaled(*line)
      result = check(bench, line)
      print(check.__name__, "holds" + (f" ({result})" if result else ""), flush=True)
  return 0


if __name__ == "__main__":
  sys.exit(main())
