#!/usr/bin/env python3
"""Compares ngrex with its reference twin, byte for byte, on random cases.

  differential.py --program PATH [--seed S] [--cases K] [--first C] [--keep DIR]

Every case is a folder with datafiles, list file and rule files and a command line, all drawn from (seed, case number).
The program and the twin (ngrex_reference.py, run in this process) get equal copies of the folder and the same
arguments. Compared are the exit status, standard output with its times made equal, standard error, and every file in
the folder. The first disagreement is shown with its command and differences, its folder is kept, and the exit status
is 1. --first starts at a case number, so that one case can be repeated alone.
"""

import argparse
import difflib
import os
import random
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import ngrex_reference  # noqa: E402
import seeds  # noqa: E402

WORK_LIMIT = 12000  # occurrences times types that the twin may store in one ordinary case
HEAVY_WORK_LIMIT = 60000
TIMES = re.compile(rb"^([0-9.e+-]+ secs elapsed\.|[0-9]+\.[0-9]{2} s)$", re.MULTILINE)
FATAL_LINE = re.compile(rb"^FATAL ERROR: .*$", re.MULTILINE)


class Case:
  def __init__(self):
    self.files = {}  # relative path -> content, None for a folder
    self.arguments = []
    self.stdin = None  # bytes for a pipe, None for /dev/null
    self.pipes = []  # contents of datafiles that are pipes; whoever adds some has to open them
    self.work_limit = WORK_LIMIT


class Generator:
  def __init__(self, seed, number):
    self.r = random.Random(f"{seed}/{number}")
    self.case = Case()

  def chance(self, probability):
    return self.r.random() < probability

  def make(self):
    r = self.r
    self.n = r.choice([2, 2, 2, 2, 3, 3, 3, 4, 4, 5, 6, 7])
    self.tag_length = r.choice([1, 2, 3, 5, 8])
    self.tag_letters = r.choice([b"A", b"AB", b"ABC", b"NVAP-", b"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefgh"])
    self.lemmas = self._lemmas()
    # A small stock of tags and relations makes N-grams recur, so that the measures have something to measure.
    self.tags = [self._new_tag() for _ in range(r.choice([1, 2, 3, 6]))] if self.chance(0.6) else None
    self.relations = [self._new_relation() for _ in range(r.choice([1, 1, 2, 3]))] if self.chance(0.5) else None
    # How often anything in a datafile is malformed: many cases have clean data, so that there is something to evaluate.
    self.dirt = r.choice([0, 0, 0, 0.002, 0.02, 0.1])
    self.heavy = self.chance(0.05)
    if self.heavy:
      self.case.work_limit = HEAVY_WORK_LIMIT
      self.n = r.choice([2, 2, 3])
    datafiles = []
    for number in range(r.choice([1, 1, 1, 2, 3])):
      name = r.choice(["a%d.dat", "b%d", "sub/c%d.txt", "x y%d", "\u010d%d"]) % number
      self.case.files[name] = self._datafile()
      datafiles.append(name)
    self._list(datafiles)
    self._options(datafiles)
    return self.case

  # Datafiles.

  def _lemmas(self):
    r = self.r
    count = r.choice([1, 2, 3, 5, 8, 30, 300])
    stems = ["dog", "cat", "run", "Haus", "m\u011bsto", "\u6771\u4eac", "na\u00efve", "x", "*", "-", "7", "be"]
    ends = ["", "", "", "", "-1", "_:N", "_comment", "^(x)", ";S", ":B", "'s", "`y"]
    lemmas = []
    for number in range(count):
      lemma = r.choice(stems) + (str(number) if count > 12 or self.chance(0.5) else "") + r.choice(ends)
      lemmas.append(lemma.encode())
    if self.chance(0.1):
      lemmas.append(r.choice([b"_", b":colon", b"'", b"^^", b"\xff\xfe", b"\xba\xbb\xde\xdf", b"a\0b"]))
    return lemmas

  def _tag(self):
    return self.r.choice(self.tags) if self.tags else self._new_tag()

  def _relation(self):
    return self.r.choice(self.relations) if self.relations else self._new_relation()

  def _new_tag(self):
    length = self.tag_length if self.chance(0.9) else self.r.randint(1, self.tag_length + 3)
    return bytes(self.r.choice(self.tag_letters) for _ in range(length))

  def _new_relation(self):
    r = self.r
    if self.chance(0.6):
      return r.choice([b"Sb", b"Obj", b"Atr", b"AuxP", b"Pred"])
    if self.chance(0.1):
      return r.choice([b"obj", b"Obj_co", b"Head_Co", b"Undef_Ap", b"Sb_", b"?", b"Sb\0", b"Head_"])
    return r.choice(ngrex_reference.RELATIONS)

  def _parents(self, length):
    """Parent numbers of a sentence, by one of several shapes."""
    r = self.r
    shape = r.choice(["tree", "tree", "tree", "forest", "chain", "backchain", "star", "brush", "bush", "any", "cycle",
        "huge"])
    if shape == "chain":
      return list(range(length))
    if shape == "backchain":
      return [i + 1 for i in range(1, length)] + [0]
    if shape == "star":
      top = r.randint(1, length)
      return [0 if i == top else top for i in range(1, length + 1)]
    if shape == "brush":  # a few wide nodes below one another
      tops = sorted(r.sample(range(1, length + 1), min(length, r.randint(1, 3))))
      return [0 if i == tops[0] else r.choice([t for t in tops if t < i] or [tops[0]]) for i in range(1, length + 1)]
    if shape == "bush" and length > 4:  # two children with several children each: joins of more than one piece
      return [0, 1, 1] + [r.choice([2, 3]) for _ in range(length - 3)]
    if shape == "any":
      return [r.randint(0, length + 1) for _ in range(length)]
    order = list(range(1, length + 1))
    r.shuffle(order)
    parents = [0] * length
    for at, word in enumerate(order):
      if at and not (shape == "forest" and self.chance(0.3)):
        parents[word - 1] = order[r.randint(max(0, at - 3) if self.chance(0.5) else 0, at - 1)]
    if shape == "cycle":
      for _ in range(r.randint(1, 3)):
        parents[r.randint(0, length - 1)] = r.randint(1, length)
    if shape == "huge":
      for _ in range(r.randint(1, 3)):
        word = r.randint(0, length - 1)
        old = int(parents[word])
        parents[word] = r.choice([length + 1, 65535, 65536, 65537, 65536 + old, 131072 + r.randint(0, length),
            4294967295,
                                  4294901760 + (old & 0xFFFF), -1, -65535, "+1", "007", "-0"])
    return parents

  def _separator(self):
    return b"\t" if self.chance(0.97) else self.r.choice([b" ", b"  ", b"\t\t", b"\f", b"\v", b" \r", b"\t \t", b"\n",
        b" \n"])

  def _number_field(self, right):
    """A malformed number field."""
    return self.r.choice([b"x", b"", b"-", b"+", b"-1", b"4294967296", b"99999999999999999999", b"4294967295",
        b"-4294967295",
                          b"-4294967296", b"1e3", b"0x2", b"2.5", b"_", b"\0", b"%d.", b"+%d", b"00%d", b"%dx", b"-%d",
                          b"%d-"
                          ]).replace(b"%d", right)

  def _line(self, order, parent):
    r = self.r
    fields = [b"%d" % order, r.choice([b"Form", b"w", b"\xc3\xa9t\xc3\xa9", b"9", b"-"]), r.choice(self.lemmas),
        self._tag(),
              str(parent).encode(), self._relation()]
    end = b"\n"
    if self.dirt and self.chance(self.dirt):
      kind = r.choice(["order", "parent", "missing", "extra", "blank", "cr", "jump", "nul", "indent", "join", "swap",
          "split"])
      if kind == "order":
        fields[0] = self._number_field(fields[0])
      elif kind == "parent":
        fields[4] = self._number_field(fields[4])
      elif kind == "missing":
        del fields[r.randint(0, 5)]
      elif kind == "extra":
        fields.insert(r.randint(0, 6), r.choice([b"more", b"1", b"0"]))
      elif kind == "blank":
        end = r.choice([b" \n", b"\t\n", b"  \n", b" \t \n", b"\v\n", b" "])
      elif kind == "cr":
        end = b"\r\n"
      elif kind == "jump":
        fields[0] = b"%d" % r.choice([order + 1, order - 1 if order else 0, 0, 1, 65536 + order, order + 65535])
      elif kind == "nul":
        at = r.randint(0, 5)
        cut = r.randint(0, len(fields[at]))
        fields[at] = fields[at][:cut] + b"\0" + fields[at][cut:]
      elif kind == "indent":
        fields[0] = r.choice([b" ", b"\t", b"\r", b"\f", b" \n"]) + fields[0]
      elif kind == "join":
        end = r.choice([b"", b"\t", b"x"])
      elif kind == "swap":
        r.shuffle(fields)
      elif kind == "split":
        fields[r.randint(0, 5)] += b"\n"
    line = fields[0]
    for field in fields[1:]:
      line += (self._separator() if self.dirt else b"\t") + field
    return line + end

  def _datafile(self):
    r = self.r
    if self.chance(0.04):
      return r.choice([b"", b"\n", b"\n\n\n", b" ", b"x", b"x\n", b"1", b"1\ta\tb\tc\t0\tSb", b"\0", b"\r\n\r\n", b"-",
          b"\n1\t",
                       b"1\ta\tb\tc\t99999999999", b"1\ta\tb\tc\t99999999999 ", b"1\ta\tb\tc\t0\tSb\n2",
                       b"2\ta\tb\tc\t0\tSb"])
    text = []
    if self.heavy:
      sentences = r.randint(20, 90)
      longest = 14
    else:
      sentences = r.choice([1, 1, 2, 3, 5, 8, 13])
      longest = {2: 14, 3: 12, 4: 10, 5: 9, 6: 9, 7: 10}[self.n]
    crlf = self.chance(0.02)
    for _ in range(sentences):
      length = r.randint(1, longest)
      if self.chance(0.02):
        length *= 3
      parents = self._parents(length)
      lines = b"".join(self._line(i + 1, parents[i]) for i in range(length))
      text.append(lines + b"\n" * (1 if self.chance(0.9) else r.randint(0, 4)))
      if self.dirt and self.chance(self.dirt):
        text.append(r.choice([b"\r\n", b" \n", b"junk line\n", b"# comment\n\n", b"\0\n", b"z" * r.choice([99999,
            100000, 100001,
                              100002, 200001, 200002, 200003]) + r.choice([b"\n", b"\n\n", b"y\n\n", b""]), b"\t\n"]))
    text = b"".join(text)
    if self.chance(0.3):
      text = b"\n" * r.randint(1, 3) + text
    if self.chance(0.3):
      text = text.rstrip(b"\n") + r.choice([b"", b"\n", b"\n\n\n", b"\n\n ", b"\n \t", b"\n\n1", b"\n\n1\ta\tb", b" ",
          b"\n1"])
    if self.chance(0.08) and text:
      text = text[:r.randint(0, len(text))]
    if self.dirt and self.chance(self.dirt):
      at = r.randint(0, len(text))
      text = text[:at] + bytes(r.choice([0, 9, 10, 11, 12, 13, 32, 45, 49, 255]) for _ in range(r.randint(1,
          3))) + text[at:]
    if crlf:
      text = text.replace(b"\n", b"\r\n")
    if self.chance(0.003):
      text += b"\n\n" + self._long_string() + b"\n"
    if self.chance(0.003):
      text += b"\n\n" + b"".join(b"%d\tw\tw\tN\t0\tSb\n" % i for i in range(1, r.choice([65535, 65536, 65537]) +
          1)) + b"\n"
    return text

  def _long_string(self):
    return b"1\tw\t" + b"q" * self.r.choice([65534, 65535, 65536, 70000]) + b"\tN\t0\tSb\n"

  # List file.

  def _list(self, datafiles):
    r = self.r
    self.prefix = r.choice([None, None, None, "", "./", "sub/../"])
    lines = [name for name in datafiles]
    if self.chance(0.15):
      lines.append(r.choice(datafiles))
    if self.chance(0.03):
      lines.append("/dev/stdin")
      self.case.stdin = self._datafile()[:40000]
      if self.prefix:
        self.prefix = None
    if self.chance(0.03):
      lines.insert(r.randint(0, len(lines)), r.choice(["missing", "", "", "folder", "a0.dat\r", " ", "out",
          "/dev/null", "list"]))
    if self.chance(0.02):
      lines.append("missing too")
    if self.chance(0.1):
      lines.insert(r.randint(0, len(lines)), "")
    if self.chance(0.01):
      lines = [""] * r.randint(0, 3)
    if self.chance(0.02):
      self.prefix = r.choice(["sub", "folder/", "no/", "/", "a"])
    text = "\n".join(lines) + ("\n" if self.chance(0.8) else "")
    if self.chance(0.01):
      text = text.replace("\n", "\r\n")
    self.case.files["list"] = text.encode()
    self.case.files["folder"] = None
    self.case.files.setdefault("sub/keep", b"")

  # Options.

  def _mask(self):
    r = self.r
    if self.chance(0.02):
      return r.choice(["**-x", "N", "* ", "*\u00e9", "+", "--*_"])
    if self.chance(0.05):
      return ""
    length = max(0, self.tag_length + r.choice([0, 0, 0, 1, 4, -1, -2]))
    stars = r.choice([0.3, 0.7, 1, 1])
    return "".join("*" if self.chance(stars) else "-" for _ in range(length))

  def _pattern(self, mask):
    r = self.r
    if self.chance(0.35):
      return b"-" * r.randint(1, 3)
    pattern = ngrex_reference.mask_tag(mask.encode() if mask else b"", self._tag())
    pattern = bytes(ord("-") if self.chance(0.6) else c for c in pattern)
    return pattern if self.chance(0.9) else pattern + r.choice([b"-", b"X", b"\r", b"\t"])

  def _rule_file(self, mask, members):
    r = self.r
    if self.chance(0.08):
      return r.choice([b"", b"\n", b"\n\n", b" ", b"  \n"])
    lines = []
    for _ in range(r.choice([1, 1, 1, 2, 3, 5])):
      count = members if self.chance(0.85) else max(0, members + r.choice([-1, 1]))
      line = b" ".join(self._pattern(mask) for _ in range(count))
      if self.chance(0.2):
        line = r.choice([b" " + line, line + b" ", line + b"  ", line.replace(b" ", b"  ", 1), b"", line.replace(b" ",
            b"\t")])
      lines.append(line)
    return b"\n".join(lines) + (b"\n" if self.chance(0.8) else b"")

  def _path(self, usual):
    """Where to write: mostly the usual name."""
    if self.chance(0.97):
      return usual
    return self.r.choice(["folder", "no/such", "/dev/full", "/dev/full", "", "/dev/null", "out", "list", "a0.dat",
        "rules",
                          "sub/" + usual, "-" + usual])

  def _unsigned(self, value):
    if self.chance(0.9):
      return str(value)
    return self.r.choice(["+%d", " %d", "\t%d", "0%d", "%dx", "%d.9", "%d "]) % value

  def _threshold(self):
    r = self.r
    return r.choice(["0", "0.5", "1", "2.5", "3.841", "10", "100", "1e3", "1e-3", "-1", "-0", "nan", "inf", "-inf",
        "x", "",
                     "0x1p2", "1e400", " 2", "+4", ".5", "5.", "1e", "0x", "1e-400", "%.3f" % (r.random() * 20), "-nan",
                     "%.4f" % r.random(), "%d" % r.randint(1, 2000), "Infinity", "1,5", "2e+1"])

  def _options(self, datafiles):
    r = self.r
    case = self.case
    n = self._unsigned(self.n)
    if self.chance(0.03):
      n = r.choice(["0", "1", "8", "9", "258", "-3", "x", "", "4294967298", "99999999999999999999", "-254", "256",
          "2.7"])
    groups = [["-i", "list"], ["-n", n], ["-o", self._path("out")]]
    if self.chance(0.01):
      groups[0] = ["-i", r.choice(["nolist", "folder", "", "/dev/null", "a0.dat"])]
    if self.chance(0.01) and case.stdin is None:
      case.stdin = case.files["list"]
      groups[0] = ["-i", "/dev/stdin"]
    if self.prefix is not None:
      groups.append(["-d", self.prefix])
    filtered = self.chance(0.4)
    mask = self._mask() if self.chance(0.9 if filtered else 0.65) else None
    if mask is not None:
      groups.append(["-m", mask])
    if self.chance(0.8 if filtered else 0.4):
      groups.append(["-s", self._path("stats")])
    if filtered:
      case.files["rules"] = self._rule_file(mask, self.n)
      groups.append(["-f", r.choice(["norules", "folder"]) if self.chance(0.03) else "rules"])
    if self.chance(0.6 if filtered else 0.1):
      groups.append(["-fs", self._path("fstats")])
    contexts = self.chance(0.4)
    if contexts:
      groups.append(["-c", self._path("contexts")])
    if self.chance(0.6 if contexts else 0.15):
      if self.chance(0.5):
        size = r.choice([0, 0, 1, 1, 1, 2, 2, 2, 3] if contexts else [0, 1, 2, 3, 50, 4294967295, 99999999999])
        groups.append(["-cs", self._unsigned(size)])
      else:
        size = r.choice([1, 1, 2, 3, 4, 5, 7, 10, 12, 15, 20, 30, 50, 0, 51] if contexts else [0, 1, 2, 5, 20, 51,
            1000, 2**32 - 1])
        groups.append(["-cw", self._unsigned(size)])
    if self.chance(0.25):
      case.files["crules"] = self._rule_file(mask, 1)
      groups.append(["-cf", r.choice(["norules", "folder"]) if self.chance(0.03) else "crules"])
    if self.chance(0.4):
      groups.append(["-p", r.choice(["1", "2", "3", "6", "10", "17", "40", "1000", "17", "40"])])
      if self.chance(0.05):
        groups[-1][1] = r.choice(["0", "-1", "x", "", "2147483648", "4294967295", "99999999999", "100000"])
    for letter in "clmptz":
      if self.chance(0.12):
        groups.append(["-t" + letter, self._threshold()])
    if self.chance(0.15):
      groups.append(["-te", self._threshold() if self.chance(0.3) else r.choice(["0.1", "0.5", "0.01", "1", "0.3"])])
    if self.chance(0.2):
      groups.append(["-tf", r.choice(["0", "1", "2", "2", "3", "5", "-2", "4294967296", "x"])])
    if self.chance(0.25):
      groups.append([r.choice(["-ta", "-ta", "-to"])])
    if self.chance(0.06):
      groups.append(r.choice([["-tq", "5"], ["-ct", "3"], ["-x"], ["--help"], ["-"], [""], ["word"], ["-t"], ["-cx",
          "stray"],
                              ["-fx", "stray"], ["-h"], ["-T", "9"]]))
    if self.chance(0.06):
      again = list(r.choice(groups))
      if len(again) == 2 and self.chance(0.5):
        again[1] = r.choice(["1", "2", "3", "list", "out", "**", ""])
      groups.append(again)
    if self.chance(0.05):
      group = r.choice(groups)
      if len(group) == 2 and group[0] not in ("-c", "-f"):
        group[0] += r.choice(["x", "-", "3"])
    r.shuffle(groups)
    if self.chance(0.02):
      groups.remove(r.choice(groups))
    if self.chance(0.03):
      groups.append([r.choice("-i -n -o -c -cf -cs -cw -d -f -fs -m -p -s -ta -tc -te -tf -tl -tz -x".split())])
    case.arguments = [word for group in groups for word in group]
    if self.chance(0.002):
      case.arguments = []


class Outcome:
  def __init__(self, status, out, err, folder):
    self.status = status
    self.out = TIMES.sub(b"TIME", out)
    self.err = err
    self.files = {}
    for top, folders, names in os.walk(os.fsencode(folder)):
      for name in folders:
        self.files[os.path.relpath(os.path.join(top, name), os.fsencode(folder)) + b"/"] = b""
      for name in names:
        path = os.path.join(top, name)
        with open(path, "rb") as file:
          self.files[os.path.relpath(path, os.fsencode(folder))] = file.read()

  def parts(self):
    yield "exit status", b"%d\n" % self.status
    yield "standard output", self.out
    yield "standard error", self.err
    for name in sorted(self.files):
      yield "file " + os.fsdecode(name), self.files[name]


def write_folder(folder, files):
  for name, content in files.items():
    path = os.path.join(folder, name)
    if content is None:
      os.makedirs(path, exist_ok=True)
      continue
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
      file.write(content)


def run_reference(case, folder):
  """The twin's outcome, or None when the case is too much work; and whether the fatal error's wording is free."""
  out, err = [], []
  before = os.getcwd()
  if case.stdin is None:
    source = os.open("/dev/null", os.O_RDONLY)
  else:
    source, sink = os.pipe()
    os.write(sink, case.stdin)
    os.close(sink)
  os.dup2(source, 0)
  os.close(source)
  os.chdir(folder)
  try:
    run = ngrex_reference.Run(out.append, err.append, case.work_limit)
    status = run.main([os.fsencode(word) for word in case.arguments])
  except ngrex_reference.TooMuchWork:
    return None, False
  finally:
    os.chdir(before)
  return Outcome(status, b"".join(out), b"".join(err), folder), run.free_fatal_text


def run_program(program, case, folder):
  source = {"input": case.stdin} if case.stdin is not None else {"stdin": subprocess.DEVNULL}
  done = subprocess.run([program] + case.arguments, cwd=folder, capture_output=True, check=False, timeout=120, **source)
  return Outcome(done.returncode, done.stdout, done.stderr, folder)


def drop_fatal_texts(*outcomes):
  """That there was a fatal error stays; what was said of it is not compared where its wording is free."""
  for outcome in outcomes:
    outcome.err = FATAL_LINE.sub(b"FATAL ERROR", outcome.err)


def differences(expected, got):
  """Unified differences of two outcomes, as lines."""
  lines = []
  expected_parts, got_parts = dict(expected.parts()), dict(got.parts())
  for name in list(expected_parts) + [name for name in got_parts if name not in expected_parts]:
    a, b = expected_parts.get(name), got_parts.get(name)
    if a == b:
      continue
    texts = [[repr(line)[2:-1] for line in text.split(b"\n")] if text is not None else [] for text in (a, b)]
    lines.append("--- " + name + (" is missing in one of them" if a is None or b is None else ""))
    lines += list(difflib.unified_diff(*texts, "reference", "program", lineterm=""))[:200]
  return lines


def main():
  parser = argparse.ArgumentParser(description="Compares ngrex with its reference twin on random cases.")
  parser.add_argument("--program", required=True)
  parser.add_argument("--cases", type=int, default=1000)
  parser.add_argument("--first", type=int, default=0)
  parser.add_argument("--keep", default=None, help="folder for the case that disagrees (default: a temporary folder)")
  options = seeds.parse(parser)
  program = os.path.abspath(options.program)
  seed = options.seed
  base = tempfile.mkdtemp(prefix="ngrex-differential-")
  agreed = skipped = 0
  for number in range(options.first, options.first + options.cases):
    case = Generator(seed, number).make()
    folders = [os.path.join(base, name) for name in ("reference", "program")]
    for folder in folders:
      os.makedirs(folder)
      write_folder(folder, case.files)
    expected, free_fatal_text = run_reference(case, folders[0])
    if expected is None:
      skipped += 1
    else:
      got = run_program(program, case, folders[1])
      if free_fatal_text:
        drop_fatal_texts(expected, got)
      lines = differences(expected, got)
      if lines:
        kept = options.keep or tempfile.mkdtemp(prefix="ngrex-disagreement-")
        write_folder(os.path.join(kept, "case"), case.files)
        for folder in folders:
          shutil.copytree(folder, os.path.join(kept, os.path.basename(folder)), dirs_exist_ok=True)
        if case.stdin is not None:
          with open(os.path.join(kept, "stdin"), "wb") as file:
            file.write(case.stdin)
        shutil.rmtree(base)
        print(f"case {number} of seed {seed} disagrees; folder {kept}")
        print("command: ngrex " + shlex.join(case.arguments) + (" with standard input from a pipe" if case.stdin
            else ""))
        print("\n".join(lines))
        return 1
      agreed += 1
    for folder in folders:
      shutil.rmtree(folder)
  shutil.rmtree(base)
  if skipped:
    print(f"{skipped} cases left out as too much work for the twin")
  print(f"{agreed} cases agree (seed {seed})")
  return 0


if __name__ == "__main__":
  sys.exit(main())
