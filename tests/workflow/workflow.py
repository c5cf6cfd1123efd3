"""Proves that the workflow over the tasks of ngrex-scale writes the files that ngrex writes, byte for byte.

usage: workflow.py SOURCE_FOLDER BUILD_FOLDER

A random corpus (the seed is printed, NGREX_TEST_SEED gives it back) is counted by snakemake --cores 2: in one go; killed
half-way without a chance to clear up, and resumed; with a datafile more than before, with a sieve, and with contexts; and where
spent files are dropped on the way, also when it is killed then, and with a datafile more. What is not to be counted again is
not. A failure ends with a sentence and no output. Of the profile for Slurm the test looks at
what sbatch is given and at what the states of a job mean; slurm.py runs it. Status 77 says that Snakemake is not there.
"""

import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import corpora
from corpora import CONTEXTS, OPTIONS, configure, expected, make_corpus, markers, read, snakemake, write

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import seeds  # noqa: E402

failures = []


def expect(condition, complaint):
    if not condition:
        failures.append(complaint)


def expect_bytes(folder, files, when):
    for name, content in files.items():
        path = os.path.join(folder, name)
        expect(os.path.exists(path) and read(path) == content, f"{when}, {name} is not what ngrex writes")


def expect_success(run, when):
    expect(run.returncode == 0, f"{when}, snakemake fails:\n{run.stdout}{run.stderr}")


def done_at(folder):
    """When the manifests of the counting tasks were written, by name."""
    work = os.path.join(folder, "work here")
    return {name: os.stat(os.path.join(work, name)).st_mtime_ns for name in os.listdir(work)
            if name.startswith(("scan", "map")) and name.endswith(".done")}


def check_in_one_go(source, folder, files):
    run = snakemake(source, folder, "--cores", "2", "--printshellcmds")
    expect_success(run, "in one go")
    expect(" write " in run.stderr and "--jobs 2 " in run.stderr, f"the cores are not used for writing:\n{run.stderr}")
    expect_bytes(folder, files, "in one go")
    before = done_at(folder)
    expect(len(before) > 8, f"there are few tasks: {sorted(before)}")
    again = snakemake(source, folder, "--cores", "2")
    expect("Nothing to be done" in again.stderr, f"there is something left to do:\n{again.stderr}")


def check_contexts(source, folder, ngrex, scale):
    """With contexts, in a work folder of their own."""
    options = [*OPTIONS, *CONTEXTS]
    files = expected(ngrex, folder, options)
    configure(folder, scale, options, drop=True)
    expect_success(snakemake(source, folder, "--cores", "2"), "with contexts")
    expect_bytes(folder, files, "with contexts")
    expect_dropped(folder, "with contexts")
    steps = subprocess.run([scale, "steps"], capture_output=True, text=True, check=True).stdout.split()
    gates = {name for name in markers(folder) if "-" not in name and "." not in name}
    expect(gates == {"plan", *steps, "write"}, f"the steps are {steps}, those of the workflow {sorted(gates)}")


def spent(folder):
    """The files of the work folder that nothing but a step of counting reads."""
    return sorted(name for name in os.listdir(os.path.join(folder, "work here"))
                  if re.search(r"\.(lemmas|tags|words|numbers-\d+|run-\d+|listed|refused|pieces|arranged|candidates|patterns.*|"
                               r"merged|firsts)$", name) and not name.startswith("number.lemmas") and name != "number.tags")


def expect_dropped(folder, when):
    expect(not spent(folder), f"{when}, files are left that nobody needs: {spent(folder)}")


def check_dropping(source, folder, ngrex, scale, r):
    """Files go on the way, and what goes on after a kill does not miss them; neither does a longer list or another sieve."""
    files = expected(ngrex, folder)
    configure(folder, scale, drop=True)
    kill_half_way(source, folder)
    expect(not any(name.endswith(".lemmas") for name in spent(folder)), f"nothing goes on the way: {spent(folder)}")
    expect_resumed(source, folder, files, "killed while files go")
    expect_dropped(folder, "killed while files go")

    options = [*OPTIONS[:OPTIONS.index("-o")], "-f", "rules", "-tf", "2", "-o", "frequent"]
    subprocess.run([ngrex, *options], cwd=folder, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    subprocess.run([scale, "write", "--work", "work here", "-tf", "2", "-o", "frequent.s"], cwd=folder, check=True)
    expect_bytes(folder, {"frequent.s": read(os.path.join(folder, "frequent"))}, "from what has stayed")

    add_datafile(folder, r)
    files = expected(ngrex, folder)
    expect_success(snakemake(source, folder, "--cores", "2"), "with a datafile more than was dropped")
    expect_bytes(folder, files, "with a datafile more than was dropped")
    expect_dropped(folder, "with a datafile more")


def add_datafile(folder, r):
    write(os.path.join(folder, "data 3"), corpora.datafile(r, 400))
    with open(os.path.join(folder, "my list"), "a", encoding="utf-8") as file:
        file.write("data 3\n")


def check_growth(source, folder, ngrex, scale, r):
    """More of the corpus, and then a sieve, in the folder of before."""
    before = done_at(folder)
    add_datafile(folder, r)
    files = expected(ngrex, folder)
    expect_success(snakemake(source, folder, "--cores", "2"), "with a datafile more")
    expect_bytes(folder, files, "with a datafile more")
    after = done_at(folder)
    scans = [name for name in before if name.startswith("scan")]
    expect(len(after) > len(before) and all(after[name] == before[name] for name in scans), "shards were scanned again")

    options = [*OPTIONS, "-tf", "2"]
    files = expected(ngrex, folder, options, least=1000)
    configure(folder, scale, options)
    run = snakemake(source, folder, "--cores", "2")
    expect_success(run, "with a sieve")
    expect("rule write:" in run.stderr and "rule map:" not in run.stderr, f"more than writing is done:\n{run.stderr}")
    expect_bytes(folder, files, "with a sieve")
    expect(done_at(folder) == after, "shards were counted again")

    configure(folder, scale, options, exact=True)
    run = snakemake(source, folder, "--cores", "2", "--printshellcmds")
    expect_success(run, "with true counts")
    expect("--exact" in run.stderr and "rule map:" not in run.stderr, f"more than writing is done:\n{run.stderr}")
    expect_bytes(folder, files, "with true counts")


def kill_half_way(source, folder):
    """Kills Snakemake itself when some of the work is done; what it has started may go on for a while."""
    with open(os.path.join(folder, "messages"), "w", encoding="utf-8") as messages:
        run = subprocess.Popen(corpora.command(source, "--cores", "2"), cwd=folder, stdout=messages, stderr=messages)
        while run.poll() is None and "map-0" not in markers(folder):
            time.sleep(0.01)
        expect(run.poll() is None, f"it ended before it could be killed:\n{read(messages.name).decode()}")
        run.send_signal(signal.SIGKILL)
        run.wait()
    expect("write" not in markers(folder), "it was killed too late")


def expect_resumed(source, folder, files, when):
    before = done_at(folder)
    expect(snakemake(source, folder, "--cores", "2").returncode == 1, "a folder that is locked is used")
    expect_success(snakemake(source, folder, "--cores", "2", "--unlock"), "to be unlocked")
    expect_success(snakemake(source, folder, "--cores", "2", "--rerun-incomplete"), when)
    expect_bytes(folder, files, when)
    after = done_at(folder)
    expect(before and all(after.get(name) == done for name, done in before.items()), f"{when}, it did again what was done")


def check_failure(source, folder, scale):
    """An N that there is not, and a configuration without options."""
    configure(folder, scale, [*OPTIONS, "-n", "9"])
    run = snakemake(source, folder, "--cores", "2", "--show-failed-logs")
    expect(run.returncode == 1 and "incorrect format!" in run.stderr, f"-n 9 is not refused:\n{run.stderr}")
    expect(not os.path.exists(os.path.join(folder, "triples.txt")), "a failed run leaves an output")
    write(os.path.join(folder, "my.yaml"), "work: here\n")
    run = snakemake(source, folder, "--cores", "2")
    expect(run.returncode == 1 and "No 'options' in the configuration" in run.stderr, f"no sentence:\n{run.stderr}")


def stand_in(folder, name, text):
    path = os.path.join(folder, name)
    write(path, "#!/bin/sh\n" + text)
    os.chmod(path, 0o755)


def check_submission(source, folder, scale):
    """What sbatch is given for the first job; it then says that it cannot."""
    configure(folder, scale, jobs=1)
    tools = os.path.join(folder, "tools")
    os.mkdir(tools)
    stand_in(tools, "sbatch", 'for word; do echo "$word"; done > given; exit 1\n')
    # Beside the corpus, as the sources may lie where Snakemake cannot use a profile: behind an apostrophe.
    shutil.copytree(os.path.join(source, "workflow", "slurm"), os.path.join(folder, "slurm"))
    run = snakemake(source, folder, "--profile", "./slurm", "--restart-times", "0",
                    env={**os.environ, "PATH": tools + os.pathsep + os.environ["PATH"]})
    expect(run.returncode == 1, f"it goes on without a queue:\n{run.stderr}")
    given = read(os.path.join(folder, "given")).decode().splitlines()
    words = ["--parsable", "--job-name=ngrex-scan-job=0", "--cpus-per-task=1", "--mem=576M", "--time=240",
             "--output=.snakemake/slurm-%j.log"]
    expect(given[:-1] == words, f"sbatch is given {given}")


def check_states(source, folder):
    """What the profile makes of what Slurm says of a job."""
    tools = os.path.join(folder, "queue")
    os.mkdir(tools)
    for shown, accounted, meaning in (
            ("JobId=7 JobState=RUNNING Reason=None", "", "running"), ("JobId=7 JobState=PENDING Reason=Priority", "", "running"),
            ("JobId=7 JobState=COMPLETING Reason=None", "", "running"), ("JobId=7 JobState=COMPLETED Reason=None", "", "success"),
            ("JobId=7 JobState=FAILED Reason=None", "", "failed"), ("JobId=7 JobState=OUT_OF_MEMORY Reason=x", "", "failed"),
            ("JobId=7 JobState=TIMEOUT Reason=TimeLimit", "", "failed"), ("JobId=7 JobState=NODE_FAIL Reason=x", "", "failed"),
            ("", "COMPLETED", "success"), ("", "CANCELLED by 0", "failed"), ("", "RUNNING", "running"),
            ("slurm_load_jobs error: Invalid job id specified", "", "failed"),
            ("slurm_load_jobs error: Unable to contact slurm controller (connect failure)", "", "running")):
        stand_in(tools, "scontrol", f"echo '{shown}'\n")
        stand_in(tools, "sacct", f"echo '{accounted}'\n" if accounted else "exit 1\n")
        told = subprocess.run([os.path.join(source, "workflow", "slurm", "status"), "7"], capture_output=True, text=True,
                              env={**os.environ, "PATH": tools + os.pathsep + os.environ["PATH"]})
        expect(told.stdout == meaning + "\n", f"{shown or accounted!r} is taken for {told.stdout!r}, not {meaning}")


def main():
    if not shutil.which("snakemake"):
        print("Snakemake is not installed: the workflow is not tried (on Debian: apt-get install snakemake).")
        return 77
    source, build = (os.path.abspath(folder) for folder in sys.argv[1:3])
    ngrex, scale = (os.path.join(build, name) for name in ("ngrex", "ngrex-scale"))
    r = random.Random(seeds.seed_of())
    with tempfile.TemporaryDirectory() as one, tempfile.TemporaryDirectory() as two, tempfile.TemporaryDirectory() as three, \
            tempfile.TemporaryDirectory() as four, tempfile.TemporaryDirectory() as five:
        make_corpus(one, r)
        files = expected(ngrex, one)
        shutil.copytree(one, two, dirs_exist_ok=True)
        shutil.copytree(one, three, dirs_exist_ok=True)
        shutil.copytree(one, four, dirs_exist_ok=True)
        shutil.copytree(one, five, dirs_exist_ok=True)
        for folder in one, two:
            configure(folder, scale)
        check_in_one_go(source, one, files)
        check_growth(source, one, ngrex, scale, r)
        kill_half_way(source, two)
        expect_resumed(source, two, files, "killed and resumed")
        check_dropping(source, five, ngrex, scale, r)
        check_failure(source, three, scale)
        check_contexts(source, four, ngrex, scale)
        check_submission(source, three, scale)
        check_states(source, three)
    for failure in failures:
        print(failure)
    return 1 if failures else 0


sys.exit(main())
