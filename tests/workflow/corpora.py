"""What the tests of the workflow share: a small corpus, its configuration, and a run of Snakemake over it."""

import json
import os
import subprocess

WORDS = ["rain", "wind", "heavy", "falls", "ž"]
TAGS = ["NN", "VB"]
FUNCTIONS = ["Sb", "Atr", "Unknown"]

# What ngrex is asked for, with filters and statistics; and what is asked for beside it, for which there are steps of their own.
OPTIONS = ["-i", "my list", "-n", "3", "-m", "**", "-o", "triples.txt", "-s", "statistics.txt", "-f", "rules", "-fs", "filter.txt"]
OUTPUTS = ["triples.txt", "statistics.txt", "filter.txt"]
CONTEXTS = ["-c", "contexts.txt", "-cw", "3"]


def datafile(r, sentences):
    """Random trees, here and there with a line that warns."""
    lines = []
    for _ in range(sentences):
        for order in range(1, r.randint(2, 7)):
            word = r.choice(WORDS)
            lines.append(f"{order} {word} {word} {r.choice(TAGS)} {r.randint(0, order - 1)} {r.choice(FUNCTIONS)}")
        if r.random() < 0.02:
            lines.append("1 rain rain NN")
        lines.append("")
    return "".join(line + "\n" for line in lines)


def write(path, text):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def read(path):
    with open(path, "rb") as file:
        return file.read()


def make_corpus(folder, r):
    """Three datafiles and their list, in a folder."""
    for number in range(3):
        write(os.path.join(folder, f"data {number}"), datafile(r, 400))
    write(os.path.join(folder, "my list"), "".join(f"data {number}\n" for number in range(3)))
    write(os.path.join(folder, "rules"), "N- -- --\n-- VB --\n")


def expected(ngrex, folder, options=OPTIONS, least=20000):
    """What ngrex writes, by name; removes the files."""
    subprocess.run([ngrex, *options], cwd=folder, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    outputs = [*OUTPUTS, *(["contexts.txt"] if "-c" in options else [])]
    files = {name: read(os.path.join(folder, name)) for name in outputs}
    for name in outputs:
        os.remove(os.path.join(folder, name))
    assert len(files["triples.txt"]) > least, "the corpus is too small to show anything"
    return files


def configure(folder, program, options=OPTIONS, **others):
    """Writes the configuration; JSON is YAML as well."""
    quoted = " ".join("'" + word + "'" for word in options)
    write(os.path.join(folder, "my.yaml"), json.dumps({"options": quoted, "work": "work here", "shard": 8000, "memory": "64M",
                                                       "jobs": 3, "program": program, **others}))


def command(source, *arguments):
    return ["snakemake", "--snakefile", os.path.join(source, "workflow", "Snakefile"), "--configfile", "my.yaml", *arguments]


def snakemake(source, folder, *arguments, **others):
    """Runs it to its end."""
    return subprocess.run(command(source, *arguments), cwd=folder, capture_output=True, text=True, **others)


def markers(folder):
    """The markers of jobs that are done."""
    place = os.path.join(folder, "work here", "workflow")
    return {name for name in os.listdir(place) if not name.endswith(".log")} if os.path.isdir(place) else set()
