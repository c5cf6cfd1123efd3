#!/usr/bin/env python3
"""Hand-worked examples for the reference twin, so that it is trusted before the program is compared with it."""

import math
import os
import random
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import ngrex_reference as ref  # noqa: E402
import seeds  # noqa: E402


class RunResult:
  def __init__(self, files, arguments):
    out, err = [], []
    before = os.getcwd()
    with tempfile.TemporaryDirectory() as folder:
      for name, content in files.items():
        with open(os.path.join(folder, name), "wb") as file:
          file.write(content)
      os.chdir(folder)
      try:
        self.run = ref.Run(out.append, err.append)
        self.status = self.run.main([os.fsencode(word) for word in arguments])
        self.files = {}
        for name in os.listdir("."):
          with open(name, "rb") as file:
            self.files[name] = file.read()
      finally:
        os.chdir(before)
    self.out = b"".join(out)
    self.err = b"".join(err)


def run(data, *arguments, **more_files):
  """Runs the twin on one datafile named a, or on the command line alone when data is None."""
  files = {name: content for name, content in more_files.items()}
  if data is not None:
    files.update({"list": b"a\n", "a": data})
    arguments = ("-i", "list", "-o", "out") + arguments
  return RunResult(files, arguments)


def sentence(*words):
  """Word lines from "lemma tag parent relation" texts, closed by an empty line."""
  lines = []
  for order, word in enumerate(words, 1):
    lemma, tag, parent, relation = word.split()
    lines.append(f"{order}\tf\t{lemma}\t{tag}\t{parent}\t{relation}\n")
  return ("".join(lines) + "\n").encode()


class Settings(unittest.TestCase):
  def settings(self, line):
    settings = ref.Settings()
    settings.parse([word.encode() for word in line.split(" ")])
    return settings

  def correct(self, line):
    return self.settings("-i l -o o " + line).correct()

  def test_takes_the_low_eight_bits_of_n(self):
    self.assertEqual(self.settings("-n 258").n, 2)
    self.assertEqual(self.settings("-n 4294967298").n, 2)
    self.assertEqual(self.settings("-n -3").n, 0)
    self.assertFalse(self.settings("-i l -o o -n -3").ready())

  def test_bounds_n(self):
    self.assertEqual([self.correct(f"-n {n}") for n in (1, 2, 7, 8)], [False, True, True, False])

  def test_checks_the_window_only_with_contexts(self):
    for window, good in (("-cw 0", False), ("-cw 1", True), ("-cw 50", True), ("-cw 51", False), ("-cs 0", True),
                         ("-cs 2", True), ("-cs 3", False)):
      self.assertEqual(self.correct("-n 2 -c c " + window), good, window)
      self.assertTrue(self.correct("-n 2 " + window))

  def test_lets_the_later_option_win(self):
    settings = self.settings("-cs 2 -cw 10 -ta -to")
    self.assertEqual((settings.window_mode, settings.window_size), (ref.WORDS, 10))
    self.assertFalse(settings.all_thresholds_together)

  def test_checks_mask_and_precision(self):
    self.assertFalse(self.correct("-n 2 -m **-x"))
    self.assertTrue(self.correct("-n 2 -m "))
    self.assertFalse(self.correct("-n 2 -p 0"))

  def test_passes_over_unknown_words(self):
    settings = self.settings("-tq 5 -ct 3 -cx -d pre")
    self.assertEqual(settings.dir, b"pre")
    self.assertEqual(settings.thresholds, [0.0] * 6)

  def test_treats_a_last_word_without_value(self):
    self.assertIsNone(self.settings("-i a -i").input_file)
    settings = self.settings("-p 3 -cs 1 -cw")
    self.assertEqual((settings.precision, settings.window_mode, settings.window_size), (3, ref.SENTENCES, 1))
    self.assertEqual(self.settings("-p 3 -p").precision, 3)

  def test_converts_numbers_as_c_does(self):
    self.assertEqual([ref.strtol(t) for t in (b" \t+12x", b"-5", b"x", b"", b"99999999999999999999")],
                     [12, -5, 0, 0, ref.LONG_MAX])
    self.assertEqual(ref.ascii2size_t(b"99999999999"), 4294967295)
    self.assertEqual([ref.strtod(t) for t in (b"1e3x", b".5", b"5.", b"1e", b"0x1p2", b"0x", b"-inf", b"z")],
                     [1000.0, 0.5, 5.0, 1.0, 4.0, 0.0, -math.inf, 0.0])


class Streams(unittest.TestCase):
  def read(self, text):
    stream = ref.InputStream(text)
    return stream.read_unsigned(7), stream.fail, stream.eof

  def test_reads_unsigned_numbers_as_a_stream_does(self):
    self.assertEqual(self.read(b" \n-1 "), (4294967295, False, False))
    self.assertEqual(self.read(b"+7"), (7, False, True))
    self.assertEqual(self.read(b"4294967296 ")[1:], (True, False))
    self.assertEqual(self.read(b"-4294967295 "), (1, False, False))
    self.assertEqual(self.read(b"- ")[1:], (True, False))
    self.assertEqual(self.read(b"x")[1:], (True, False))
    self.assertEqual(self.read(b"  "), (7, True, True))

  def test_ignores_so_many_characters_or_through_the_newline(self):
    for length, position in ((99999, 100000), (100000, 100000), (100001, 100000)):
      stream = ref.InputStream(b"z" * length + b"\nA")
      stream.ignore_line(100000)
      self.assertEqual((stream.position, stream.eof), (position, False))


class Reading(unittest.TestCase):
  def test_gives_relations_their_codes(self):
    self.assertEqual(len(ref.RELATIONS), 118)
    codes = [ref.RELATION_CODES[name] for name in (b"Obj_Co", b"Head", b"Undef", b"Sb", b"Coord_Pa", b"AuxC")]
    self.assertEqual(codes, [99, 96, 117, 113, 91, 40])

  def test_cuts_lemmas_and_masks_tags(self):
    self.assertEqual([ref.cut_lemma(t) for t in (b"go_x", b":a", b"a'b", b"a-1", b"\xba")], [b"go", b"", b"a", b"a-1",
        b"\xba"])
    self.assertEqual([ref.mask_tag(b"*-", t) for t in (b"AB", b"AC", b"A")], [b"A-"] * 3)
    self.assertEqual(ref.mask_tag(b"**-*", b"NNFP1"), b"NN-P")
    self.assertEqual(ref.mask_tag(None, b"NN"), b"")

  def test_stores_strings_up_to_the_last_index(self):
    store = ref.StringStore(255)
    self.assertEqual([store.store(b"%d" % i) for i in range(254)], list(range(254)))
    with self.assertRaises(ref.IndexOverflow):
      store.store(b"one more")
    self.assertEqual(store.store(b"7"), 7)

  def test_warns_of_an_order_that_jumps(self):
    text = b"1\tf\ta\tN\t0\tSb\n2\tf\tb\tN\t1\tSb\n4\tf\tc\tN\t1\tSb\n\n" + sentence("x N 2 Sb", "y N 0 Pred")
    result = run(text, "-n", "2", "-s", "stats")
    self.assertEqual(result.err,
        b"WARNING: Word order mismatch detected at line 3. Got word ordered as 4, while expecting 3. "
                                 b"Skipping current sentence...\n")
    self.assertIn(b"# of words: 2\n# of sentences: 1\n# of 2-grams extracted: 1\n\n", result.files["stats"])

  def test_drops_a_line_that_the_input_cuts_off(self):
    result = run(b"1\tf\ta\tN\t0\tSb\n2\tf\tb\tN\t1", "-n", "2", "-s", "stats")
    self.assertEqual(result.err, b"")
    self.assertIn(b"# of words: 1\n# of sentences: 1\n", result.files["stats"])

  def test_ends_a_sentence_at_a_trailing_blank(self):
    result = run(b"1\tf\ta\tN\t0\tSb \n2\tf\tb\tN\t1\tSb\n\n", "-n", "2")
    self.assertIn(b"at line 3. Got word ordered as 2, while expecting 1.", result.err)


class ListBuffer:
  """A parser over given sentence lengths."""

  def __init__(self, lengths):
    self.left = list(lengths)
    self.stream = ref.InputStream(b"")

  def next(self, limit, mode, words):
    self.lengths = []
    while self.left and (len(self.lengths) if mode == ref.SENTENCES else sum(self.lengths)) < limit:
      self.lengths.append(self.left.pop(0))
      words.extend([len(self.left)] * self.lengths[-1])
    self.stream.eof = not self.left
    return bool(self.lengths)


class Windows(unittest.TestCase):
  def test_keeps_following_sentences_only(self):
    buffer = ref.Buffer(ListBuffer([1, 2, 3, 4, 5]), ref.SENTENCES, 2)
    buffer.init()
    held = [[length for _, length in buffer.sentences]]
    while buffer.next():
      held.append([length for _, length in buffer.sentences])
    self.assertEqual(held, [[1, 2, 3], [2, 3, 4], [3, 4, 5], [4, 5], [5]])

  def test_keeps_a_radius_of_words(self):
    buffer = ref.Buffer(ListBuffer([2, 2, 2, 2]), ref.WORDS, 3)
    buffer.init()
    self.assertEqual(len(buffer.sentences), 3)
    self.assertTrue(buffer.next())
    self.assertEqual((len(buffer.sentences), buffer.current()), (4, (2, 4)))
    self.assertEqual(buffer.context_range(2, 2), (0, 6))

  def test_stops_early_when_reading_ahead_has_met_the_end(self):
    text = sentence("a N 2 Sb", "b N 0 Pred") + sentence("c N 2 Sb", "d N 0 Pred").rstrip(b"\n")
    counts = [run(text, "-n", "2", "-s", "stats", *more).files["stats"] for more in ([], ["-cs", "1"])]
    self.assertIn(b"extracted: 2\n", counts[0])
    self.assertIn(b"# of sentences: 2\n# of 2-grams extracted: 1\n", counts[1])


def decompositions(total, parts):
  """All tuples, as the recursion defines them."""
  if parts == 0:
    return []
  if parts == 1:
    return [(total,)]
  if total == 0:
    return [(0,) * parts]
  return [rest + (first,) for first in range(total + 1) for rest in decompositions(total - first, parts - 1)]


class Enumeration(unittest.TestCase):
  def test_orders_decompositions_as_the_recursion_does(self):
    self.assertEqual(decompositions(2, 3), [(2, 0, 0), (1, 1, 0), (0, 2, 0), (1, 0, 1), (0, 1, 1), (0, 0, 2)])
    for total in range(1, 7):
      for parts in range(1, 6):
        whole = [[(c, share) for c, share in enumerate(t) if share] for t in decompositions(total, parts)]
        self.assertEqual(list(ref.sum_decompositions(total, parts)), whole)

  def test_enumerates_small_trees(self):
    self.assertEqual(ref.extract_subtrees([0, 0, 1, 2], 2), [[1, 2], [2, 3]])
    self.assertEqual(ref.extract_subtrees([0, 0, 1, 1], 3), [[1, 2, 3]])
    self.assertEqual(ref.extract_subtrees([0, 0, 1, 1], 2), [[1, 2], [1, 3]])
    self.assertEqual(ref.extract_subtrees([0, 0], 2), [])

  def test_assigns_joined_pieces_in_blocks(self):
    joined = ref.join_subtrees([[[1], [2]], [[8], [9]]])
    self.assertEqual(joined, [[1, 8], [1, 8], [2, 9], [2, 9]])

  def test_finds_nothing_in_cycles_but_below_them(self):
    self.assertEqual(ref.extract_subtrees([0, 2, 1, 1, 3, 9], 2), [[3, 4]])


class Model(unittest.TestCase):
  def test_hashes_members(self):
    self.assertEqual(ref.count_hash(ref.Record(1, ((5, 9, 0, 96),), 1)), 0xBEADBEEA)
    self.assertEqual(ref.count_hash(ref.Record(0, (), 1)), 0xDEADBEEF)

  def test_carries_out_of_a_full_counter(self):
    record = ref.Record(1, (), 16777215)
    record.inc()
    self.assertEqual((record.counter, record.carried, record.frequency()), (1, 16777215, 16777216))
    record.counter = 16777215
    record.inc()
    self.assertEqual(record.frequency(), 2 * 16777215 + 1)

  def test_moves_whole_chains_when_it_grows(self):
    records = ref.RecordSet()
    self.assertEqual(len(records.buckets), 193)
    for lemma in range(194):
      records.add(ref.Record(1, ((lemma, 0, 0, 96),), 1))
    self.assertEqual(len(records.buckets), 389)
    self.assertEqual(sum(1 for _ in records), 194)

  def test_puts_the_newest_record_at_the_head(self):
    records = ref.RecordSet()
    for tag in range(3):
      records.add(ref.Record(1, ((5, tag, 0, 96),), 1))
    self.assertEqual([record.members[0][1] for record in records], [2, 1, 0])

  def test_sorts_contexts_by_frequency(self):
    record = ref.Record(1, (), 1)
    for lemma in (1, 1, 2, 2, 3, 3):
      record.add_to_context(ref.Context(lemma, 0, False))
    self.assertEqual([(c.lemma, c.frequency) for c in record.contexts], [(1, 2), (2, 2), (3, 2)])
    record.add_to_context(ref.Context(3, 0, False))
    self.assertEqual([(c.lemma, c.frequency) for c in record.contexts], [(3, 3), (1, 2), (2, 2)])
    record.add_to_context(ref.Context(3, 0, True))
    self.assertEqual(len(record.contexts), 4)


class Filters(unittest.TestCase):
  def test_compares_the_common_length(self):
    cases = [(b"NN", b"NNS", True), (b"NN-P", b"NN", True), (b"-", b"x", True), (b"A-", b"B-", False), (b"", b"x",
        True),
             (b"A", b"-", False)]
    for rule, item, good in cases:
      self.assertEqual(ref.match_single_rule(rule, item), good, (rule, item))

  def test_splits_rules_at_single_spaces(self):
    self.assertEqual(ref.split_rule(b"A B "), [b"A", b"B"])
    self.assertEqual(ref.split_rule(b"A  B"), [b"A", b"", b"B"])
    self.assertEqual(ref.split_rule(b" A"), [b"", b"A"])

  def test_constrains_the_last_word_with_the_first_pattern(self):
    text = sentence("a N 2 Sb", "b V 0 Pred")
    kept = run(text, "-n", "2", "-m", "*", "-f", "r", "-s", "stats", r=b"V N\n").files["stats"]
    dropped = run(text, "-n", "2", "-m", "*", "-f", "r", "-s", "stats", r=b"N V\n").files["stats"]
    self.assertIn(b"passed: 1\n# of 2-grams filtered: 0\n", kept)
    self.assertIn(b"passed: 0\n# of 2-grams filtered: 1\n", dropped)


class Evaluation(unittest.TestCase):
  def test_measures_the_worked_table(self):
    t = ref.Tables([1000, 30, 50, 10], 2)
    self.assertEqual(t.O, [930, 20, 40, 10])
    for got, expected in zip(t.E, (0.8, 0.6, 2.0, 1.5)):
      self.assertAlmostEqual(got, expected)
    self.assertAlmostEqual(ref.chi_square_test(t), 1080663.23, places=2)
    self.assertAlmostEqual(ref.log_likelihood_ratio(t), 5883.107, places=2)
    self.assertAlmostEqual(ref.mutual_information(t), 2.737, places=3)
    self.assertAlmostEqual(ref.pearsons_coefficient(t), 0.2286, places=4)
    self.assertAlmostEqual(ref.t_test(t), 2.701, places=3)
    self.assertAlmostEqual(ref.z_score(t), 6.945, places=3)

  def test_measures_the_block_of_a_large_table(self):
    t = ref.Tables([883188, 408, 1636, 96], 2)
    self.assertEqual(t.O, [881240, 312, 1540, 96])
    printed = [ref.double2str(measure(t), 10) for measure in (
        ref.chi_square_test, ref.log_likelihood_ratio, ref.mutual_information, ref.pearsons_coefficient, ref.t_test,
        ref.z_score)]
    self.assertEqual(b" ".join(printed), b"1.427467316e+12 10954970.91 6.98894117 1564.507478 9.721351758 109.5579013")

  def test_sums_cells_to_the_total(self):
    seed = seeds.seed_of()
    r = random.Random(seed)
    for n in range(2, 8):
      frequencies = [r.randrange(1 << 32) for _ in range(1 << n)]
      self.assertEqual(sum(ref.Tables(frequencies, n).O) % (1 << 32), frequencies[0], f"seed {seed}")

  def test_prints_doubles_as_the_stream_does(self):
    cases = [(100.0, 4, b"100"), (33.33333, 4, b"33.33"), (0.0, 4, b"0"), (1e-7, 10, b"1e-07"),
             (123456789012.0, 10, b"1.23456789e+11"), (0.1, 2**31, b"0.1"), (1 / 3, 2**32 - 1, b"0.333333"),
             (math.nan, 10, b"-nan"), (math.inf, 10, b"inf"), (-math.inf, 1, b"-inf")]
    for value, precision, text in cases:
      self.assertEqual(ref.double2str(value, precision), text)


class Program(unittest.TestCase):
  def test_prints_usage_alone(self):
    result = run(None)
    self.assertEqual((result.status, result.err, result.out), (0, b"", ref.USAGE + b"0.00 s\n\n"))

  def test_fails_without_mandatory_options(self):
    result = run(None, "-i", "list")
    self.assertEqual(result.status, 1)
    self.assertEqual(result.err, b"FATAL ERROR: Some of the mandatory program parameters are missing!\n")
    self.assertEqual(result.out, ref.USAGE +
        b"\nProgram terminated due to fatal error(s). See stderr output for more info.\n"
                                 b"0.00 s\n\n")

  def test_reports_every_bad_entry(self):
    result = run(None, "-i", "l", "-n", "2", "-o", "out", l=b"x\n\ny")
    self.assertEqual(result.err, b"FATAL ERROR: Input datafile : x cannot be opened for reading!\n"
                                 b"FATAL ERROR: Input datafile : y cannot be opened for reading!\n"
                                 b"FATAL ERROR: Input data files list is empty!\n")
    self.assertNotIn("out", result.files)

  def test_draws_scale_lines_only_for_a_file_without_sentences(self):
    result = run(b"\n\n", "-n", "2")
    self.assertIn(b"|----|----|----|----|----|----|----|----|----|----|\nFinished processing datafile: a (0 bytes)\n",
                  result.out)
    self.assertEqual(result.files["out"], b"\n")

  def test_completes_the_bar_with_51_marks(self):
    marks = []
    bar = ref.ProgressDisplay(100, marks.append)
    for _ in range(100):
      bar.advance(1)
    self.assertEqual(b"".join(marks[2:]), b"*" * 51 + b"\n")

  def test_writes_contexts(self):
    result = run(sentence("a N 2 Sb", "b V 0 Pred", "c N 0 Atr"), "-n", "2", "-c", "contexts")
    self.assertEqual(result.files["contexts"],
                     b"1\ta\t\t2\tSb\n2\tb\t\t0\tHead\n\nc\t\t1\n\nc\t\t1\n\n\n"
                     b"1\ta\t\t2\tSb\n2\t*\n\nb\t\t1\nc\t\t1\n\n\n"
                     b"1\t*\n2\tb\t\t0\tHead\n\na\t\t1\nc\t\t1\n\n\n\n")

  def test_reports_a_full_disk(self):
    result = run(sentence("a N 0 Sb"), "-n", "2", "-o", "/dev/full")
    self.assertEqual((result.status, result.err), (1, b"FATAL ERROR: Cannot write to file: /dev/full!\n"))

  def test_ends_when_tags_overflow(self):
    text = b"".join(sentence("a %c%c 0 Sb" % (65 + i // 26, 65 + i % 26)) for i in range(255))
    result = run(text, "-n", "2", "-m", "**")
    self.assertEqual(result.status, 1)
    self.assertEqual(result.err,
        b"FATAL ERROR: Number of unique strings in morphologic tags store has overflowen numeric "
                                 b"index type range!\n")
    self.assertEqual(result.files["out"], b"")


if __name__ == "__main__":
  unittest.main()
