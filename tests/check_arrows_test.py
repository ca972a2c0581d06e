#!/usr/bin/env python3
"""Plants one breach of each rule in a small tree of its own; check-arrows must name the file and the rule."""
import pathlib
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent.parent / "scripts" / "check-arrows"
SOUND = {
    "src/platform/controls.h": "#pragma once\n",
    "src/images/image_panel.h": '#include "platform/controls.h"\n',
    "src/catalogue/mcu_record.h": "#pragma once\n",
    "src/catalogue/family.cpp": "bool first = family < 3;\n",
    "src/engine/job.h": '#include "catalogue/mcu_record.h"\n// no panel() here; a family == 3 would be a trait\n',
    "src/download/download_room.cpp": '#include "engine/job.h"\n#include "images/image_panel.h"\n',
    "sim/chip.cpp": '#include "catalogue/mcu_record.h"\nbool old = family() == 4;\n',
}
BREACHES = [
    ("src/engine/run.h", '#include "download/download_room.h"', "engine must not use"),
    ("src/engine/run.h", '#include "job.h"', "write the room's name"),
    ("sim/wire.h", '#include "platform/text.h"', "sim must not use"),
    ("sim/wire.h", '#include "catalogue/family.h"', "sim must not use"),
    ("sim/wire.h", "auto traits = traitsOf(family);", "its own knowledge"),
    ("src/engine/run.h", "#include <QTimer>", "belongs to the platform"),
    ("src/platform/qt/clock.cpp", "#include <unistd.h>", "named for its system"),
    ("src/platform/qt/clock.h", "#include <QWidget>", "belongs to the window"),
    ("src/cli/qt/main.cpp", "#include <QMessageBox>", "belongs to the window"),
    ("src/cli/program_command.cpp", "#include <QString>", "belongs to the platform"),
    ("src/cli/program_command.cpp", '#include "platform/controls.h"', "a command asks nobody"),
    ("src/cli/job.h", '#include "download/job.h"', "cli must not use"),
    ("src/images/file.h", '#include "platform/controls.h"', "knows controls"),
    ("src/engine/run_panel.h", '#include "images/image_panel.h"', "the engine knows no control"),
    ("src/engine/run.cpp", "link_.panel().show();", "no panel"),
    ("src/engine/run.cpp", "  (void)link_.send(frame);", "thrown away"),
    ("src/shell/window.cpp", "  std::ignore = save();", "thrown away"),
    ("src/engine/run.cpp", "if (record.family == 3) return;", "ask for a trait"),
    ("src/options/rows.cpp", "show(static_cast<catalogue::Family>(7));", "ask for a trait"),
    ("src/options/rows.cpp", "if (record.family != Family::Ivy) return;", "ask for a trait"),
    ("src/engine/run.cpp", "if (!ask(hooks_.arm, true)) return;", "says yes"),
    ("src/engine/run.h", "std::function<bool()> arm = [] { return true; };", "says yes"),
]


def check(files):
    with tempfile.TemporaryDirectory() as place:
        for name, text in files.items():
            path = pathlib.Path(place, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        done = subprocess.run([SCRIPT, place], capture_output=True, text=True, check=False)
        return done.returncode, done.stdout


class CheckArrows(unittest.TestCase):
    def test_a_sound_tree_passes(self):
        self.assertEqual(check(SOUND), (0, "7 files: all arrows point down\n"))

    def test_each_planted_breach_is_named(self):
        for name, line, why in BREACHES:
            with self.subTest(line=line):
                code, said = check(SOUND | {name: line + "\n"})
                self.assertEqual(code, 1)
                self.assertEqual(said.count("\n"), 1, said)
                self.assertIn(name.removeprefix("src/"), said)
                self.assertIn(why, said)

    def test_files_that_include_each_other_are_named(self):
        ring = {f"src/engine/{one}.h": f'#include "engine/{other}.h"\n' for one, other in ("ab", "bc", "ca")}
        code, said = check(SOUND | ring)
        self.assertEqual((code, said.count("includes itself")), (1, 3))


unittest.main()
