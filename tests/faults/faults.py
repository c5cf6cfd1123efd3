"""Every failure of the system at every moment: runs the programs again and again under the library of faults.cpp, which
fails their n-th allocation, mapping, open, read, write, close, sync, seek or rename, for n = 1, 2, 3 ... until no call is left to
fail; once that call alone, and once all calls from it on.

usage: faults.py LIBRARY PROGRAM...

A run must end in time and without a signal. With status 0 it must leave what it leaves when nothing fails, byte for byte.
Otherwise its status is 1, or 2 for a wrong command line, and it has said why on standard error. Inputs are never touched,
and nothing is left behind that the run was not asked for. With standard error on a full disk the status alone must tell.
"""

import collections
import gzip
import os
import re
import signal
import sys
import tempfile

ONCE = ("open", "read", "write", "close", "sync", "seek", "rename", "map", "memory", "barren")
ONWARDS = ("open", "read", "write", "map", "memory", "barren")  # what stays so: files used up, broken disk, full disk, no memory
HARMLESS = ("interrupt", "piecemeal")  # no failures: the system asks to call again, or gives a part only
SECONDS_FOR_A_RUN = 60

DATAFILES = {
    "a": "1 w big A 2 Atr\n2 w dog N 3 Sb\n3 w sees V 0 Pred\n4 w small A 5 Atr\n5 w cat N 3 Obj\n\n"
         "1 w big A 2 Atr\n2 w cat N 3 Sb\n3 w sleeps V 0 Pred\n\n",
    "b": "1 w big A 2 Atr\n2 w dog N 3 Sb\n3 w sleeps V 0 Pred\n4 w well D 3 Adv\n\n1 w big A 2 Atr\n2 w dog N 0 ExD\n",
}
RULES = {"rules": "N A\nV -\n", "context_rules": "N\nV\n"}
TREEBANK = ("# text = Big dogs sleep\n"
            "1\tBig\tbig\tADJ\tAA\tDegree=Pos\t2\tamod\t_\t_\n"
            "2\tdogs\tdog\tNOUN\tNN\tNumber=Plur\t3\tnsubj\t_\t_\n"
            "3\tsleep\tsleep\tVERB\tVB\t_\t0\troot\t_\t_\n\n"
            "1\tCats\tcat\tNOUN\tNN\tNumber=Plur\t2\tnsubj\t_\t_\n"
            "2\tsleep\tsleep\tVERB\tVB\t_\t0\troot\t_\t_\n\n")
FAULTY = TREEBANK.replace("\t3\tnsubj", "\t7\tnsubj").replace("2\tsleep", "3\tsleep")
BLOCKS = "".join(f"1\t{lemma}\tA\t2\tAtr\n2\tr\u00e9gn\tN\t0\tHead\n{count}\t1\t2\t{count}\n0.5\t1.5\t0.8\t0.3\t0.4\t0.5\n\n"
                 for count, lemma in enumerate(("heavy", "light", "gr\u00fcn"), 1)) + "\n"

PAIRS = "".join(f"1\tbig\tA\t2\tAtr\n2\t{lemma}\tN\t0\tHead\n9\t1\t{4 - count}\t{count}\n0.5\t1.5\t0.8\t0.3\t0.4\t0.5\n\n"
                for count, lemma in ((2, "dog"), (1, "cat"))) + "\n"

Scenario = collections.namedtuple("Scenario", "program arguments inputs piped")
Result = collections.namedtuple("Result", "status out err files")


def scenarios():
    lists = {"list": "a\nb\n"}
    corpus = {**DATAFILES, **RULES, **lists}
    filtered = ["-i", "list", "-n", "2", "-o", "pairs", "-m", "*", "-f", "rules", "-fs", "filter_stats", "-s", "stats",
                "-c", "contexts", "-cf", "context_rules"]
    banks = {"bank": TREEBANK, "bank.gz": gzip.compress(TREEBANK.encode(), mtime=0)}
    split = ["-o", "words.txt", "--list", "words.lst", "--split", "4", "--mask", "*-", "bank", "bank.gz"]
    sort = ["--sort", "logDice", "--top", "2", "--where", "lemma1~^[hlg]", "--measures", "G2,logDice,Fisher", "--pattern"]
    return [
        Scenario("ngrex", [], {}, ""),
        Scenario("ngrex", filtered, corpus, ""),
        Scenario("ngrex", ["-i", "list", "-n", "3", "-o", "triples", "-s", "stats", "-tc", "0.1"], corpus, ""),
        Scenario("ngrex", ["-i", "list", "-n", "9", "-o", "pairs"], corpus, ""),
        Scenario("ngrex-import", split, banks, ""),
        Scenario("ngrex-import", ["-o", "words.txt", "-"], {}, TREEBANK),
        Scenario("ngrex-import", ["-o", "words.txt", "--sentences", "notes", "bank"], banks, ""),
        Scenario("ngrex-import", ["--tag", "upos", "bank.gz"], banks, ""),
        Scenario("ngrex-import", ["--check", "--strict", "faulty"], {"faulty": FAULTY}, ""),
        Scenario("ngrex-import", ["--split", "4"], banks, ""),
        Scenario("ngrex-table", ["blocks"], {"blocks": BLOCKS}, ""),
        Scenario("ngrex-table", [*sort, "--format", "table", "-"], {}, BLOCKS),
        Scenario("ngrex-table", ["--format", "jsonl", "damaged"], {"damaged": BLOCKS[:100]}, ""),
        Scenario("ngrex-table", ["--help"], {}, ""),
        Scenario("ngrex-examples", ["-i", "list", "-m", "*", "-f", "rules", "-o", "shown", "--examples", "all", "--memory", "1",
                                    "--sort", "frequency", "pairs"], {**corpus, "pairs": PAIRS}, ""),
        Scenario("ngrex-examples", ["-i", "list", "--pattern", "* <Atr *", "--format", "jsonl"], corpus, ""),
        Scenario("ngrex-report", ["-"], {}, PAIRS),
        Scenario("ngrex-report", ["-i", "list", "-m", "*", "--where", "lemma1=big", "--top", "2", "-o", "page.html", "pairs"],
                 {**corpus, "pairs": PAIRS}, ""),
    ]


def read(path):
    with open(path, "rb") as file:
        return file.read()


def without_times(text):
    return re.sub(rb"(?m)^\S+( secs elapsed\.| s)$", rb"T\1", text)


class Bench:
    """A folder in which one scenario is run, with the streams and the note of failure in another."""

    def __init__(self, library, program, scenario, folder):
        self._library, self._program, self._scenario = library, program, scenario
        self._work = os.path.join(folder, "work")
        os.mkdir(self._work)
        self._streams = {name: os.path.join(folder, name) for name in ("in", "out", "err", "note")}
        self._inputs = {name: content.encode() if isinstance(content, str) else content
                        for name, content in scenario.inputs.items()}
        for name, content in self._inputs.items():
            with open(os.path.join(self._work, name), "wb") as file:
                file.write(content)

    def run(self, fault=None, full=()):
        """Runs the program; streams named in `full` lead to a device that is. Returns the result and whether a call
        failed."""
        for name in os.listdir(self._work):
            if name not in self._inputs:
                os.remove(os.path.join(self._work, name))
        open(self._streams["note"], "wb").close()
        environment = {"LD_PRELOAD": self._library, "NGREX_FAULT_NOTE": self._streams["note"], "TMPDIR": self._work}
        if fault:
            environment["NGREX_FAULT"] = fault
        source, sink = os.pipe()
        os.write(sink, self._scenario.piped.encode())  # which fits into a pipe
        os.close(sink)
        create = os.O_WRONLY | os.O_CREAT | os.O_TRUNC
        path = {name: "/dev/full" if name in full else self._streams[name] for name in ("out", "err")}
        os.chdir(self._work)
        child = os.posix_spawn(self._program, [self._program, *self._scenario.arguments], environment,
                               file_actions=[(os.POSIX_SPAWN_DUP2, source, 0),
                                             (os.POSIX_SPAWN_OPEN, 1, path["out"], create, 0o600),
                                             (os.POSIX_SPAWN_OPEN, 2, path["err"], create, 0o600)])
        signal.signal(signal.SIGALRM, lambda *_: os.kill(child, signal.SIGKILL))
        signal.alarm(SECONDS_FOR_A_RUN)
        os.close(source)
        status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
        signal.alarm(0)
        files = {name: read(os.path.join(self._work, name)) for name in os.listdir(self._work)}
        out, err = (b"" if name in full else read(self._streams[name]) for name in ("out", "err"))
        return Result(status, without_times(out), err, files), read(self._streams["note"]) != b""

    def untouched(self, files):
        return all(files.get(name) == content for name, content in self._inputs.items())


def problem_of(result, clean, bench, says_why):
    """What is wrong with a run in which something may have failed; an empty text when nothing is."""
    if not bench.untouched(result.files):
        return "an input was changed"
    if not set(result.files) <= set(clean.files):
        return f"left behind: {sorted(set(result.files) - set(clean.files))}"
    if result.status == clean.status and result == clean:
        return ""
    if result.status == 0:
        return "the status says that all went well, but something differs"
    if result.status not in (1, clean.status):
        return "another status than 1"
    return "" if result.err or not says_why else "silence"


def skipped(err):
    return re.findall(rb"WARNING: Input datafile: (\S+) cannot be opened for reading! Skipping", err)


def try_scenario(bench, shows_messages_only, clean_without, tally):
    """Returns the complaints about one scenario, on whose standard output there may be messages only. `clean_without` gives the result of a run without some datafiles."""
    clean, _ = bench.run()
    complaints = []

    def judge(fault, full=()):
        result, failed = bench.run(fault, full)
        # Messages may be lost; a table or a datafile on standard output may not.
        expected = clean._replace(err=b"" if "err" in full else clean.err,
                                  out=b"" if "out" in full and shows_messages_only else clean.out)
        # A datafile that cannot be opened any more is passed over with a warning.
        if result.status == 0 and skipped(result.err):
            expected = clean_without(skipped(result.err), result)
        # The C library may take a lack of memory for a lack of the locale.
        if b"the system has no locale" in result.err:
            expected = expected._replace(err=result.err)
        # A datafile without a length has no progress to be shown.
        if result.status == 0 and fault.startswith("seek"):
            expected = expected._replace(out=result.out, err=result.err)
        problem = problem_of(result, expected, bench, "err" not in full)
        if problem:
            complaints.append((fault, full, problem, result))
        return failed

    for kind in [kind + mark for mark, kinds in (("", ONCE + HARMLESS), ("+", ONWARDS)) for kind in kinds]:
        n = 1
        while judge(f"{kind.rstrip('+')}:{n}{'+' if kind.endswith('+') else ''}"):
            n += 1
        tally[kind] += n
    for full in (["out"], ["err"], ["out", "err"]):
        judge("", full)
        for kind in ("read", "write"):
            for n in range(1, tally[kind] + 1):
                judge(f"{kind}:{n}", full)
    return complaints


def main():
    library, *programs = (os.path.abspath(path) for path in sys.argv[1:])
    programs = {os.path.basename(path): path for path in programs}
    failures = 0
    for scenario in scenarios():
        tally = collections.Counter()
        with tempfile.TemporaryDirectory() as folder:
            bench = Bench(library, programs[scenario.program], scenario, folder)

            def clean_without(names, result):
                if len(names) == len(DATAFILES):  # no list can say so
                    return result
                rest = dict(scenario.inputs)
                rest["list"] = "".join(line for line in rest["list"].splitlines(True) if line.strip().encode() not in names)
                with tempfile.TemporaryDirectory() as other:
                    shorter, _ = Bench(library, programs[scenario.program], scenario._replace(inputs=rest), other).run()
                files = {**shorter.files, "list": result.files["list"]}
                return result._replace(files=files)

            complaints = try_scenario(bench, scenario.program == "ngrex", clean_without, tally)
        failures += len(complaints)
        print(scenario.program, *scenario.arguments, "-", ", ".join(f"{kind}: {n}" for kind, n in tally.items()))
        for fault, full, problem, result in complaints:
            print(f"  {fault} {' '.join(full)}: {problem}; status {result.status}, {result.err[-300:]!r}")
    print(f"{failures} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
