#!/usr/bin/env python3
"""Reference twin of ngrex: the whole program once more, slow and obvious.

It takes the same command line and gives the same standard output, standard error, exit status and files, byte for byte;
only the times in the elapsed-time lines and in the last line are not measured (0 is printed). It is linked into
nothing and never used in production: differential.py runs it beside the program and compares what the two did.

Everything is bytes: paths, options, corpora and messages. The floating-point work is plain IEEE double arithmetic in
the order of the program's formulas; a not-a-number is printed as "-nan", which is the one that x86 hardware makes.
"""

import errno
import math
import os
import re
import stat
import sys

MASK32 = 0xFFFFFFFF
LONG_MAX = (1 << 63) - 1
MAX_GRAMMITY = 7
SENTENCES_RADIUS_MAX = 2
WORDS_RADIUS_MAX = 50
DEFAULT_PRECISION = 10
MAX_SENTENCE_LENGTH = 65535
STORE_BLOCK_SIZE = 65536
SENTENCES, WORDS = 0, 1

USAGE = b"""Usage: ngrex [options]

Mandatory options:
 -i input-file-path
   Path to file with list of input datafile names.
 -n size
   Size of extracted N-grams. Minimum value is 2, maximum value is 7.
 -o output-file-path
   Path to output datafile.

Auxiliary options:
 -c context-output-file
   Output datafile for contexts storage.
 -cf context-morphologic-filter-file-path
   Path to file with morphologic rules to filtrate stored context words.
 -cs context-radius-size-in-sentences
   Size of context radius in sentences, may be from 0 to 2.
   '*' determines significant position, '-' determines insignificant position.
 -cw context-radius-size-in-words
   Size of context radius in words, may be from 1 to 50.
 -d path-to-datafiles-directory
   String that shall be prepended to all paths founded in input file.
 -f n-grams-morphologic-filter-file-path
   Path to file with morphologic rules to filtrate parsed N-grams.
   Must be specified in order to -fs parameter has any effect!
 -fs n-grams-morphologic-filter-stats-file-path
   Path to file for saving statistics of applied morphologic rules.
 -m morphologic-tag-mask
   Mask determines morphologic tag positions significant for n-grams equality.
   Must be specified in order to -cf, -ct, -f parameters have any effect!
   '*' determines significant position, '-' determines insignificant position.
 -p unsigned-number
   Output statistics precision (default is 10).
 -s stats-output-file
   Path to file, where statistics should be stored.
 -ta
   Reaching all of given thresholds is required.
 -tc floating-point-number
   Pearson's chi square test threshold.
 -te floating-point-number
   Only N-grams with at least given estimated frequency will be evaluted.
 -tf unsigned-number
   Only N-grams with at least given frequency will be evaluted.
 -tl floating-point-number
   Log likelihood ratio threshold.
 -tm floating-point-number
   Mutual information threshold.
 -to
   Reaching anyone of given thresholds is required.
 -tp floating-point-number
   Pearson's coeficient threshold.
 -tt floating-point-number
   Student's t-test threshold.
 -tz floating-point-number
   Z score threshold.

"""


class ExitProgram(Exception):
  """The process ends here with the given status."""

  def __init__(self, status):
    super().__init__(status)
    self.status = status


class FatalError(Exception):
  """An error that ends the run; its text (bytes) is reported as a fatal error."""

  def __init__(self, text):
    super().__init__(text)
    self.text = text


class StringTooLong(FatalError):
  """A lemma or tag that no block can hold. Its wording is free, so comparisons look at the kind of the message only."""


class IndexOverflow(Exception):
  """A string store has no index left."""


class TooMuchWork(Exception):
  """The caller's limit on stored occurrences was passed: this case is too slow for the twin."""


# ----------------------------------------------------------------------------------------------------------------
# numbers


def u(number):
  """A number in plain decimal."""
  return b"%d" % number


def strtol(text):
  """C strtol in base 10 on a 64-bit long."""
  match = re.match(rb"[ \t\n\v\f\r]*([+-]?)([0-9]+)", text)
  if not match:
    return 0
  value = int(match.group(2)[-4000:]) if len(match.group(2).lstrip(b"0")) <= 4000 else 10**4000
  if match.group(1) == b"-":
    return max(-value, -LONG_MAX - 1)
  return min(value, LONG_MAX)


def ascii2size_t(text):
  """An unsigned option value: negative becomes 0, more than 32 bits becomes the largest value."""
  return min(max(strtol(text), 0), MASK32)


def strtod(text):
  """C strtod in the C locale."""
  text = text.lstrip(b" \t\n\v\f\r")
  match = re.match(rb"[+-]?0[xX]([0-9a-fA-F]+\.?[0-9a-fA-F]*|\.[0-9a-fA-F]+)([pP][+-]?[0-9]+)?", text)
  if match:
    try:
      return float.fromhex(match.group(0).decode())
    except OverflowError:
      return -math.inf if text.startswith(b"-") else math.inf
  match = re.match(rb"[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?", text)
  if match:
    return float(match.group(0))
  match = re.match(rb"([+-]?)(inf|nan)", text, re.IGNORECASE)
  if match:
    value = math.inf if match.group(2).lower() == b"inf" else math.nan
    return -value if match.group(1) == b"-" else value
  return 0.0


def double2str(value, precision):
  """A double as the standard stream writes it in general notation with this precision.

  The stream hands its precision to the C formatting as an int: from 2^31 on that is negative, which means 6.
  """
  if math.isnan(value):
    return b"-nan"
  if math.isinf(value):
    return b"inf" if value > 0 else b"-inf"
  if precision >= 1 << 31:
    precision = 6
  # No double has more than 767 significant digits and general notation drops trailing zeros, but the precision also
  # decides when the exponent form begins; no exponent reaches 400.
  return ("%.*g" % (min(precision, 1500), value)).encode()


def div(a, b):
  """a / b with IEEE results where Python raises."""
  if b != 0:
    return a / b
  if a == 0 or math.isnan(a):
    return math.nan
  return math.copysign(math.inf, a) * math.copysign(1.0, b)


def root(a):
  """The square root; of a negative number a not-a-number."""
  return math.nan if a < 0 else math.sqrt(a)


def guarded_log10(x):
  """The base-10 logarithm, or the smallest normal double when x is next to nothing."""
  if abs(x) >= 2.220446049250313e-16 or math.isnan(x):
    return math.log10(x)
  return 2.2250738585072014e-308


# ---------------------------------------------------------------------------------------------------------------
# settings


class Settings:
  def __init__(self):
    self.input_file = None
    self.n = 0
    self.output_file = None
    self.context_output_file = None
    self.context_filter_file = None
    self.window_mode = SENTENCES
    self.window_size = 0
    self.dir = None
    self.morphologic_filter_file = None
    self.morphologic_filter_stats_file = None
    self.mask = None
    self.precision = DEFAULT_PRECISION
    self.stats_file = None
    self.all_thresholds_together = False
    # chi-square, log-likelihood ratio, mutual information, Pearson's coefficient, t test, z score
    self.thresholds = [0.0] * 6
    self.sieve_estimated = 0.0
    self.sieve_frequency = 0

  def parse(self, argv):
    paths = {b"d": "dir", b"i": "input_file", b"m": "mask", b"o": "output_file", b"s": "stats_file"}
    at = 0

    def value():
      nonlocal at
      at += 1
      return argv[at] if at < len(argv) else None

    while at < len(argv):
      word = argv[at]
      if word[:1] == b"-":
        second, third = word[1:2], word[2:3]
        if second in paths and second:
          setattr(self, paths[second], value())
        elif second == b"n":
          text = value()
          if text is not None:
            self.n = max(strtol(text), 0) & 0xFF
        elif second == b"p":
          text = value()
          if text is not None:
            self.precision = ascii2size_t(text)
        elif second == b"c":
          if third == b"":
            self.context_output_file = value()
          elif third == b"f":
            self.context_filter_file = value()
          elif third == b"s" or third == b"w":
            text = value()
            if text is not None:
              self.window_mode = SENTENCES if third == b"s" else WORDS
              self.window_size = ascii2size_t(text)
        elif second == b"f":
          if third == b"":
            self.morphologic_filter_file = value()
          elif third == b"s":
            self.morphologic_filter_stats_file = value()
        elif second == b"t":
          if third == b"a":
            self.all_thresholds_together = True
          elif third == b"o":
            self.all_thresholds_together = False
          elif third == b"e":
            text = value()
            if text is not None:
              self.sieve_estimated = strtod(text)
          elif third == b"f":
            text = value()
            if text is not None:
              self.sieve_frequency = ascii2size_t(text)
          elif third and third in b"clmptz":
            text = value()
            if text is not None:
              self.thresholds[b"clmptz".index(third)] = strtod(text)
      at += 1

  def ready(self):
    return self.input_file is not None and self.n != 0 and self.output_file is not None

  def correct(self):
    if self.input_file is None or self.output_file is None:
      return False
    if not 2 <= self.n <= MAX_GRAMMITY:
      return False
    if self.mask is not None and any(c not in b"*-" for c in self.mask):
      return False
    if self.precision == 0:
      return False
    if self.context_output_file is None:
      return True
    if self.window_mode == SENTENCES:
      return self.window_size <= SENTENCES_RADIUS_MAX
    return 1 <= self.window_size <= WORDS_RADIUS_MAX

  def context_tracing_on(self):
    return self.context_output_file is not None


# ---------------------------------------------------------------------------------------------------------- files,
# streams

_SPACE = re.compile(rb"[\t\n\v\f\r ]")
_NO_SPACE = re.compile(rb"[^\t\n\v\f\r ]")
_DIGITS = re.compile(rb"[0-9]*")


def open_for_reading(path):
  """A descriptor, or None; a directory counts as a file that cannot be opened."""
  try:
    descriptor = os.open(path, os.O_RDONLY)
  except (OSError, ValueError):
    return None
  if stat.S_ISDIR(os.fstat(descriptor).st_mode):
    os.close(descriptor)
    return None
  return descriptor


def place_of(path):
  """Where a regular file is, or would be made; None for everything else."""
  try:
    status = os.stat(path)
    return (status.st_dev, status.st_ino) if stat.S_ISREG(status.st_mode) else None
  except FileNotFoundError:
    folder, name = os.path.split(os.path.realpath(path))
    if path.endswith(b"/") or not path or not os.path.isdir(folder):
      return None
    status = os.stat(folder)
    return (status.st_dev, status.st_ino, name)
  except (OSError, ValueError):
    return None


def length_of(descriptor):
  """The file's length by seeking, -1 when the file cannot be sought."""
  try:
    length = os.lseek(descriptor, 0, os.SEEK_END)
    os.lseek(descriptor, 0, os.SEEK_SET)
    return length
  except OSError:
    return -1


def read_all(descriptor):
  pieces = []
  while True:
    piece = os.read(descriptor, 1 << 20)
    if not piece:
      return b"".join(pieces)
    pieces.append(piece)


def lines_of(text):
  """The lines as getline gives them: no line after a final newline, the last line also without one."""
  lines = text.split(b"\n")
  if lines[-1] == b"":
    lines.pop()
  return lines


class OutputFile:
  """An output file: created empty at once, written when the content is known."""

  def __init__(self, path):
    self.path = path
    self.descriptor = os.open(path, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o666)

  def write_and_close(self, content):
    """True when every byte was written."""
    good = True
    try:
      while content:
        content = content[os.write(self.descriptor, content):]
    except OSError as error:
      if error.errno == errno.EINTR:
        raise
      good = False
    os.close(self.descriptor)
    self.descriptor = None
    return good


class InputStream:
  """A C++ input stream over a text: position, end-of-file bit, fail bit."""

  def __init__(self, data):
    self.data = data
    self.position = 0
    self.eof = False
    self.fail = False

  def good(self):
    return not self.eof and not self.fail

  def clear(self):
    self.eof = False
    self.fail = False

  def get(self):
    """Takes one character; None when there is none."""
    if not self.good():
      self.fail = True
      return None
    if self.position >= len(self.data):
      self.eof = True
      self.fail = True
      return None
    self.position += 1
    return self.data[self.position - 1]

  def unget(self):
    self.eof = False
    self.position -= 1

  def ignore_line(self, count):
    """Discards at most count characters, through the next newline. The end is noticed if the text ends before."""
    if not self.good():
      self.fail = True
      return
    newline = self.data.find(b"\n", self.position, self.position + count)
    if newline >= 0:
      self.position = newline + 1
      return
    self.eof = self.position + count > len(self.data)
    self.position = min(self.position + count, len(self.data))

  def _skip_space(self):
    """What every formatted extraction does first; false when it cannot go on."""
    if not self.good():
      self.fail = True
      return False
    match = _NO_SPACE.search(self.data, self.position)
    if not match:
      self.position = len(self.data)
      self.eof = True
      self.fail = True
      return False
    self.position = match.start()
    return True

  def read_text(self, before):
    """The next field, or the text before it when there is none."""
    if not self._skip_space():
      return before
    match = _SPACE.search(self.data, self.position)
    if match:
      end = match.start()
    else:
      end = len(self.data)
      self.eof = True
    text = self.data[self.position:end]
    self.position = end
    return text

  def read_unsigned(self, before):
    """A 32-bit unsigned: an optional sign and digits; a minus sign negates modulo 2^32, more than 32 bits fail."""
    if not self._skip_space():
      return before
    negative = self.data[self.position] == 45
    if negative or self.data[self.position] == 43:
      self.position += 1
    end = _DIGITS.match(self.data, self.position).end()
    digits = self.data[self.position:end]
    self.position = end
    if end == len(self.data):
      self.eof = True
    if not digits:
      self.fail = True
      return 0
    digits = digits.lstrip(b"0")
    value = int(digits or b"0") if len(digits) <= 10 else MASK32 + 1
    if value > MASK32:
      self.fail = True
      return MASK32
    return -value & MASK32 if negative else value


# ---------------------------------------------------------------------------------------------------------- progress
# bar


class ProgressDisplay:
  """The arithmetic of Boost's progress_display, whatever it prints."""

  def __init__(self, expected, emit):
    self.emit = emit
    self.count = 0
    self.next_tic_count = 0
    self.tic = 0
    self.expected = expected
    emit(b"0%   10   20   30   40   50   60   70   80   90   100%\n")
    emit(b"|----|----|----|----|----|----|----|----|----|----|\n")
    if self.expected == 0:
      self.expected = 1

  def advance(self, increment):
    self.count = (self.count + increment) & 0xFFFFFFFFFFFFFFFF
    if self.count >= self.next_tic_count:
      self._display_tic()

  def complete(self):
    self.advance((self.expected - self.count) & 0xFFFFFFFFFFFFFFFF)

  def _display_tic(self):
    tics_needed = int((float(self.count) / float(self.expected)) * 50.0)
    while True:
      self.emit(b"*")
      self.tic += 1
      if not self.tic < tics_needed:
        break
    self.next_tic_count = int((self.tic / 50.0) * float(self.expected))
    if self.count == self.expected:
      if self.tic < 51:
        self.emit(b"*")
      self.emit(b"\n")


# -------------------------------------------------------------------------------------------------------------
# relations


def _relation_names():
  names = []
  for base in ("Adv AdvAtr Apos Atr AtrAdv AtrAtr AtrObj Atv AtvV Aux AuxC AuxG AuxK AuxO AuxP AuxR AuxS AuxT AuxV "
               "AuxX AuxY AuxZ Coord ExD Head Obj ObjAtr Pnom Pred Sb Undef").split():
    names.append(base.encode())
    if base not in ("Head", "Undef"):
      names += [(base + suffix).encode() for suffix in ("_Ap", "_Co", "_Pa")]
  return names


RELATIONS = _relation_names()
RELATION_CODES = {name: code for code, name in enumerate(RELATIONS)}
HEAD = 96
UNDEF = 117


# ------------------------------------------------------------------------------------------------------ corpus reading


class StringStore:
  def __init__(self, largest_index):
    self.table = []
    self.largest_index = largest_index
    self._indexes = {}

  def store(self, text):
    """The index of the text, which ends at its first NUL byte."""
    text = text.split(b"\0", 1)[0]
    self.table.append(text)
    if text in self._indexes:
      self.table.pop()
      return self._indexes[text]
    if len(self.table) == self.largest_index:
      raise IndexOverflow
    if len(text) + 1 > STORE_BLOCK_SIZE:
      raise StringTooLong(b"String of %d bytes is longer than the limit of %d bytes!" % (len(text),
          STORE_BLOCK_SIZE - 1))
    self._indexes[text] = len(self.table) - 1
    return len(self.table) - 1


class Word:
  __slots__ = ("lemma", "tag", "order", "parent", "dependency")

  def __init__(self, lemma, tag, order, parent, dependency):
    self.lemma = lemma
    self.tag = tag
    self.order = order
    self.parent = parent
    self.dependency = dependency


def cut_lemma(lemma):
  return re.split(rb"[':;^_]", lemma, maxsplit=1)[0]


def mask_tag(mask, tag):
  if mask is None:
    return b""
  masked = bytes(t if m == ord("*") else ord("-") for m, t in zip(mask, tag))
  return masked + b"-" * (len(mask) - len(masked))


class Parser:
  def __init__(self, stream, run):
    self.stream = stream
    self.run = run
    self.line = 0
    self.lengths = []

  def next(self, limit, mode, words):
    stream = self.stream
    run = self.run
    self.lengths = []
    words_read = 0
    k = 0
    order = parent = 0
    lemma = tag = occurrence = dependency = b""
    while True:
      if stream.fail:
        break
      c = stream.get()
      if c is None:
        break
      self.line += 1
      if c == 10:
        if k:
          self.lengths.append(k)
          words_read += k
          k = 0
        if mode == WORDS and words_read >= limit:
          break
        if mode == SENTENCES and len(self.lengths) >= limit:
          break
        continue
      stream.unget()
      order = stream.read_unsigned(order)
      occurrence = stream.read_text(occurrence)
      lemma = stream.read_text(lemma)
      tag = stream.read_text(tag)
      parent = stream.read_unsigned(parent)
      dependency = stream.read_text(dependency)
      if stream.fail and stream.eof:
        break  # the input ended inside this line
      if stream.fail:
        stream.clear()
        stream.get()
        run.warning(b"Incorrect input format detected at line " + u(self.line) + b". Skipping current sentence...")
      else:
        stream.get()
        if k == MAX_SENTENCE_LENGTH:
          run.warning(b"Word order overflow detected at line " + u(self.line) + b". Got word ordered as " + u(k + 1) +
                      b", while maximum allowed value for word order is " + u(MAX_SENTENCE_LENGTH) +
                      b". Skipping current sentence...")
        elif order != k + 1:
          run.warning(b"Word order mismatch detected at line " + u(self.line) + b". Got word ordered as " + u(order) +
                      b", while expecting " + u(k + 1) + b". Skipping current sentence...")
        else:
          code = RELATION_CODES.get(dependency, UNDEF)
          tag_index = run.tags.store(mask_tag(run.settings.mask, tag))
          known_lemmas = len(run.lemmas.table)
          lemma_index = run.lemmas.store(cut_lemma(lemma))
          if known_lemmas == MOST_LEMMAS and len(run.lemmas.table) > known_lemmas:
            run.warning(b"More than " + u(MOST_LEMMAS) + b" different lemmas were read. N-grams whose lemmas differ by a "
                        b"multiple of that number of indexes are counted as the same...")
          words.append(Word(lemma_index, tag_index, order & 0xFFFF, parent & 0xFFFF, code))
          k += 1
          continue
      if k:
        del words[-k:]
      k = 0
      ended = False
      while True:
        if not stream.good():
          self.line += 1
          ended = True
          break
        if stream.get() == 10:
          self.line += 1
          ended = not stream.good()
          break
        stream.ignore_line(100000)
        self.line += 1
      if ended:
        break
    if k:
      self.lengths.append(k)
    return bool(self.lengths)


class Buffer:
  def __init__(self, parser, mode, radius):
    self.parser = parser
    self.words = []
    self.sentences = []  # [start, length], in reading order
    self.current_index = 0
    self.mode = mode
    self.radius = radius
    self.words_taken = 0
    self.sentences_taken = 0

  def _push(self, count, mode):
    base = len(self.words)
    if self.parser.next(count, mode, self.words):
      for length in self.parser.lengths:
        self.sentences.append([base, length])
        base += length
        self.sentences_taken += 1
        self.words_taken += length

  def init(self):
    self._push(1, SENTENCES)
    if self.radius != 0:
      self._push(self.radius, self.mode)
    self.current_index = 0

  def current(self):
    start, length = self.sentences[self.current_index]
    return start, start + length

  def next(self):
    if not self.words:
      return False
    if not self.parser.stream.eof:
      if self.mode == SENTENCES:
        self._push(1, SENTENCES)
      elif self.current_index + 1 < len(self.sentences):
        start, length = self.sentences[self.current_index + 1]
        after = len(self.words) - start - length
        if after < self.radius:
          self._push(self.radius - after, WORDS)
    self.current_index += 1
    if self.current_index == len(self.sentences):
      return False
    if self.mode == SENTENCES:
      self._pop()
      return True
    start = self.sentences[self.current_index][0]
    if start <= self.radius:
      return True
    surplus = start - self.radius
    while self.sentences[0][1] < surplus:
      surplus -= self._pop()
    return True

  def _pop(self):
    length = self.sentences.pop(0)[1]
    del self.words[:length]
    for sentence in self.sentences:
      sentence[0] -= length
    self.current_index -= 1
    return length

  def context_range(self, first, last):
    begin = first - self.radius if first >= self.radius else 0
    end = last + self.radius + 1 if self.radius <= len(self.words) - last - 1 else len(self.words)
    return begin, end


# ----------------------------------------------------------------------------------------------------------- N-gram
# model

MAX_FREQUENCY = 0xFFFFFF
MOST_LEMMAS = 1 << 24
MAX_CARRY = 0xFFFFFFFF
CONTEXT_MAX_FREQUENCY = 0x7FFFFFFF


class Context:
  __slots__ = ("lemma", "tag", "narrow", "frequency")

  def __init__(self, lemma, tag, narrow):
    self.lemma = lemma % MOST_LEMMAS
    self.tag = tag
    self.narrow = narrow
    self.frequency = 1


class Record:
  """An N-gram: type, members as (lemma, tag, parent, dependency), 24-bit counter with carry, contexts."""

  __slots__ = ("type", "members", "counter", "overflowed", "carried", "contexts")

  def __init__(self, type_, members, counter):
    self.type = type_
    self.members = members
    self.counter = counter
    self.overflowed = False
    self.carried = 0
    self.contexts = []

  def inc(self):
    if self.counter < MAX_FREQUENCY:
      self.counter += 1
      return
    if not self.overflowed:
      self.carried = MAX_FREQUENCY
    elif MAX_FREQUENCY > MAX_CARRY - self.carried:
      self.carried = MAX_CARRY
    else:
      self.carried += MAX_FREQUENCY
    self.overflowed = True
    self.counter = 1

  def frequency(self):
    extra = self.carried if self.overflowed else 0
    return self.counter + extra if self.counter <= MAX_CARRY - extra else MAX_CARRY

  def add_to_context(self, part):
    parts = self.contexts
    for at, old in enumerate(parts):
      if old.lemma == part.lemma and old.tag == part.tag and old.narrow == part.narrow:
        break
    else:
      parts.append(part)
      return
    if old.frequency < CONTEXT_MAX_FREQUENCY:
      old.frequency += 1
    while at > 0 and parts[at - 1].frequency < old.frequency:
      parts[at - 1], parts[at] = parts[at], parts[at - 1]
      at -= 1


def has_position(type_, n, position):
  """Whether the 0-based position is significant in the type."""
  return type_ >> (n - 1 - position) & 1 == 1


def record_of_occurrence(members, type_, n):
  """members: (parent position, word) for each of the n positions."""
  kept = []
  for position, (parent, word) in enumerate(members):
    if has_position(type_, n, position):
      kept.append((word.lemma % MOST_LEMMAS, word.tag, parent, word.dependency if parent else HEAD))
  return Record(type_, tuple(kept), 1)


def record_of_full(full, type_, n):
  kept = tuple(member for position, member in enumerate(full.members) if has_position(type_, n, position))
  return Record(type_, kept, full.counter)


#             k:  0  1         2      3     4     5     6     7     8
BITS_PER_MEMBER = [0, 32, 16, 11, 8, 7, 6, 5, 4]
LEMMA_BITMASKS = [0, 0xFFFFFF, 0xFFF, 0xFF, 0x3F, 0x3F, 0x3F, 0x1F, 0xF]
DEPENDENCY_BITMASKS = [0, 0x7C, 0xC, 0x1C, 0xC, 0x4, 0, 0, 0]
PARENT_BITMASKS = [0, 0x3, 0x3, 0, 0, 0, 0, 0, 0]
DP_SHIFT = [0, 24, 12, 6, 4, 4, 0, 0, 0]


def count_hash(record):
  k = len(record.members)
  h = 0xDEADBEEF
  offset = 0
  for lemma, _, parent, dependency in record.members:
    field = ((dependency & DEPENDENCY_BITMASKS[k]) | (parent & PARENT_BITMASKS[k])) << DP_SHIFT[k] & MASK32
    field |= lemma & LEMMA_BITMASKS[k]
    h ^= field << (offset % 32) & MASK32
    offset += BITS_PER_MEMBER[k]
  return h


PRIMES = [53, 97, 193, 389, 769, 1543, 3079, 6151, 12289, 24593, 49157, 98317, 196613, 393241, 786433, 1572869, 3145739,
          6291469, 12582917, 25165843, 50331653, 100663319, 201326611, 402653189, 805306457, 1610612741, 3221225473,
          4294967291]


def bucket_count_for(count):
  return next(prime for prime in PRIMES if prime >= count)


class RecordSet:
  """A chained hash table whose iteration order is the order of the output."""

  def __init__(self, hint=100):
    self.buckets = [[] for _ in range(bucket_count_for(hint))]  # each chain from its head
    self.count = 0

  def find(self, token):
    for record in self.buckets[count_hash(token) % len(self.buckets)]:
      if record.type == token.type and record.members == token.members:
        return record
    return None

  def add(self, record):
    if self.count + 1 > len(self.buckets):
      old = self.buckets
      self.buckets = [[] for _ in range(bucket_count_for(self.count + 1))]
      for chain in old:
        for moved in chain:
          self.buckets[count_hash(moved) % len(self.buckets)].insert(0, moved)
    self.buckets[count_hash(record) % len(self.buckets)].insert(0, record)
    self.count += 1

  def __iter__(self):
    for chain in self.buckets:
      yield from chain


class NGramStore:
  def __init__(self, n):
    self.empty = Record(0, (), 0)
    self.sets = [RecordSet() for _ in range(1 << n)]

  def insert(self, token):
    if token.type == 0:
      return self.empty, False
    found = self.sets[token.type].find(token)
    if found:
      return found, False
    self.sets[token.type].add(token)
    return token, True


# -------------------------------------------------------------------------------------------------------------
# extraction


def sum_decompositions(total, parts):
  """The decompositions of total into so many parts, each as [(part number, share > 0), ...] with ascending numbers.

  In the order in which the last part varies slowest. Tuples whose last non-zero part lies further left come first.
  """
  if total == 0:
    yield []
    return
  for last in range(parts):
    for share in range(1, total + 1):
      for rest in sum_decompositions(total - share, last):
        yield rest + [(last, share)]


def join_subtrees(lists):
  total = 1
  for pieces in lists:
    total *= len(pieces)
  out = [[] for _ in range(total)]
  if total == 0:
    return out
  for pieces in lists:
    block = total // len(pieces)
    for e in range(total):
      out[e] += pieces[e // block]
  return out


def extract_subtrees(parents, n):
  """parents[i] is the parent of word i (parents[0] is the pseudo-root's). The pieces of n words, in storing order."""
  nodes = len(parents)
  if nodes <= n:
    return []
  children = [[] for _ in range(nodes)]
  for i in range(1, nodes):
    if parents[i] < nodes:
      children[parents[i]].append(i)
  pieces = [dict() for _ in range(nodes)]
  finished = [0] * nodes
  result = [[] for _ in range(nodes)]
  queue = [i for i in range(1, nodes) if not children[i]]
  at = 0
  while at < len(queue):
    v = queue[at]
    at += 1
    pieces[v][1] = [[v]]
    if children[v]:
      for size in range(2, n + 1):
        for shares in sum_decompositions(size - 1, len(children[v])):
          lists = [pieces[children[v][c]].get(share, []) for c, share in shares]
          if not all(lists):
            continue
          for piece in join_subtrees(lists):
            piece.append(v)
            pieces[v].setdefault(size, []).append(piece)
            if size == n:
              result[v].append(sorted(piece))
    p = parents[v]
    if p < nodes:
      finished[p] += 1
      if p != 0 and finished[p] == len(children[p]):
        queue.append(p)
  return [piece for of_top in result for piece in of_top]


# --------------------------------------------------------------------------------------------------------------
# filtering


def match_single_rule(rule, item):
  return all(r == ord("-") or r == i for r, i in zip(rule, item))


class UniRulesFilter:
  def __init__(self):
    self.rules = []

  def read_rules(self, path):
    descriptor = open_for_reading(path)
    if descriptor is None:
      return False
    self.rules += [line for line in lines_of(read_all(descriptor)) if line]
    os.close(descriptor)
    return True

  def match(self, item):
    return any(match_single_rule(rule, item) for rule in self.rules)


def split_rule(line):
  members = line.split(b" ")
  if members[-1] == b"":
    members.pop()
  return members


class MultiRulesFilter:
  def __init__(self):
    self.rules = []
    self.matched = []
    self.file_matched = []

  def read_rules(self, path, n):
    descriptor = open_for_reading(path)
    if descriptor is None:
      return False
    for line in lines_of(read_all(descriptor)):
      if line:
        members = split_rule(line)
        if len(members) == n:
          self.rules.append(members)
          self.matched.append(0)
          self.file_matched.append(0)
    os.close(descriptor)
    return True

  def match(self, items, count):
    for number, rule in enumerate(self.rules):
      if all(match_single_rule(pattern, item) for pattern, item in zip(rule, items)):
        if count:
          self.matched[number] = (self.matched[number] + 1) & MASK32
          self.file_matched[number] = (self.file_matched[number] + 1) & MASK32
        return True
    return False


# -------------------------------------------------------------------------------------------------------------
# evaluation


class Tables:
  def __init__(self, frequencies, n):
    types = 1 << n
    F = list(frequencies)
    O = list(F)
    for t in range(types - 2, -1, -1):
      for j in range(types):
        if j != t and j & t == t:
          O[t] = (O[t] - O[j]) & MASK32
    V = [0] * types
    for k in range(n):
      i = 1 << k
      V[i] = sum(O[j] for j in range(1, types) if i & j == 0) & MASK32
    E = []
    for i in range(types):
      e = float(F[0]) * 1.0
      for k in range(n):
        e = div(float(F[1 << k] if i >> k & 1 else V[1 << k]), float(F[0])) * e
      E.append(e)
    self.F, self.O, self.E = F, O, E


def chi_square_test(t):
  total = 0.0
  for o, e in zip(t.O, t.E):
    total += div((float(o) - e) * (float(o) - e), e)
  return total


def log_likelihood_ratio(t):
  total = 0.0
  for o, e in zip(t.O, t.E):
    if o != 0:
      total += float(o) * guarded_log10(div(float(o), e))
  return 2.0 * total


def mutual_information(t):
  F = [float(f) for f in t.F]
  x = div(div(F[3], F[0]), div(F[2], F[0]) * div(F[1], F[0]))
  return guarded_log10(x) / math.log10(2.0)


def pearsons_coefficient(t):
  O = t.O
  numerator = (O[3] * O[0] - O[2] * O[1]) & MASK32
  denominator = (O[3] + O[2]) * (O[3] + O[1]) * ((O[0] + O[2]) * (O[0] + O[1])) & MASK32
  return div(float(numerator), root(float(denominator)))


def t_test(t):
  f3 = float(t.F[3])
  return div(f3 - t.E[3], root(f3 * (1.0 - div(f3, float(t.F[0])))))


def z_score(t):
  e3 = t.E[3]
  return div(float(t.F[3]) - e3, root(e3 * (1.0 - div(e3, float(t.F[0])))))


# --------------------------------------------------------------------------------------------------------------------
# run


class FileStats:
  def __init__(self, name):
    self.name = name
    self.words = self.sentences = self.extracted = self.passed = self.filtered = 0


class Run:
  """One run of the program. emit_out and emit_err take bytes; work_limit bounds the occurrences stored (None: no
  bound)."""

  def __init__(self, emit_out, emit_err, work_limit=None):
    self.out = emit_out
    self.err = emit_err
    self.work_left = work_limit
    self.settings = Settings()
    self.lemmas = StringStore(MASK32)
    self.tags = StringStore(255)
    self.ngrams = None
    self.morphologic_filter = MultiRulesFilter()
    self.context_filter = UniRulesFilter()
    self.overall_stats = []
    self.filter_file_stats = {}
    self.free_fatal_text = False

  # Messages.

  def info(self, text):
    self.out(text + b"\n")

  def elapsed(self, text):
    self.out(text + b"\n0 secs elapsed.\n")

  def warning(self, text):
    self.err(b"WARNING: " + text + b"\n")

  def fatal(self, text):
    self.err(b"FATAL ERROR: " + text + b"\n")

  def exit_failure(self):
    self.info(b"\nProgram terminated due to fatal error(s). See stderr output for more info.")
    raise ExitProgram(1)

  # The driver.

  def main(self, argv):
    """argv without the program's name; returns the exit status."""
    try:
      status = self._main(argv)
    except ExitProgram as end:
      status = end.status
    self.out(b"0.00 s\n\n")
    return status

  def _main(self, argv):
    s = self.settings
    if not argv:
      self.out(USAGE)
      return 0
    s.parse(argv)
    if not s.ready():
      self.fatal(b"Some of the mandatory program parameters are missing!")
      self.out(USAGE)
      self.exit_failure()
    if not s.correct():
      self.fatal(b"Some of the program parameters are in incorrect format!")
      self.out(USAGE)
      self.exit_failure()
    self.info(b"Performing start-up checks.")
    if not self._startup_init():
      self.exit_failure()
    files = self._read_and_check_input_datafiles()
    if files is None:
      self.exit_failure()
    files, total = files
    self._check_outputs(files)
    output = self._open_output(s.output_file, b"Cannot open output file: ")
    contexts = stats = filter_stats = None
    if s.context_tracing_on():
      contexts = self._open_output(s.context_output_file, b"Cannot open context output file: ")
    if s.stats_file is not None:
      stats = self._open_output(s.stats_file, b"Cannot open file to save statistics: ")
    if s.morphologic_filter_stats_file is not None:
      filter_stats = self._open_output(s.morphologic_filter_stats_file,
                                       b"Cannot open file to save morphologic filter statistics: ")
    self.elapsed(b"Finished performing start-up checks.")
    try:
      self._process(files, total)
    except FatalError as error:
      self.free_fatal_text = isinstance(error, StringTooLong)
      self.fatal(error.text)
      self.exit_failure()
    if stats:
      self._write_phase(b"statistics file", b"Writing statistics file.", stats, self._stats_text)
    if filter_stats:
      self._write_phase(b"morphologic filter statistics file", b"Writing morphologic filter statistics file.",
          filter_stats,
                        self._filter_stats_text)
    self._write_phase(b"output datafile", b"Writing output datafile.", output, self._output_text)
    if contexts:
      self._write_phase(b"contexts to file", b"Writing contexts to file.", contexts, self._contexts_text)
    self.info(b"Bye!")
    return 0

  def _open_output(self, path, message):
    try:
      return OutputFile(path)
    except (OSError, ValueError):
      self.fatal(message + path + b"!")
      self.exit_failure()

  def _write_phase(self, what, started, file, content):
    self.info(started)
    if not file.write_and_close(content()):
      self.fatal(b"Cannot write to file: " + file.path + b"!")
      self.exit_failure()
    self.elapsed(b"Finished writing " + what + b".")

  def _startup_init(self):
    s = self.settings
    self.ngrams = NGramStore(s.n)
    if s.morphologic_filter_file is not None:
      if s.mask is None:
        self.warning(b"Extraction of morphologic information is not set on (parameter -m not specified). "
                     b"Morphologic filter will not be applied...")
      elif not self.morphologic_filter.read_rules(s.morphologic_filter_file, s.n):
        self.fatal(b"Cannot read rules from file: " + s.morphologic_filter_file + b"!")
        return False
    if s.morphologic_filter_stats_file is not None and s.morphologic_filter_file is None:
      self.warning(b"Morphologic filter is not turn on (parameter -f not specified). "
                   b"Morphologic filter stats cannot be retrieved...")
    if s.context_filter_file is not None:
      if s.context_output_file is None:
        self.warning(b"Context output file is not specified (parameter -c). "
                     b"Morphologic filter for N-gram context will not be applied...")
      elif s.mask is None:
        self.warning(b"Extraction of morphologic information is not set on (parameter -m is not specified). "
                     b"Morphologic filter for N-gram context will not be applied...")
      elif not self.context_filter.read_rules(s.context_filter_file):
        self.fatal(b"Cannot read rules from file: " + s.context_filter_file + b"!")
        return False
    if s.n != 2:
      for number, name in ((2, b"Mutual information"), (3, b"Pearson's coefficient"), (4, b"t test"), (5, b"z score")):
        if s.thresholds[number] > 0.0:
          self.warning(name + b" evaluation only available for N equal 2. Threshold ignored...")
    return True

  def _read_and_check_input_datafiles(self):
    s = self.settings
    descriptor = open_for_reading(s.input_file)
    if descriptor is None:
      self.fatal(b"Cannot open the file: " + s.input_file + b"!")
      return None
    lines = lines_of(read_all(descriptor))
    os.close(descriptor)
    prefix = s.dir if s.dir is not None else b""
    files = []
    total = 0
    good = True
    for line in lines:
      if not line:
        continue
      descriptor = open_for_reading(prefix + line)
      if descriptor is None:
        self.fatal(b"Input datafile : " + prefix + line + b" cannot be opened for reading!")
        good = False
        continue
      total = (total + max(length_of(descriptor), 0)) & MASK32
      os.close(descriptor)
      files.append(prefix + line)
    if not files:
      self.fatal(b"Input data files list is empty!")
      return None
    return (files, total) if good else None

  def _check_outputs(self, files):
    s = self.settings
    outputs = [s.output_file, s.context_output_file, s.stats_file, s.morphologic_filter_stats_file]
    outputs = [(path, place_of(path)) for path in outputs if path is not None]
    outputs = [(path, place) for path, place in outputs if place is not None]
    inputs = [s.input_file, s.morphologic_filter_file, s.context_filter_file, *files]
    for place in [place_of(path) for path in inputs if path is not None]:
      for path, other in outputs:
        if place == other:
          self.fatal(b"Output file is also an input: " + path + b"!")
          self.exit_failure()
    for i, (path, place) in enumerate(outputs):
      if place in [other for _, other in outputs[:i]]:
        self.fatal(b"Two outputs have the same path: " + path + b"!")
        self.exit_failure()

  def _process(self, files, total):
    self.info(b"Processing input datafiles.")
    processed = 0
    for path in files:
      descriptor = open_for_reading(path)
      if descriptor is None:
        self.warning(b"Input datafile: " + path + b" cannot be opened for reading! Skipping...")
        continue
      stats = FileStats(path)
      self.info(b"Processing datafile: " + path)
      try:
        size = self._extract(descriptor, stats)
      except IndexOverflow:
        if len(self.lemmas.table) == self.lemmas.largest_index:
          text = b"Number of unique strings in lemmas store has overflowen numeric index type range!"
        elif len(self.tags.table) == self.tags.largest_index:
          text = b"Number of unique strings in morphologic tags store has overflowen numeric index type range!"
        else:
          text = b"Undetermined index overflow exception!"
        raise FatalError(text) from None
      finally:
        os.close(descriptor)
      self.overall_stats.append(stats)
      if self.morphologic_filter.rules:
        self.filter_file_stats.setdefault(path, list(self.morphologic_filter.file_matched))
        self.morphologic_filter.file_matched = [0] * len(self.morphologic_filter.rules)
      self.elapsed(b"Finished processing datafile: " + path + b" (" + u(size) + b" bytes)")
      if total != 0:
        processed = (processed + size) & MASK32
        self.info(b"Overall processing progress: " + double2str(processed / total * 100.0, 4) + b"%")
    self.elapsed(b"Finished processing input datafiles.")

  # Extraction.

  def _extract(self, descriptor, stats):
    s = self.settings
    length = length_of(descriptor)
    display = ProgressDisplay(max(length, 1) if length < 0 else length, self.out)
    if length < 0:
      self.warning(b"Progress bar initialization failed! Going on without progress bar display...")
      display = None
      length = 0
    stream = InputStream(read_all(descriptor))
    parser = Parser(stream, self)
    buffer = Buffer(parser, s.window_mode, s.window_size)
    buffer.init()
    if not buffer.sentences:
      return 0
    last_position = 0
    while True:
      begin, end = buffer.current()
      sentence = buffer.words[begin:end]
      for positions in extract_subtrees([0] + [word.parent for word in sentence], s.n):
        members = []
        root_at = None
        for position in positions:
          word = sentence[position - 1]
          if word.parent in positions:
            members.append((positions.index(word.parent) + 1, word))
          else:
            members.append((0, word))
            root_at = begin + position - 1
        self._store_raw_ngram(members, [begin + position - 1 for position in positions], buffer, stats, root_at)
      if display:
        if stream.eof:
          display.complete()
          break
        position = -1 if stream.fail else stream.position
        if position < 0:
          self.info(b"")
          self.warning(b"Progress bar update failed! Stopping progress bar display...")
          display = None
        else:
          display.advance(position - last_position)
          last_position = position
      if not buffer.next():
        break
    stats.words += buffer.words_taken
    stats.sentences += buffer.sentences_taken
    return length & MASK32

  def _store_raw_ngram(self, members, places, buffer, stats, root_at):
    """places: where the members stand in the buffer's words."""
    n = self.settings.n
    full = (1 << n) - 1
    for type_ in range(full + 1):
      record = self._store_ngram(members, type_)
      if type_ == full:
        stats.extracted += 1
        if record is None:
          stats.filtered += 1
        else:
          stats.passed += 1
      if record is None or not self.settings.context_tracing_on() or type_ == 0:
        continue
      if self.settings.window_mode == WORDS:
        begin, end = buffer.context_range(root_at, root_at)
      else:
        begin, end = 0, len(buffer.words)
      significant = {place for position, place in enumerate(places) if has_position(type_, n, position)}
      for place in range(begin, end):
        if place in significant:
          continue
        word = buffer.words[place]
        if self.context_filter.rules and not self.context_filter.match(self.tags.table[word.tag]):
          continue
        record.add_to_context(Context(word.lemma, word.tag, False))
      if type_ == full:
        sentence_begin, sentence_end = buffer.current()
        for place in (places[0] - 1, places[-1] + 1):
          if sentence_begin <= place < sentence_end:
            word = buffer.words[place]
            record.add_to_context(Context(word.lemma, word.tag, True))

  def _store_ngram(self, members, type_):
    n = self.settings.n
    if self.work_left is not None:
      self.work_left -= 1
      if self.work_left < 0:
        raise TooMuchWork
    if self.morphologic_filter.rules and type_ != 0:
      tags = [b""] * n
      for position, (_, word) in enumerate(members):
        if has_position(type_, n, position):
          tags[n - 1 - position] = self.tags.table[word.tag]
      if not self.morphologic_filter.match(tags, type_ == (1 << n) - 1):
        return None
    record, inserted = self.ngrams.insert(record_of_occurrence(members, type_, n))
    if not inserted:
      record.inc()
    return record

  # Output files.

  def _member_line(self, position, member):
    lemma, tag, parent, dependency = member
    return (u(position) + b"\t" + self.lemmas.table[lemma] + b"\t" + self.tags.table[tag] + b"\t" + u(parent) + b"\t" +
            RELATIONS[dependency] + b"\n")

  def _output_text(self):
    s = self.settings
    n = s.n
    full = (1 << n) - 1
    measures = [chi_square_test, log_likelihood_ratio]
    if n == 2:
      measures += [mutual_information, pearsons_coefficient, t_test, z_score]
    text = []
    records = self.ngrams.sets[full]
    display = ProgressDisplay(records.count, self.out)
    for record in records:
      frequencies = [self.ngrams.empty.frequency()]
      for type_ in range(1, full):
        frequencies.append(self.ngrams.sets[type_].find(record_of_full(record, type_, n)).frequency())
      frequencies.append(record.frequency())
      display.advance(1)
      if s.sieve_frequency > frequencies[full]:
        continue
      tables = Tables(frequencies, n)
      if s.sieve_estimated > tables.E[full]:
        continue
      if not self._passes_thresholds(tables, measures):
        continue
      for position, member in enumerate(record.members, 1):
        text.append(self._member_line(position, member))
      text.append(b"\t".join(u(cell) for cell in tables.O) + b"\n")
      text.append(b"\t".join(double2str(measure(tables), s.precision) for measure in measures) + b"\n\n")
    text.append(b"\n")
    return b"".join(text)

  def _passes_thresholds(self, tables, measures):
    passed = True
    for measure, threshold in zip(measures, self.settings.thresholds):
      if not threshold > 0:
        continue
      result = measure(tables)
      if result >= threshold or math.isnan(result):
        if not self.settings.all_thresholds_together:
          return True
        passed = True
      else:
        if self.settings.all_thresholds_together:
          return False
        passed = False
    return passed

  def _counts_text(self, words, sentences, extracted, passed, filtered):
    grams = u(self.settings.n) + b"-grams "
    text = b"# of words: " + u(words) + b"\n# of sentences: " + u(sentences) + b"\n"
    text += b"# of " + grams + b"extracted: " + u(extracted) + b"\n"
    if self.morphologic_filter.rules:
      text += b"# of " + grams + b"passed: " + u(passed) + b"\n# of " + grams + b"filtered: " + u(filtered) + b"\n"
    return text + b"\n"

  def _stats_text(self):
    text = b""
    sums = [0] * 5
    for stats in self.overall_stats:
      counts = [stats.words, stats.sentences, stats.extracted, stats.passed, stats.filtered]
      text += b"Statistics for datafile " + stats.name + b":\n" + self._counts_text(*counts)
      sums = [(a + b) & MASK32 for a, b in zip(sums, counts)]
    text += b"Overall datafiles statistics:\n" + self._counts_text(*sums)
    text += b"Strings storage statistics:\n# of unique lemmas: " + u(len(self.lemmas.table))
    text += b"\n# of unique tags: " + u(len(self.tags.table)) + b"\n\n"
    n = u(self.settings.n)
    text += n + b"-grams storage statistics:\n"
    for type_, records in enumerate(self.ngrams.sets):
      text += b"# of unique " + n + b"-grams of type " + u(type_) + b": " + u(records.count if type_ else 1) + b"\n"
    return text + b"\n"

  def _rules_text(self, matched):
    text = b""
    for rule, count in zip(self.morphologic_filter.rules, matched):
      text += b"".join(b" " + pattern for pattern in rule) + b"\t" + u(count) + b"\n"
    return text + b"\n"

  def _filter_stats_text(self):
    n = u(self.settings.n)
    text = b""
    for path in sorted(self.filter_file_stats):
      text += b"Passed " + n + b"-grams statistics for datafile " + path + b":\n"
      text += self._rules_text(self.filter_file_stats[path])
    return text + b"Overall passed " + n + b"-grams statistics:\n" + self._rules_text(self.morphologic_filter.matched)

  def _contexts_text(self):
    n = self.settings.n
    full = (1 << n) - 1
    display = ProgressDisplay(sum(records.count for records in self.ngrams.sets), self.out)
    text = []
    for type_ in range(full, 0, -1):
      for record in self.ngrams.sets[type_]:
        members = iter(record.members)
        for position in range(n):
          if has_position(type_, n, position):
            text.append(self._member_line(position + 1, next(members)))
          else:
            text.append(u(position + 1) + b"\t*\n")
        text.append(b"\n")
        for narrow in (True, False) if type_ == full else (False,):
          for part in record.contexts:
            if part.narrow == narrow:
              text.append(self.lemmas.table[part.lemma] + b"\t" + self.tags.table[part.tag] + b"\t" +
                  u(part.frequency) +
                          b"\n")
          text.append(b"\n")
        text.append(b"\n")
        display.advance(1)
    text.append(b"\n")
    return b"".join(text)


def main():
  def to(descriptor):
    def emit(text):
      while text:
        text = text[os.write(descriptor, text):]
    return emit

  return Run(to(1), to(2)).main([os.fsencode(word) for word in sys.argv[1:]])


if __name__ == "__main__":
  sys.exit(main())
