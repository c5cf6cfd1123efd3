"""Companion programs on a terminal and on a full disk, and all programs with closed standard descriptors.

usage: surroundings.py BUILD_FOLDER
"""

import os
import pty
import resource
import signal
import subprocess
import sys
import tempfile
import zipfile

ROWS = "".join(f"{i}\tw\tw\tX\tX\t_\t{i - 1}\t{'root' if i == 1 else 'obj'}\t_\t_\n" for i in range(1, 40))
PAIR = "1\theavy\tA\t2\tAtr\n2\train\tN\t0\tHead\n4\t1\t1\t1\n-nan\tinf\t0.8\t0.3\t0.4\t0.5\n\n\n"

failures = 0


def expect(condition, what, got):
    global failures
    if not condition:
        failures += 1
        print(f"{what}: got {got!r}")


def on_terminal(command, folder, streams, settings=None):
    """Runs a command with the given streams ("out", "err") on one terminal; returns what that got, and the other stream."""
    main, other = pty.openpty()
    process = subprocess.Popen(command, cwd=folder, env={**os.environ, **(settings or {})}, stdin=subprocess.DEVNULL,
                               stdout=other if "out" in streams else subprocess.PIPE,
                               stderr=other if "err" in streams else subprocess.PIPE)
    os.close(other)
    shown = b""
    while True:
        try:
            piece = os.read(main, 65536)
        except OSError:  # the other side is closed
            break
        if not piece:
            break
        shown += piece
    rest = b"".join(filter(None, process.communicate()))
    os.close(main)
    return shown.decode().replace("\r\n", "\n"), rest.decode()


def closed(command, folder, redirection):
    return subprocess.run(["bash", "-c", f'"$@" {redirection}', "bash", *command], cwd=folder, capture_output=True, text=True)


def with_small_files(command, folder):
    """Runs a command that can write no file larger than 100,000 bytes."""
    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (100_000, 100_000))

    return subprocess.run(command, cwd=folder, capture_output=True, text=True, preexec_fn=limit)


def main():
    build = os.path.abspath(sys.argv[1])
    table = os.path.join(build, "ngrex-table")
    importer = os.path.join(build, "ngrex-import")
    examples = os.path.join(build, "ngrex-examples")
    reporter = os.path.join(build, "ngrex-report")
    with tempfile.TemporaryDirectory() as folder:
        with open(os.path.join(folder, "pairs"), "w", encoding="utf-8") as file:
            file.write(PAIR)
        with open(os.path.join(folder, "bank"), "w", encoding="utf-8") as file:
            file.write((ROWS + "\n") * 2000)

        columns = ["--columns", "lemma,frequency"]
        plain = "lemma1  lemma2  frequency\nheavy   rain            1\n"
        bold = "\x1b[1mlemma1  lemma2  frequency\x1b[0m\nheavy   rain            1\n"
        clean = {"NO_COLOR": ""}
        got, _ = on_terminal([table, *columns, "pairs"], folder, ["out"], clean)
        expect(got == bold, "a table on a terminal", got)
        got, _ = on_terminal([table, *columns, "pairs"], folder, ["out"], {"NO_COLOR": "1"})
        expect(got == plain, "a table on a terminal with NO_COLOR", got)
        got, _ = on_terminal([table, *columns, "--format", "tsv", "pairs"], folder, ["out"], clean)
        expect(got == "lemma1\tlemma2\tfrequency\nheavy\train\t1\n", "tsv on a terminal", got)
        _, got = on_terminal([table, *columns, "--format", "table", "pairs"], folder, ["err"], clean)
        expect(got == plain, "a table into a pipe", got)

        got, rest = on_terminal([reporter, "pairs"], folder, ["out"])
        expect(got == "" and "a page is nothing for a terminal" in rest, "a page on a terminal", (got, rest))

        got, _ = on_terminal([importer, "-o", "words", "bank"], folder, ["err"])
        bars, _, report = got.partition("\r\x1b[K")
        expect(bars.startswith("\r[") and bars.endswith("#] 100%") and "\n" not in bars, "a progress bar", bars)
        percents = [int(bar[-4:-1]) for bar in bars.split("\r")[1:]]
        expect(percents == sorted(set(percents)) and len(percents) > 5, "growing percentages", percents)
        expect(report.startswith("format: "), "a report behind the bar", report)
        got, _ = on_terminal([importer, "-q", "-o", "words", "bank"], folder, ["err"])
        expect(got == "", "quiet on a terminal", got)
        got, _ = on_terminal([importer, "bank"], folder, ["out", "err"])
        expect("#" not in got and got.startswith("1\tw\tw\t"), "a datafile on a terminal without a bar", got[:200])

        def lines_of_bar(shown):
            """The bars on a line, having checked that they grow and fit."""
            lines = [bar.removesuffix("\x1b[K") for bar in shown.split("\r")[1:]]
            expect("\n" not in shown and all(len(bar) < 80 for bar in lines), "bars on one line", shown)
            percents = [int(bar[53:56]) for bar in lines]
            expect(percents == sorted(percents) and all(bar[0] == "[" and bar[51:53] == "] " and bar[56] == "%" for bar in lines),
                   "growing bars", lines)
            return percents

        scale = [os.path.join(build, "ngrex-scale"), "run", "--jobs", "2", "--shard", "8K", "-i", "banks", "-n", "2"]
        with open(os.path.join(folder, "banks"), "w", encoding="utf-8") as file:
            file.write("words\nodd\n")
        subprocess.run([importer, "-q", "-o", "words", "bank"], cwd=folder, check=True)
        with open(os.path.join(folder, "odd"), "w", encoding="utf-8") as file:
            file.write("2 w big A 2 Atr\n\n")
        for environment in (clean, {"NO_COLOR": "1"}):
            got, _ = on_terminal([*scale, "-o", "pairs.s", "--work", "counts"], folder, ["err"], environment)
            before, _, behind = got.partition("\r\x1b[KWARNING: ")
            warning, _, behind = behind.partition("\n")
            after, _, rest = behind.partition("\r\x1b[K")
            percents = lines_of_bar(before) + lines_of_bar(after)
            expect(percents == sorted(percents) and percents[0] == 0 and len(percents) > 5, "work that grows", percents)
            expect("line 1" in warning and rest == "", "a warning between bars, and nothing behind them", got)
        got, _ = on_terminal([scale[0], "write", "--work", "counts", "-o", "pairs.s"], folder, ["err"])
        expect(got.startswith("\r[") and got.endswith("%\r\x1b[K"), "a bar while files are written", got)
        for quiet in (["--quiet"], ["--quiet", "--work", "counts"]):
            got, _ = on_terminal([*scale, *quiet, "-o", "pairs.s"], folder, ["err"])
            expect(got.startswith("WARNING: ") and got.count("\n") == 1 and "\r" not in got, "warnings without a bar", got)
        got, _ = on_terminal([*scale, "-o", "/dev/stdout"], folder, ["out", "err"])
        expect("\r[" not in got and got.startswith("WARNING: "), "an output datafile on a terminal without a bar", got[:200])
        got, rest = on_terminal([*scale, "-o", "pairs.s"], folder, ["out"])
        expect(got == "" and rest.startswith("WARNING: ") and "\r" not in rest, "no bar into a pipe", rest)
        for redirection in ("2>&-", "<&- >&- 2>&-"):
            expect(closed([*scale, "-o", "pairs.c"], folder, redirection).returncode == 0, f"ngrex-scale {redirection}", None)
            for name in ("pairs.s", "pairs.c"):
                with open(os.path.join(folder, name), encoding="utf-8") as file:
                    text = file.read()
                expect(text.startswith("1\t"), f"{name} with {redirection}", text[:100])

        got = closed([importer, "-o", "words", "--check-nothing"], folder, "2>&-")
        expect(got.returncode == 2, "usage error with closed standard error", got)
        with open(os.path.join(folder, "bad"), "w", encoding="utf-8") as file:
            file.write("1\tw\tw\tX\tX\t_\tx\troot\t_\t_\n\n" + ROWS)
        got = closed([importer, "-o", "words", "bad"], folder, "2>&-")
        with open(os.path.join(folder, "words"), encoding="utf-8") as file:
            words = file.read()
        expect(words.startswith("1\tw\tw\tX\t0\tPred\n"), "no message in the datafile", words[:100])
        for redirection in (">&-", "<&-"):
            for command in ([importer, "-q"], [table], [reporter]):
                if redirection == ">&-":
                    command = command + ["bad" if command[0] == importer else "pairs"]
                got = closed(command, folder, redirection)
                expect(got.returncode == 1 and "cannot" in got.stderr, f"{command} {redirection}", got)

        program = os.path.join(build, "ngrex")
        job = [program, "-i", "list", "-n", "2", "-s", "stats", "-c", "contexts", "-o", "out"]
        with open(os.path.join(folder, "list"), "w", encoding="utf-8") as file:
            file.write("faulty\n")
        with open(os.path.join(folder, "faulty"), "w", encoding="utf-8") as file:
            file.write("2 w big A 2 Atr\n\n1 w big A 2 Atr\n2 w dog N 0 ExD\n\n")
        written = {}
        for redirection in ("", "<&-", ">&-", "2>&-", "<&- >&- 2>&-"):
            got = closed(job, folder, redirection)
            expect(got.returncode == 0, f"status of ngrex with {redirection}", got)
            for name in ("stats", "contexts", "out"):
                with open(os.path.join(folder, name), encoding="utf-8") as file:
                    text = file.read()
                expect(text == written.setdefault(name, text) and text, f"{name} with {redirection}", text)
        got = closed([*job, "-n", "9"], folder, "<&- >&- 2>&-")
        expect(got.returncode == 1, "status of a failure without standard streams", got)

        # A disk that is full, as a limit on the size of files: an error, and no file, whoever writes it.
        with open(os.path.join(folder, "many"), "w", encoding="utf-8") as file:
            file.write("".join(PAIR[:-1].replace("heavy", f"heavy{i * i}") for i in range(20000)) + "\n")
        # A workbook is written in pieces, and all of them are there.
        subprocess.run([table, "--format", "xlsx", "-o", "book", "many"], cwd=folder, check=True)
        with zipfile.ZipFile(os.path.join(folder, "book")) as book:
            rows = book.read("xl/worksheets/sheet1.xml").count(b"<row ")
        expect(rows == 20001, "rows of a workbook", rows)

        os.mkdir(os.path.join(folder, "full"))
        for form in ("tsv", "sqlite", "xlsx"):
            got = with_small_files([table, "--format", form, "-o", "full/table", "many"], folder)
            expect(got.returncode == 1 and "cannot write to full/table: " in got.stderr, f"{form} on a full disk", got)
            left = os.listdir(os.path.join(folder, "full"))
            expect(left == [], f"what {form} leaves", left)
        got = with_small_files([reporter, "-o", "full/page", "many"], folder)
        expect(got.returncode == 1 and "cannot write to full/page: " in got.stderr, "a page on a full disk", got)
        left = os.listdir(os.path.join(folder, "full"))
        expect(left == [], "what a page leaves", left)
    print(f"{failures} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
