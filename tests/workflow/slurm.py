"""Runs the workflow with its profile for Slurm, on a Slurm of one node that it makes for that; by hand, as root.

usage: slurm.py SOURCE_FOLDER BUILD_FOLDER

Needs Debian's slurm-wlm, munge and snakemake, no systemd and no configuration; everything listens on 127.0.0.1 only. The
output must be that of ngrex: in one go, while a job is cancelled, and after Snakemake has been killed with jobs in the queue,
for which it then waits. A job that asks for more memory than there is ends the run with a sentence. Some minutes, most of
them waiting.
"""

import contextlib
import os
import random
import signal
import subprocess
import sys
import tempfile
import time

import corpora
from corpora import configure, expected, make_corpus, markers, read, snakemake

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import seeds  # noqa: E402

CONFIGURATION = """
ClusterName=here
SlurmctldHost=localhost(127.0.0.1)
SlurmctldPort=26817
SlurmdPort=26818
SrunPortRange=26900-26999
CommunicationParameters=NoCtldInAddrAny,NoInAddrAny
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
AuthInfo=socket={folder}/munge.socket
CredType=cred/munge
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
JobCompType=jobcomp/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core_Memory
SwitchType=switch/none
ReturnToService=2
NodeName=localhost NodeAddr=127.0.0.1 CPUs=2 RealMemory=1500 State=UNKNOWN
PartitionName=all Nodes=ALL Default=YES MaxTime=INFINITE State=UP
"""


@contextlib.contextmanager
def slurm(folder):
    """Starts munged, slurmctld and slurmd, and ends them."""
    os.chmod(folder, 0o755)
    for name in ("state", "spool"):
        os.mkdir(os.path.join(folder, name))
    corpora.write(os.path.join(folder, "slurm.conf"), CONFIGURATION.format(folder=folder))
    corpora.write(os.path.join(folder, "cgroup.conf"), "CgroupPlugin=cgroup/v1\n")
    key = os.path.join(folder, "munge.key")
    with open(key, "wb") as file:
        file.write(os.urandom(128))
    os.chmod(key, 0o400)
    os.environ["SLURM_CONF"] = os.path.join(folder, "slurm.conf")
    try:
        subprocess.run(["munged", f"--key-file={key}", f"--socket={folder}/munge.socket", f"--pid-file={folder}/munged.pid",
                        f"--log-file={folder}/munged.log", f"--seed-file={folder}/munge.seed"], check=True)
        subprocess.run(["slurmctld", "-i"], check=True)
        subprocess.run(["slurmd", "-N", "localhost"], check=True)
        subprocess.run(["srun", "-n1", "--mem=10", "true"], check=True, timeout=60)
        yield
    finally:
        for daemon in ("slurmd", "slurmctld", "munged"):
            with contextlib.suppress(FileNotFoundError):
                os.kill(int(read(os.path.join(folder, daemon + ".pid"))), signal.SIGTERM)
        time.sleep(2)


def queue():
    return subprocess.run(["squeue", "--noheader", "--format=%i"], capture_output=True, text=True, check=True).stdout.split()


def expect_bytes(folder, files, run, when):
    output = read(run.stdout.name).decode() if hasattr(run.stdout, "name") else run.stdout + run.stderr
    assert run.returncode == 0, f"{when} it fails:\n{output}"
    for name, content in files.items():
        assert read(os.path.join(folder, name)) == content, f"{when} {name} is not what ngrex writes"
    print(f"{when}: the files of ngrex")


def start(source, folder, profile):
    messages = open(os.path.join(folder, "messages"), "w+", encoding="utf-8")
    run = subprocess.Popen(corpora.command(source, *profile), cwd=folder, stdout=messages, stderr=messages)
    run.stdout = messages
    return run


def wait_for_jobs(run, count):
    while run.poll() is None and len(queue()) < count:
        time.sleep(0.1)
    assert run.poll() is None, f"it ended:\n{read(run.stdout.name).decode()}"


def main():
    source, build = (os.path.abspath(folder) for folder in sys.argv[1:3])
    ngrex, scale = (os.path.join(build, name) for name in ("ngrex", "ngrex-scale"))
    profile = ["--profile", os.path.join(source, "workflow", "slurm"), "--latency-wait", "5"]
    seed = seeds.seed_of()
    with tempfile.TemporaryDirectory() as home, slurm(home):
        folders = [os.path.join(home, name) for name in ("one", "cancelled", "killed", "large")]
        files = None
        for folder in folders:
            os.mkdir(folder)
            make_corpus(folder, random.Random(seed))
            files = files or expected(ngrex, folder)
            configure(folder, scale, beside=64, write_processes=2)  # no more than there are CPUs
        one, cancelled, killed, large = folders

        begin = time.time()
        expect_bytes(one, files, snakemake(source, one, *profile), "in one go")
        print(f"{time.time() - begin:.0f} seconds")

        run = start(source, cancelled, profile)
        wait_for_jobs(run, 3)
        subprocess.run(["scancel", queue()[-1]], check=True)
        run.wait()
        expect_bytes(cancelled, files, run, "with a job cancelled")

        run = start(source, killed, profile)
        wait_for_jobs(run, 3)
        run.kill()
        run.wait()
        jobs = queue()
        assert jobs, "no job is left in the queue"
        snakemake(source, killed, "--cores", "1", "--unlock")
        again = snakemake(source, killed, *profile)
        expect_bytes(killed, files, again, "killed and resumed")
        print(f"{again.stderr.count('Resuming incomplete job')} of {len(jobs)} jobs were waited for")

        configure(large, scale, beside=64000)
        run = snakemake(source, large, *profile, "--restart-times", "0")
        assert run.returncode == 1 and "can not be satisfied" in run.stderr, run.stderr
        assert markers(large) == {"plan"}
        print("too much memory: refused")
    return 0


if __name__ == "__main__":
    sys.exit(main())
