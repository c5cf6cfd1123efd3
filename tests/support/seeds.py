"""Where the random tests that are written in Python take their seed from: the command line, or else the environment variable
NGREX_TEST_SEED, or else chance. It is printed so that it can be given again; random.h does the same for C++."""

import os
import random


def seed_of(given=None):
  """The seed of a run; `given` is that of the command line, if there is one."""
  if given is None:
    given = os.environ.get("NGREX_TEST_SEED") or random.SystemRandom().randrange(1 << 32)
  seed = int(given)
  print(f"NGREX_TEST_SEED={seed}", flush=True)
  return seed


def parse(parser, words=None):
  """The arguments of a test, one of which is its seed: adds --seed to the parser and reads the command line with it."""
  parser.add_argument("--seed", type=int, help="default: NGREX_TEST_SEED, or else another one each time")
  arguments = parser.parse_args(words)
  arguments.seed = seed_of(arguments.seed)
  return arguments
