#!/usr/bin/python3
"""Prints the state of a Slurm job: running, success or failed.

    status.py JOB
"""
import re
import subprocess
import sys

RUNNING = {"PENDING", "CONFIGURING", "RUNNING", "COMPLETING", "SUSPENDED", "REQUEUED", "RESIZING", "STAGE_OUT"}

done = subprocess.run(["scontrol", "show", "job", "--oneliner", sys.argv[1]], capture_output=True, text=True)
found = re.search(r"JobState=(\w+)", done.stdout)
if found:
    state = found.group(1)
    print("running" if state in RUNNING else "success" if state == "COMPLETED" else "failed")
elif "Invalid job id" in done.stderr:
    print("failed")  # the controller has forgotten it: it is grown on from its checkpoint, or found to be whole
else:
    print("running")  # the controller does not answer for now
