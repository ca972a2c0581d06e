#!/usr/bin/env python3
"""Programs ten chips with kvr and prints a table:  program_ten.py MODEL FILE [more arguments of kvr program]"""
import json
import subprocess
import sys

command = ["kvr", "--json", "program", "--count", "10", "--model", sys.argv[1], *sys.argv[2:]]
print(f"{'chip':>4}  {'result':14}  {'firmware':8}  {'seconds':>7}  why")
with subprocess.Popen(command, stdout=subprocess.PIPE, text=True) as kvr:
    chip = 0
    for line in kvr.stdout:
        event = json.loads(line)
        if event["event"] == "outcome":
            chip += 1
            firmware = event.get("chip", {}).get("firmware", "")
            print(f"{chip:4}  {event['ending']:14}  {firmware:8}  {event['seconds']:7.1f}  {event['why']}", flush=True)
        if event["event"] == "note":
            print(event["text"], file=sys.stderr)
sys.exit(kvr.returncode)
