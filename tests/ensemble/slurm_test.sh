#!/usr/bin/env bash
# slurm_test.sh SARKELO-GROW: a study of eight aggregates on a one-node Slurm of its own, with a job that is cancelled and a
# node whose daemon is started anew on the way, gives the table of a run on local cores. Skipped (77) where Slurm cannot start.
set -eu
export SARKELO_GROW=$1 USER=${USER:-root}
ensemble=$(cd "$(dirname "$0")/../../ensemble" && pwd)
work=$(mktemp -d)
daemons=() node=
clean_up() {
    kill "${daemons[@]}" $node 2>/dev/null || true
    wait
    rm -rf "$work" || true
}
trap clean_up EXIT
skip() { echo "skipped: $1"; exit 77; }
fail() { echo "$1" >&2; exit 1; }

PATH=$PATH:/usr/sbin
[ "$(id -u)" -eq 0 ] || skip "only root starts a cluster of its own"
for program in munged slurmctld slurmd sbatch scontrol snakemake; do
    command -v "$program" >/dev/null || skip "no $program"
done
cd "$work"

# A cluster of this machine alone
mkdir -m 700 state spool munge
head -c 1024 /dev/urandom >munge/key
chmod 400 munge/key
munged --foreground --force --key-file="$work/munge/key" --socket="$work/munge/socket" --pid-file="$work/munge/pid" \
    --log-file="$work/munge/log" --seed-file="$work/munge/seed" >/dev/null 2>&1 &
daemons+=($!)
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
JobAcctGatherType=jobacct_gather/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
ReturnToService=2
SchedulerParameters=sched_interval=1
NodeName=$(hostname -s) NodeAddr=127.0.0.1 CPUs=2 RealMemory=1000 State=UNKNOWN
PartitionName=here Nodes=ALL Default=YES MaxTime=INFINITE State=UP
CONF
export SLURM_CONF=$work/slurm.conf
slurmctld -D -f "$SLURM_CONF" >slurmctld.log 2>&1 &
daemons+=($!)
start_node() {
    slurmd -D -f "$SLURM_CONF" >>slurmd.log 2>&1 &
    node=$!
}
start_node
for _ in $(seq 150); do
    ! sinfo --noheader --format=%T 2>/dev/null | grep -qE 'idle|mixed' || break
    sleep 0.2
done
sinfo --noheader --format=%T | grep -qE 'idle|mixed' || skip "no cluster: $(tail -1 slurmctld.log) $(tail -1 slurmd.log)"

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
kill "$node" || fail "no daemon of the node"
sleep 1
start_node
wait "$study" || fail "the study on the cluster failed: $(tail -20 cluster.log)"
grep -q "Trying to restart" cluster.log || fail "no job was cancelled"
run local --cores 2 || fail "the local study failed: $(tail -20 local.log)"
for place in cluster local; do
    [ -s "$place/study-results/report.html" ] && [ -z "$(ls "$place/study-results/checkpoints")" ] || fail "$place: no report, or checkpoints"
done
run local --cores 2 && grep -q "Nothing to be done" local.log || fail "a finished study is grown again"

/usr/bin/python3 - <<'PYTHON'
import pandas as pd
tables = [pd.read_csv(f"{place}/study-results/table.csv").drop(columns="time_seconds") for place in ("cluster", "local")]
assert len(tables[0]) == 8 and (tables[0]["particles"] == 100000).all()
pd.testing.assert_frame_equal(*tables, check_exact=True)
again = pd.read_hdf("cluster/study-results/table.h5").drop(columns="time_seconds")
assert list(again.columns) == list(tables[0].columns) and (again["steps"] == tables[0]["steps"]).all()
PYTHON
