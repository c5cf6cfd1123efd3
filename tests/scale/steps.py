"""Proves that the steps of ngrex-scale, given one by one, write what ngrex writes.

usage: steps.py --program NGREX --scale NGREX-SCALE [--seed S]

The tasks of each step are dealt out to several processes at a time, and some of them to two processes at once, as an engine
may do that takes a machine for lost. A step that comes too early, or in a folder without a plan, is refused with a sentence, and so is
a run in a folder where a step is at work.
"""

import argparse
import fcntl
import os
import random
import subprocess
import sys
import tempfile

from bench import seeds

WORDS = ["rain", "wind", "heavy", "falls", "ž"]
OPTIONS = ["-i", "list", "-n", "3", "-m", "**", "-cw", "4"]
FILES = ["-o", "triples", "-s", "statistics", "-c", "contexts"]
NAMES = FILES[1::2]


def datafile(r):
    lines = []
    for _ in range(300):
        for order in range(1, r.randint(2, 7)):
            word = r.choice(WORDS)
            lines.append(f"{order} {word} {word} {r.choice(['NN', 'VB'])} {r.randint(0, order - 1)} {r.choice(['Sb', 'Unknown'])}")
        lines += ["1 rain"] * (r.random() < 0.02) + [""]
    return "".join(line + "\n" for line in lines)


def read(folder, name):
    with open(os.path.join(folder, name), "rb") as file:
        return file.read()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--scale", required=True)
    arguments = seeds.parse(parser)
    arguments.program, arguments.scale = os.path.abspath(arguments.program), os.path.abspath(arguments.scale)
    r = random.Random(arguments.seed)

    with tempfile.TemporaryDirectory() as folder:
        def start(*words):
            return subprocess.Popen([arguments.scale, *words, "--work", "work"], cwd=folder, text=True, stderr=subprocess.PIPE)

        def told(*words, status=0):
            process = start(*words)
            messages = process.communicate()[1]
            assert process.returncode == status, f"{words} ends with {process.returncode}:\n{messages}"
            return messages

        for name in ("one", "two"):
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write(datafile(r))
        with open(os.path.join(folder, "list"), "w", encoding="utf-8") as file:
            file.write("one\ntwo\n")
        run = subprocess.run([arguments.program, *OPTIONS, *FILES], cwd=folder, check=True, capture_output=True)
        expected = [read(folder, name) for name in NAMES]
        for name in NAMES:
            os.remove(os.path.join(folder, name))

        steps = subprocess.run([arguments.scale, "steps"], check=True, capture_output=True, text=True).stdout.splitlines()
        assert steps[0] == "scan" and len(steps) == len(set(steps)), f"the steps are {steps}"
        assert "holds no counts" in told("map", status=1)
        told("plan", *OPTIONS, *FILES, "--shard", str(r.randint(2000, 20000)), "--memory", "1M", "--jobs", str(r.randint(1, 5)))
        assert "is missing" in told("map", status=1)
        assert "takes no -n" in told("map", "-n", "3", status=2)

        for words in (["map", "--memory", "1M"], ["map", "--shard", "1K"], ["map", "--jobs", "1"], ["write", "--memory", "1M"],
                      ["write", "--of", "2"], ["plan", *OPTIONS, *FILES, "--task", "1"], ["steps", "--jobs", "1"]):
            option, = (word for word in words if word.startswith("--"))
            assert f"{words[0]} takes no {option}" in told(*words, status=2)
        assert "there is no option --job" in told("run", "--job", "3", *OPTIONS, *FILES, status=2)
        for command in ("run", "plan"):
            assert f"{command}: expected -i LIST, -n SIZE and -o FILE" in told(command, status=2)

        for step in steps:
            jobs = r.randint(1, 4)
            processes = [start(step, "--task", str(job), "--of", str(jobs)) for job in [*range(jobs), r.randrange(jobs)]]
            messages = [process.communicate()[1] for process in processes]
            assert not any(process.returncode for process in processes), f"{step} fails:\n{''.join(messages)}"
            if step == "number":
                assert run.stderr.decode() in messages, f"the warnings are {messages}, not\n{run.stderr.decode()}"
            if step == "map":
                # A file that is damaged is made again when its task no longer counts as done.
                open(os.path.join(folder, "work", "map-0.run-0"), "wb").close()
                assert "remove work/map-0.done, and the step map makes it again" in told("reduce", status=1)
                os.remove(os.path.join(folder, "work", "map-0.done"))
                told("map")
            if step == "order":
                assert "are not complete" in told("write", *FILES, status=1)
        told("write", *FILES)
        assert [read(folder, name) for name in NAMES] == expected, "the files are not those of ngrex"

        with open(os.path.join(folder, "work", "lock"), "rb") as lock:
            fcntl.flock(lock, fcntl.LOCK_SH)  # as a step does
            told("count")
            assert "another run works in" in told("run", *OPTIONS, *FILES, status=1)
    return 0


sys.exit(main())
