#!/usr/bin/env python3
"""kvr as a process: process_test.py KVR KVR-TARGET ROOT.  Each device is kvr-target on a pseudo-terminal of its own."""
import json
import os
import pathlib
import pty
import re
import signal
import subprocess
import sys
import tempfile
import unittest
from concurrent.futures import ThreadPoolExecutor

import jsonschema

KVR, TARGET, ROOT = (pathlib.Path(word).resolve() for word in sys.argv[1:4])
SAMPLE = ROOT / "samples" / "bench-clock.hex"
SCHEMA = jsonschema.Draft202012Validator(json.loads((ROOT / "docs" / "kvr-events.schema.json").read_text()))
MODEL = "Ivy-HF0S"


class Device:
    """Prints its terminal's name when it is there."""

    def __init__(self, *arguments):
        self.process = subprocess.Popen([TARGET, *arguments], stdout=subprocess.PIPE, text=True)
        self.port = self.process.stdout.readline().strip()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()
        self.process.stdout.close()


def kvr(*words, **more):
    return subprocess.run([KVR, *map(str, words)], capture_output=True, text=True, timeout=120, check=False, **more)


def program(port, *words):
    return ["program", "--model", MODEL, str(SAMPLE), "--port", port, *words]


def start(*words, **more):
    more = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "text": True} | more
    return subprocess.Popen([KVR, *words], **more)


def await_line(stream, words):
    for line in stream:
        if words in line:
            return


class Process(unittest.TestCase):
    def test_program_passes_and_parts_messages_from_results(self):
        with Device("--model", MODEL) as device:
            done = kvr(*program(device.port))
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertTrue(done.stdout.startswith(f"PASS  {MODEL}"), done.stdout)
        self.assertIn("Encrypt OK.", done.stderr)
        self.assertNotIn("\r", done.stderr)

    def test_faults_end_with_their_codes(self):
        cases = [
            (["--model", MODEL, "--fault", "diesAfterBlocks=3"], [], 1),
            (["--model", MODEL, "--power-on", "60"], ["--timeout", "1"], 4),
            (["--model", "Ivy-H20S"], [], 5),
            (["--model", MODEL], ["--code-at", "zzzz", "--serial-at", "5"], 2),
        ]
        for target, words, code in cases:
            with self.subTest(code=code), Device(*target) as device:
                done = kvr(*program(device.port, *words))
                self.assertEqual(done.returncode, code, done.stderr)
        self.assertEqual(kvr(*program("/dev/absent")).returncode, 3)
        self.assertEqual(kvr("program", "--model", MODEL, "/absent.hex").returncode, 6)
        self.assertEqual(kvr("program", "--model", "Pine-H03E", SAMPLE, "--yes", "--port", "/dev/null").returncode, 7)

    def test_signals_stop_the_run(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(signal=number), Device("--model", MODEL, "--power-on", "60") as device:
                run = start("--json", *program(device.port))
                await_line(run.stdout, '"wait"')
                run.send_signal(number)
                said, _ = run.communicate(timeout=5)
                self.assertEqual(run.returncode, 128 + number)
                self.assertEqual(json.loads(said.splitlines()[-1])["exitCode"], 128 + number)

    def test_a_second_signal_ends_it_at_once(self):
        with Device("--model", MODEL, "--power-on", "60") as device:
            run = start("--json", *program(device.port))
            await_line(run.stdout, '"wait"')
            for number in (signal.SIGSTOP, signal.SIGTERM, signal.SIGINT, signal.SIGCONT):
                run.send_signal(number)  # both are there before it can see to either
            said, _ = run.communicate(timeout=5)
            self.assertIn(run.returncode, (130, 143))
            self.assertNotIn("failure", said)

    def test_a_reader_that_goes_away_leaves_the_chip_whole(self):
        with tempfile.TemporaryDirectory() as place, Device("--model", MODEL, "--json", f"{place}/chip") as device:
            run = start("--json", *program(device.port, "--count", "2", "--delay", "0"), text=False)
            run.stdout.readline()
            run.stdout.close()
            self.assertEqual(run.wait(timeout=60), 141, run.stderr.read())
            run.stderr.close()
            device.process.terminate()
            device.process.wait()
            chip = json.loads(pathlib.Path(place, "chip").read_text())
            self.assertEqual((chip["violations"], chip["releases"]), ([], 1))

    def test_a_full_disk_under_the_log_ends_with_6(self):
        with Device("--model", MODEL) as device:
            done = kvr(*program(device.port, "--log", "/dev/full"))
        self.assertEqual(done.returncode, 6, done.stderr)
        self.assertIn("The chip is good, and has no line in the log", done.stderr)

    def test_every_command_for_a_device_tells_its_frames_and_keeps_a_trace(self):
        demo = ["--device", "demo", "--model", "Cedar-H80D", "--line", "38400,e,8,1"]
        cases = [
            (["--model", "Rowan-H20"], ["info"], "Rowan-H20  code F402"),
            (["--device", "board", "--model", MODEL], ["board", "--model", MODEL, SAMPLE], "PASS"),
            (demo, ["demo", "--model", "Cedar-H80D", SAMPLE], "PASS"),
        ]
        for target, words, told in cases:
            with self.subTest(words[0]), tempfile.TemporaryDirectory() as place, Device(*target) as device:
                trace = pathlib.Path(place, "run.txt")
                done = kvr("-v", *words, "--port", device.port, "--timeout", "30", "--trace", trace)
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertTrue(done.stdout.startswith(told), done.stdout)
                frames = [line[14:] for line in done.stderr.splitlines() if line.endswith("sum good")]
                self.assertGreater(len(frames), 2)
                shown = kvr("trace", "show", trace).stdout
                self.assertEqual([frame for frame in frames if frame not in shown], [])

    def test_a_trace_that_cannot_be_written_costs_one_line(self):
        with Device("--model", MODEL) as device:
            done = kvr(*program(device.port, "--trace", "/absent/run.txt"))
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(done.stderr.count("There is no trace of this run: /absent/run.txt: no such folder"), 1)

    def test_a_terminal_gets_a_progress_line(self):
        master, slave = pty.openpty()
        with Device("--model", MODEL, "--paced") as device, start(*program(device.port), stderr=slave) as run:
            os.close(slave)
            told = b""
            while True:
                try:
                    told += os.read(master, 65536)
                except OSError:  # the other side is closed
                    break
            run.stdout.read()
        os.close(master)
        self.assertEqual(run.returncode, 0, told)
        self.assertRegex(told.decode(), r"Programming  \[#+\.+\] \d+ %  [\d.]+ kB/s  \d+ s left")

    def test_ports_of_the_settings_are_known_and_nothing_is_written(self):
        with tempfile.TemporaryDirectory() as place, Device("--model", MODEL) as device:
            settings = pathlib.Path(place, "KVR-ISP", "KVR-ISP.ini")
            settings.parent.mkdir()
            settings.write_text(f"[Ports]\nCOM3={device.port}\n\n[Settings]\nDeviceProducts=Rowan-HF0\n")
            before = settings.read_text()
            env = os.environ | {"XDG_CONFIG_HOME": place}
            self.assertEqual(kvr("program", "--model", MODEL, SAMPLE, "--port", "COM3", env=env).returncode, 0)
            self.assertIn(f"{device.port}  COM3", kvr("ports", env=env).stdout)
            self.assertEqual(kvr("program", "--model", MODEL, SAMPLE, "--port", "COM4", env=env).returncode, 3)
            self.assertEqual([settings.read_text(), os.listdir(settings.parent)], [before, [settings.name]])

    def test_every_line_of_json_is_as_the_schema_says(self):
        faults = ["", "failsBlock=2:1", "diesAfterBlocks=4", "answersOptionsWith81=2", "wrongModelCode", "silentErase"]

        def run(number):
            fault = faults[number % len(faults)]
            with Device("--model", MODEL, "--seed", str(number + 1), *(["--fault", fault] if fault else [])) as device:
                frames = ["-v"] if number % 10 == 0 else []
                return kvr("--json", *frames, *program(device.port, "--serial-at", "1000", "--serial-next", str(number)))

        others = [["models"], ["ports"], ["options", MODEL], ["options", "Alder-H51"], ["models", "Nothing"],
                  ["job", "--model", MODEL, SAMPLE], ["image", SAMPLE], ["image", SAMPLE, "--diff", TARGET]]
        with ThreadPoolExecutor(20) as pool:
            runs = list(pool.map(run, range(100))) + list(pool.map(lambda words: kvr("--json", *words), others))
        codes = set()
        for done in runs:
            codes.add(done.returncode)
            self.assertTrue(done.stdout)
            for line in done.stdout.splitlines():
                SCHEMA.validate(json.loads(line))
        self.assertGreaterEqual(codes, {0, 1, 2}, codes)

    def test_the_manual_names_every_option_and_code(self):
        manual = (ROOT / "packaging" / "man" / "kvr.1").read_text().replace("\\-", "-")
        subcommands = re.findall(r"^  (\w+) +[A-Z]", kvr("--help").stdout.split("Subcommands:")[1], re.M)
        self.assertGreaterEqual(len(subcommands), 9)
        for words in [[], *([name] for name in subcommands)]:
            said = kvr(*words, "--help").stdout
            self.assertIn("Example:" if words else "Ends with", said)
            listed = said.split("Options:")[1].split("Example:")[0]
            for option in set(re.findall(r"(?:^| |,)(--?[a-z][a-z-]*)", listed, re.M)):
                self.assertTrue(re.search(rf"(?m){option}(\W|$)", manual), f"{words} {option}")
        for code in SCHEMA.schema["$defs"]["exitCode"]["enum"]:
            self.assertRegex(manual, rf"\b{code}\b")

    def test_the_sample_prints_a_table_of_ten(self):
        env = os.environ | {"PATH": f"{KVR.parent}:{os.environ['PATH']}"}
        with Device("--model", MODEL, "--chips", "10", "--power-cycle-after", "0.1") as device:
            words = [ROOT / "samples" / "program_ten.py", MODEL, SAMPLE, "--port", device.port, "--delay", "0"]
            done = subprocess.run(words, capture_output=True, text=True, timeout=200, check=False, env=env)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(done.stdout.count("passed "), 10, done.stdout)


unittest.main(argv=[sys.argv[0], *sys.argv[4:]], verbosity=2)
