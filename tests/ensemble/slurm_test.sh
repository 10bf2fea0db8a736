#!/usr/bin/env bash
# slurm_test.sh SARKELO-GROW: a study of eight aggregates on a one-node Slurm of its own, with a job that is cancelled on the
# way, gives the table of a run on local cores. Skipped (77) where Slurm cannot start.
set -eu
export SARKELO_GROW=$1 USER=${USER:-root}
ensemble=$(cd "$(dirname "$0")/../../ensemble" && pwd)
work=$(mktemp -d)
trap 'kill $(jobs -p) 2>/dev/null || true; wait; rm -rf "$work" || true' EXIT
skip() { echo "skipped: $1"; exit 77; }
fail() { echo "$1" >&2; exit 1; }

PATH=$PATH:/usr/sbin
[ "$(id -u)" -eq 0 ] || skip "only root starts a cluster of its own"
type munged slurmctld slurmd sbatch scontrol snakemake >/dev/null || skip "a program is missing"
cd "$work"

# A cluster of this machine alone
mkdir -m 700 state spool munge
head -c 1024 /dev/urandom >munge/key
chmod 400 munge/key
munged --foreground --force --key-file="$work/munge/key" --socket="$work/munge/socket" --pid-file="$work/munge/pid" \
    --log-file="$work/munge/log" --seed-file="$work/munge/seed" >/dev/null 2>&1 &
port=$((20000 + $$ % 20000))
cat >slurm.conf <<CONF
ClusterName=sarkelo
SlurmctldHost=$(hostname -s)(127.0.0.1)
AuthType=auth/munge
AuthInfo=socket=$work/munge/socket
CredType=cred/munge
SlurmUser=root
SlurmdUser=root
SlurmctldPort=$port
SlurmdPort=$((port + 1))
StateSaveLocation=$work/state
SlurmdSpoolDir=$work/spool
SlurmctldPidFile=$work/slurmctld.pid
SlurmdPidFile=$work/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SchedulerParameters=sched_interval=1
NodeName=$(hostname -s) NodeAddr=127.0.0.1 CPUs=2 RealMemory=1000 State=UNKNOWN
PartitionName=here Nodes=ALL Default=YES MaxTime=INFINITE State=UP
CONF
export SLURM_CONF=$work/slurm.conf
for daemon in slurmctld slurmd; do $daemon -D -f "$SLURM_CONF" >$daemon.log 2>&1 & done
for _ in $(seq 150); do
    ! sinfo --noheader --format=%T 2>/dev/null | grep -qE 'idle|mixed' || break
    sleep 0.2
done
sinfo --noheader --format=%T | grep -qE 'idle|mixed' || skip "no cluster: $(tail -qn 1 slurmctld.log slurmd.log)"

run() { # PLACE OPTIONS OF SNAKEMAKE
    mkdir -p "$1"
    printf 'particles: 100000\nseeds: 4\ngrid:\n  growth.bias: [0.1, 1]\n' >"$1/study.yaml"
    (cd "$1" && snakemake --snakefile "$ensemble/Snakefile" --config "study=$PWD/study.yaml" "${@:2}" >../"$1.log" 2>&1)
}
run cluster --profile "$ensemble/profiles/slurm" --latency-wait 5 --max-jobs-per-second 20 &
study=$!
# One job is cancelled: a job that was about to end may have been whole already, then another is.
for _ in $(seq 100); do
    job=$(squeue --noheader --states=running --sort=-M --format=%i | head -1)
    [ -z "$job" ] || { sleep 1; scancel "$job" || true; sleep 12; }
    ! grep -q "Trying to restart" cluster.log || break
    sleep 0.2
done
wait "$study" && grep -q "Trying to restart" cluster.log || fail "the study failed, or no job was cancelled: $(tail -20 cluster.log)"
run local --cores 2 || fail "the local study failed: $(tail -20 local.log)"
[ -z "$(find {cluster,local}/study-results/checkpoints -type f)" ] && [ -s local/study-results/report.html ] || fail "checkpoints, or no report"
run local --cores 2 && grep -q "Nothing to be done" local.log || fail "a finished study is grown again"

/usr/bin/python3 - <<'PYTHON'
import pandas as pd
tables = [pd.read_csv(f"{place}/study-results/table.csv").drop(columns="time_seconds") for place in ("cluster", "local")]
assert len(tables[0]) == 8 and (tables[0]["particles"] == 100000).all()
pd.testing.assert_frame_equal(*tables, check_exact=True)
again = pd.read_hdf("cluster/study-results/table.h5").drop(columns="time_seconds")
assert list(again.columns) == list(tables[0].columns) and (again["steps"] == tables[0]["steps"]).all()
PYTHON
