#!/usr/bin/env python3
"""Batches with real processes: batch_test.py KVR KVR-TARGET ROOT.  KVR_LINE_CHIPS: chips of the attack (24)."""
import json
import os
import pathlib
import pty
import random
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import jsonschema

KVR, TARGET, ROOT = (pathlib.Path(word).resolve() for word in sys.argv[1:4])
SAMPLE = ROOT / "samples" / "bench-clock.hex"
SCHEMA = jsonschema.Draft202012Validator(json.loads((ROOT / "docs" / "kvr-events.schema.json").read_text()))
MODEL = "Ivy-HF0S"


def command_lines():
    for path in pathlib.Path("/proc").glob("[0-9]*/cmdline"):
        try:
            yield path.read_bytes()
        except OSError:  # it has ended meanwhile
            pass


class Line(unittest.TestCase):
    """A folder with a store, a project and chips on pseudo-terminals."""

    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.place = pathlib.Path(place.name)
        self.env = os.environ | {"XDG_DATA_HOME": str(self.place), "XDG_CONFIG_HOME": str(self.place)}
        self.env.pop("KVR_RECORDS", None)
        self.project = self.place / "p.KVR"
        self.kvr("job", "--model", MODEL, SAMPLE, "-o", self.project)
        self.targets = []

    def kvr(self, *words, code=0):
        more = {"capture_output": True, "text": True, "timeout": 120, "check": False, "env": self.env}
        done = subprocess.run([KVR, "--json", *map(str, words)], **more)
        self.assertEqual(done.returncode, code, done.stderr)
        events = [json.loads(line) for line in done.stdout.splitlines()]
        for event in events:
            SCHEMA.validate(event)
        return events

    def new(self, *more):
        self.kvr("batch", "new", "B7", "--model", MODEL, SAMPLE, "--serial-at", "1FFF", "--serial-next", "1", *more)

    def batch(self):
        return self.kvr("batch", "show", "B7")[0]

    def chips(self, index, *more):
        """A row of chips at a pseudo-terminal; its link."""
        link = self.place / f"chip{index}"
        words = [TARGET, "--model", MODEL, "--seed", str(index + 1), "--link", link, *more]
        target = subprocess.Popen(list(map(str, words)), stdout=subprocess.PIPE)
        target.stdout.readline()
        self.addCleanup(lambda: (target.terminate(), target.wait(), target.stdout.close()))
        self.targets.append(target)
        return link

    def start(self, *words, **more):
        more = {"stdout": subprocess.PIPE, "stderr": subprocess.DEVNULL, "text": True, "env": self.env} | more
        process = subprocess.Popen([KVR, "--json", *map(str, words)], **more)
        self.addCleanup(lambda: process.stdout and process.stdout.close())
        return process

    def program(self, link, *more, **options):
        return self.start("program", "--project", self.project, "--port", link, "--batch", "B7", *more, **options)

    def await_state(self, wanted):
        for _ in range(600):
            state = self.batch()
            if wanted(state):
                return state
            time.sleep(0.1)
        return self.fail(f"never came: {state}")

    def test_sixteen_stations_race_for_the_last_three(self):
        self.new("--wanted", "3")
        links = [self.chips(i, "--json", self.place / f"told{i}") for i in range(16)]
        runs = [self.program(link) for link in links]
        codes = sorted(run.wait(timeout=120) for run in runs)
        self.assertEqual(codes, [0] * 3 + [7] * 13)
        self.assertEqual([self.batch()[key] for key in ("passed", "spent", "given", "failed")], [3, 3, 3, 0])
        for target in self.targets:
            target.terminate()
            target.wait()
        told = [json.loads((self.place / f"told{i}").read_text()) for i in range(16)]
        self.assertEqual(sum(chip["erases"] > 0 for chip in told), 3, "a chip without a number was erased")

    def test_a_killed_station_leaves_doubt_and_nothing_worse(self):
        self.new()
        wanted, dice, told = int(os.environ.get("KVR_LINE_CHIPS", "24")), random.Random(5), []
        links = [self.chips(i, "--chips", "1000", "--power-cycle-after", "0.1") for i in range(4)]
        runs = [None] * len(links)
        kills = begun = 0
        while begun < wanted or any(runs):
            for i, run in enumerate(runs):
                if run is None and begun < wanted:
                    runs[i] = self.program(links[i], "--timeout", "20")
                    runs[i].dies = time.monotonic() + dice.uniform(0.8, 5) if dice.random() < 0.3 else None
                    begun += 1
                elif run and run.poll() is not None:
                    outcomes = [json.loads(line) for line in run.stdout if '"outcome"' in line]
                    told += [o["serial"] for o in outcomes if o["ending"] == "passed"]
                    runs[i] = None
                elif run and run.dies and time.monotonic() > run.dies:
                    run.kill()
                    kills, run.dies = kills + 1, None
            time.sleep(0.02)
        state = self.batch()
        rows = [row["numbers"] for row in self.kvr("batch", "export", "B7") if row.get("ending") == "passed"]
        self.assertGreater(kills, 0)
        self.assertEqual(len(rows), len(set(rows)), "a number on two chips that passed")
        self.assertLessEqual(set(told), set(rows), "a chip passed without its row")
        self.assertEqual(state["given"], state["spent"] + state["free"] + state["inDoubt"])
        self.assertEqual([state["spent"], state["reserved"]], [len(rows), 0])
        doubts = self.kvr("batch", "doubt", "B7")
        self.assertEqual(len(doubts), state["inDoubt"])
        if doubts:
            self.assertEqual(self.kvr("batch", "doubt", "B7", "--free", doubts[0]["number"])[0]["free"], state["free"] + 1)

    def test_stations_finish_their_chips_when_their_parent_is_killed(self):
        self.new()
        links = [self.chips(0), self.chips(1), self.chips(2, "--power-on", "600")]
        ports = [word for i, link in enumerate(links) for word in ("--port", f"s{i}={link}")]
        parent = self.start("stations", "--project", self.project, "--batch", "B7", *ports)
        self.await_state(lambda state: state["reserved"] == 2)
        parent.kill()
        parent.wait()
        told = [json.loads(line) for line in parent.stdout.read().splitlines()]
        self.assertEqual({event["name"] for event in told}, {"s0", "s1", "s2"})
        for event in told:
            SCHEMA.validate(event)
        state = self.await_state(lambda state: state["reserved"] == 0)
        self.assertEqual([state["passed"], state["inDoubt"], state["failed"]], [2, 0, 0])
        self.await_end()

    def test_ctrl_c_in_a_terminal_stops_all_stations_as_stop_does(self):
        self.new()
        links = [self.chips(0), self.chips(1, "--power-on", "600")]
        ports = [word for link in links for word in ("--port", link)]
        master, slave = pty.openpty()
        self.addCleanup(os.close, master)

        def own_terminal():
            os.setsid()
            os.close(os.open(os.ttyname(1), os.O_RDWR))  # which makes it the session's terminal

        words = [KVR, "stations", "--project", self.project, "--batch", "B7", *ports]
        more = {"stdin": slave, "stdout": slave, "stderr": slave, "env": self.env, "preexec_fn": own_terminal}
        parent = subprocess.Popen(list(map(str, words)), **more)
        os.close(slave)
        self.await_state(lambda state: state["reserved"] == 1)
        os.write(master, b"\x03")
        self.assertEqual(parent.wait(timeout=30), 130)
        state = self.batch()
        self.assertEqual([state["failed"], state["free"], state["inDoubt"]], [1, 1, 0])
        self.assertIn(b"number 1", os.read(master, 65536))
        self.await_end()

    def await_end(self):
        """No station is left."""
        for _ in range(300):
            if not any(str(self.project).encode() in line for line in command_lines()):
                return
            time.sleep(0.1)
        self.fail("a station is left")

    def test_a_store_that_is_no_store_or_not_to_be_written_refuses_at_once(self):
        link = self.chips(0)
        self.env["KVR_RECORDS"] = "/proc/records.db"
        self.assertEqual(self.program(link).wait(timeout=30), 9)
        self.kvr("batch", "store", "postgresql://u:secret@h/d", code=7)
        self.env.pop("KVR_RECORDS")
        self.kvr("batch", "store", self.place / "other.db")
        self.assertEqual(self.kvr("batch", "store")[0]["location"], str(self.place / "other.db"))
        self.kvr("batch", "show", "B7", code=7)


signal.signal(signal.SIGPIPE, signal.SIG_DFL)
unittest.main(argv=[sys.argv[0], *sys.argv[4:]], verbosity=2)
