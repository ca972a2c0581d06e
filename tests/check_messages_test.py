#!/usr/bin/env python3
"""Plants messages without a paragraph, and paragraphs without a message; check-messages must name each."""
import pathlib
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parent.parent / "scripts" / "check-messages"
CODE = """// "what a comment says" is no message
#include "engine/run.h"
bool Run::go() {
  panel.setCaption("A caption of two words");
  return c_.fail(3, "The chip is gone: " + name + " at last");
}
"""
CHAPTER = "### `The chip is gone: NAME at last`\n\nPut it back.\n"


def check(code, chapter):
    with tempfile.TemporaryDirectory() as place:
        for name, text in (("src/engine/run.cpp", code), ("docs/handbook/messages.md", chapter)):
            path = pathlib.Path(place, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        return subprocess.run([SCRIPT, place], capture_output=True, text=True, check=False).stdout


class CheckMessages(unittest.TestCase):
    def test_each_text_has_its_paragraph(self):
        self.assertEqual(check(CODE, CHAPTER), "2 texts: each is in the handbook\n")

    def test_a_new_message_is_named_with_its_place(self):
        for line in ('  return c_.fail(0, "A new fault");', '  return {false, "a new\\n"\n  "fault"};', '  text = device + ": new fault";'):
            found = check(CODE.replace("  return", line + "\n  return"), CHAPTER)
            self.assertRegex(found, r"^src/engine/run.cpp:5: .* no paragraph for: (A new|a new|: new) fault\n$")

    def test_a_paragraph_that_nothing_tells_is_named(self):
        self.assertIn("nothing tells: An old fault", check(CODE, CHAPTER + "### `An old fault`\n"))


unittest.main()
