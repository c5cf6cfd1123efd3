"""Proves that help and man page of a program have the same options and values, and that bash completes the same options and
values that the program takes; for ngrex-scale that help, man page and bash know its commands.

usage: options_agree.py SOURCE_FOLDER PROGRAM...
"""

import os
import re
import subprocess
import sys
import tempfile

# What options need beside them to be taken at all.
COMPANY = {"--format": ["-o", "table"], "--json-numbers": ["--format", "jsonl"]}
COMPANY_OF_ALL = {"ngrex-examples": ["-i", "list"], "ngrex-scale": ["run", "-i", "list", "-n", "2", "-o", "out"]}
OPTION = r"-{1,2}[A-Za-z][A-Za-z-]*"


def of_help(program):
    """Options that the program itself lists, with their values; ngrex prints its summary without arguments."""
    arguments = [program] if os.path.basename(program) == "ngrex" else [program, "--help"]
    text = subprocess.run(arguments, capture_output=True, text=True, check=True).stdout
    options = {}
    for line in text.splitlines():
        head = re.match(rf"^ {{1,6}}({OPTION}(?:, ?{OPTION})*)(?: ([A-Z]+)(?=  |$))?(?= |,|$)", line)
        if head:
            for option in re.findall(OPTION, head.group(1)):
                options[option] = head.group(2) or ""
    return options


def of_man_page(path):
    """Options at the head of a tagged paragraph of the section OPTIONS, with their values."""
    options = {}
    section = ""
    tag_follows = False
    for line in open(path, encoding="utf-8"):
        line = line.rstrip("\n").replace("\\-", "-")
        if line.startswith(".SH"):
            section = line[3:].strip().strip('"')
        elif line.startswith((".TP", ".TQ")):
            tag_follows = True
        elif tag_follows:
            tag_follows = False
            if section == "OPTIONS":
                plain = re.sub(r"\\f.", "", line)
                value = re.search(r" ([A-Z]+)\"?$", plain)
                for option in re.findall(rf"(?:(?<=^)|(?<=[ ,\"])){OPTION}", plain):
                    options[option] = value.group(1) if value else ""
    return options


def of_completion(path, name):
    """Options that the completion script offers for a program."""
    text = open(path, encoding="utf-8").read()
    block = re.search(rf"^    {re.escape(name)}\)\n(.*?)^      ;;", text, re.M | re.S).group(1)
    return set(re.findall(OPTION, re.search(r"options='(.*?)'", block, re.S).group(1)))


def completed(source, *words):
    """What bash completes the last of the words to."""
    script = """source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
        _ngrex_complete "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"; printf '%s\\n' "${COMPREPLY[@]}" """
    run = subprocess.run(["bash", "-c", script, "bash", f"{source}/completions/ngrex.bash", *words], capture_output=True,
                         text=True, check=True, cwd=f"{source}/completions")
    return [line for line in run.stdout.splitlines() if line]


def help_words(program, option):
    """The words of an option's paragraph in the help."""
    text = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    paragraph = re.search(rf"^ +(?:-\w, )?{option} .*\n(?:  {{20,}}.*\n)*", text, re.M).group(0)
    return set(re.findall(r"\w+", paragraph)) - {option[2:]}


def refused_values(source, program, options):
    """Values that bash completes and the program refuses, words of the help that the program takes and bash does not
    complete, and options for which it completes the wrong kind of thing."""
    name = os.path.basename(program)
    refused = []
    for option, value in options.items():
        words = completed(source, name, option, "")
        if value == "" or value == "FILE":
            if words != ["ngrex.bash"]:
                refused.append(f"{option} completes {words}, not files")
            continue
        def takes(word):
            with tempfile.TemporaryDirectory() as folder:
                # There is no N-gram, of which no report can be made; 2 is the status of a wrong command line.
                return subprocess.run([program, *COMPANY_OF_ALL.get(name, []), *COMPANY.get(option, []), option, word], input="\n", capture_output=True,
                                      text=True, cwd=folder).returncode != 2

        refused += [f"{option} {word} is completed and refused" for word in words if not takes(word)]
        if value in ("FORMAT", "SOURCE", "HOW", "NAME") or option == "--measures":
            lacking = [word for word in help_words(program, option) if word not in words and takes(word)]
            refused += [f"{option} {word} is not completed" for word in lacking]
        if not words and value not in ("WORDS", "MASK", "K", "N", "F", "R", "CONDITION", "DIGITS", "SIZE", "WORD", "TEXT", "PATTERN"):
            refused.append(f"{option} completes nothing")
    return refused


def unknown_commands(source, program):
    """Commands of ngrex-scale, as the program names its steps, that help, man page or completion do not know, and places that
    have others or another order."""
    steps = subprocess.run([program, "steps"], capture_output=True, text=True, check=True).stdout.split()
    notes = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    manual = open(f"{source}/docs/ngrex-scale.1", encoding="utf-8").read()
    listed = {
        "the help": re.findall(r"\w+", re.search(r"one\s+after\s+another:(.*?),\s+each\s+of", notes, re.S).group(1).replace(" and ", " ")),
        "the man page": re.findall(r"^\.TP\n\.B (\w+)$", manual[manual.index(".SS Steps"):manual.index(".SH OPTIONS")], re.M),
        "the completion": completed(source, "ngrex-scale", "")[5:],
    }
    if completed(source, "ngrex-scale", "")[:5] != ["run", "write", "plan", "steps", "drop"]:
        yield "other commands than steps are not completed"
    for place, names in listed.items():
        if names != steps:
            yield f"{place} has the steps {names}, the program {steps}"


def main():
    source, *programs = map(os.path.abspath, sys.argv[1:])
    failures = 0
    for program in programs:
        name = os.path.basename(program)
        expected = of_help(program)
        if not expected:
            print(f"{name}: its help lists no options")
            failures += 1
        manual = of_man_page(f"{source}/docs/{name}.1")
        found = {
            "man page": set(manual),
            "completion": of_completion(f"{source}/completions/ngrex.bash", name),
        }
        for place, options in found.items():
            if options != set(expected):
                print(f"{name}: {place} lacks {sorted(set(expected) - options)}, has besides "
                      f"{sorted(options - set(expected))}")
                failures += 1
        # The summary of ngrex does not name its values, nor does what ngrex-scale repeats of it.
        summary = {"ngrex": list(expected), "ngrex-scale": [option for option in expected if not option.startswith("--")]}
        for option in summary.get(name, ()):
            del expected[option]
        for option in expected:
            if manual.get(option, expected[option]) != expected[option]:
                print(f"{name}: {option} takes {expected[option]!r} in the help, {manual[option]!r} in the man page")
                failures += 1
        for refused in refused_values(source, program, expected):
            print(f"{name}: {refused}")
            failures += 1
        for complaint in unknown_commands(source, program) if name == "ngrex-scale" else ():
            print(f"{name}: {complaint}")
            failures += 1
    for words, expected in ((("ngrex", "-n", ""), list("234567")), (("ngrex", "-tf", ""), []),
                            (("ngrex", "-i", "ng"), ["ngrex.bash"]), (("ngrex-table", "--", "-"), []),
                            (("ngrex-table", "--measures", "G2,logD"), ["G2,logDice"]),
                            (("ngrex-import", "--from", "=", "d"), ["datafile"])):
        if completed(source, *words) != expected:
            print(f"{words} is completed to {completed(source, *words)}")
            failures += 1
    print(f"{len(programs)} programs, {failures} disagreements")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
