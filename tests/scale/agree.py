#!/usr/bin/env python3
"""Compares ngrex-scale with ngrex, byte for byte, on random corpora and command lines.

  agree.py --program NGREX --scale NGREX_SCALE [--seed S] [--cases K] [--first C] [--keep DIR] [--no-contexts | --contexts]

The cases are those of tests/differential, half of them with more of a corpus: datafiles that are many of theirs in one, so that
cuts fall into whatever is malformed, more and smaller datafiles, some of them more than once or through pipes. Each is run with
cuts, memory and jobs drawn at random: shards from a few bytes to everything, memory so small that every step goes to disk, one to
five processes. Compared are the exit status, standard error and, when the run ends well, every file. The first disagreement is
shown and its folder kept.
"""

import argparse
import collections
import os
import random
import shlex
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "differential"))
import differential  # noqa: E402
import seeds  # noqa: E402


def understood(arguments):
  """Whether all words are options of ngrex with their values, so that ngrex-scale does not refuse the line."""
  i = 0
  while i < len(arguments):
    word = arguments[i]
    if not word.startswith("-") or len(word) < 2 or word.startswith("--"):
      return False
    second, third = word[1], word[2:3]
    if second in "cf" and third and (second, third) not in (("c", "f"), ("c", "s"), ("c", "w"), ("f", "s")):
      return False
    if second == "t":
      if third not in tuple("acefmloptz") + ("",) or not third:
        return False
      i += 1 if third in "ao" else 2
      continue
    if second not in "iondmpscf":
      return False
    i += 2
  return True


def own_options(r, size):
  options = ["--jobs", str(r.choice([1, 1, 2, 3, 5]))]
  # Each shard is some processes, so that their number decides how long a case takes.
  shard = r.choice([1, 20, 200, 200, 1000, 5000, size // 3, size])
  options += ["--shard", str(max(shard, size // 40, 1))]
  options += ["--memory", r.choice(["1", "1K", "20K", "100K", "1M", "64M"])]
  return options


def other_datafiles(seed, number, r, n, count):
  """Datafiles of other cases, the sentences of which are short enough for N-grams of this size."""
  found = []
  for other in range(count * 8):
    generator = differential.Generator(seed, f"{number}/{other}")
    generator.make()
    if generator.n >= n and not generator.heavy:
      found += [content for content in generator.case.files.values() if content and len(content) < 20000]
    if len(found) >= count:
      break
  return found[:count] or [b""]


def grow(case, seed, number, r, n, prefix):
  """Gives a case more of a corpus, unless its list or its prefix leads nowhere. Returns what it was given."""
  if prefix not in (None, "", "./") or b"a0.dat" in (case.stdin or b""):
    return None
  lines = case.files["list"].split(b"\n")
  named = [line.decode() for line in lines if case.files.get(line.decode(errors="replace"))]
  if not named:
    return None
  kind = r.choice(["long", "long", "many", "again", "pipes", "all"])
  if kind in ("long", "all"):
    between = r.choice([b"", b"\n", b"\n\n", b" ", b"\r\n"])
    case.files[r.choice(named)] += between + between.join(other_datafiles(seed, number, r, n, r.choice([5, 20, 60])))
  if kind in ("many", "all"):
    for at, content in enumerate(other_datafiles(seed, number, r, n, r.choice([3, 10, 30]))):
      name = f"more{at}.dat"
      case.files[name] = r.choice([content, content, content, b"", b"\n", content[:r.randint(0, len(content))]])
      lines.insert(r.randint(0, len(lines)), name.encode())
  if kind in ("again", "all"):
    for _ in range(r.randint(1, 3)):
      lines.insert(r.randint(0, len(lines)), (r.choice(["", "./", "folder/../"]) + r.choice(named)).encode())
  if kind in ("pipes", "all") and prefix is None:
    for name in r.sample(named, 1):
      if len(case.files[name]) < PIPE_HOLDS and name.encode() in lines:
        case.pipes.append(case.files[name])
        lines[lines.index(name.encode())] = b"/dev/fd/%d" % (FIRST_PIPE + len(case.pipes) - 1)
  case.files["list"] = b"\n".join(lines)
  return kind


# Descriptors that no program uses for anything else.
FIRST_PIPE = 50
PIPE_HOLDS = 60000


def full_pipes(contents):
  """Pipes that hold these contents, at the descriptors from FIRST_PIPE on."""
  for at, content in enumerate(contents):
    source, sink = os.pipe()
    os.write(sink, content)
    os.close(sink)
    os.dup2(source, FIRST_PIPE + at)
    os.close(source)
    yield FIRST_PIPE + at


def run(program, arguments, case, folder):
  source = {"input": case.stdin} if case.stdin is not None else {"stdin": subprocess.DEVNULL}
  pipes = list(full_pipes(case.pipes))
  try:
    done = subprocess.run([program, *arguments], cwd=folder, capture_output=True, check=False, timeout=300, pass_fds=pipes,
                          **source)
  finally:
    for pipe in pipes:
      os.close(pipe)
  return differential.Outcome(done.returncode, b"", done.stderr, folder)


def has_contexts(arguments):
  return "-c" in arguments


def main():
  parser = argparse.ArgumentParser()
  parser.add_argument("--program", required=True)
  parser.add_argument("--scale", required=True)
  parser.add_argument("--cases", type=int, default=100)
  parser.add_argument("--first", type=int, default=0)
  parser.add_argument("--keep", default=None)
  parser.add_argument("--no-contexts", action="store_true")
  parser.add_argument("--contexts", action="store_true")
  options = seeds.parse(parser)
  program, scale = os.path.abspath(options.program), os.path.abspath(options.scale)
  seed = options.seed
  base = tempfile.mkdtemp(prefix="ngrex-scale-agree-")
  agreed = left_out = 0
  grown = collections.Counter()
  for number in range(options.first, options.first + options.cases):
    generator = differential.Generator(seed, number)
    case = generator.make()
    if not case.arguments or not understood(case.arguments) or (options.no_contexts and has_contexts(case.arguments)) \
        or (options.contexts and not has_contexts(case.arguments)):
      left_out += 1
      continue
    r = random.Random(f"{seed}/{number}/scale")
    if r.random() < 0.5:
      grown[grow(case, seed, number, r, generator.n, generator.prefix)] += 1
    size = sum(len(content) for content in case.files.values() if content)
    folders = [os.path.join(base, name) for name in ("ngrex", "scale")]
    for folder in folders:
      os.makedirs(folder)
      differential.write_folder(folder, case.files)
    own = own_options(r, size)
    expected = run(program, case.arguments, case, folders[0])
    # A small tree has millions of N-grams if N is large, and those are too many for the smallest memory; thousands are so for
    # a handful of bytes, in which every file is read in hundreds of pieces.
    written = sum(len(content) for content in expected.files.values())
    if written > 2_000_000:
      own[-1] = "64M"
    elif written > 200_000 and own[-1] in ("1", "1K"):
      own[-1] = "20K"
    arguments = ["run", *own, *case.arguments]
    got = run(scale, arguments, case, folders[1])
    if expected.status != 0:
      # What a run that fails leaves is its own affair: ngrex empties its outputs, ngrex-scale leaves what was there.
      expected.files = got.files = {}
    else:
      # A folder of intermediate files is removed at the end.
      assert not [name for name in got.files if b"ngrex-scale" in name], sorted(got.files)
    lines = differential.differences(expected, got)
    if lines:
      kept = options.keep or tempfile.mkdtemp(prefix="ngrex-scale-disagreement-")
      differential.write_folder(os.path.join(kept, "case"), case.files)
      for folder in folders:
        shutil.copytree(folder, os.path.join(kept, os.path.basename(folder)), dirs_exist_ok=True)
      shutil.rmtree(base)
      print(f"case {number} of seed {seed} disagrees; folder {kept}")
      print("command: ngrex-scale " + shlex.join(arguments) + (" with standard input from a pipe" if case.stdin else ""))
      print("\n".join(lines[:80]))
      return 1
    agreed += 1
    for folder in folders:
      shutil.rmtree(folder)
  shutil.rmtree(base)
  more = ", ".join(f"{count} {kind}" for kind, count in grown.items() if kind)
  print(f"{agreed} cases agree, {left_out} left out, with more of a corpus: {more} (seed {seed})")
  return 0


if __name__ == "__main__":
  sys.exit(main())
