"""scripts/check-rooms against small trees: what it must let pass, and every way round the table that it must not."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts/check-rooms"
TABLE = """
house home
  home/cellar
  home/kitchen
  home/kitchen/All.h
house garden sees home
  garden
library brick/: home/cellar
"""
TREE = {
    "home/cellar/Wine.h": "",
    "home/cellar/Wine.cpp": '#include "home/cellar/Wine.h"\n#include <brick/wall.h>\n#include <vector>\n',
    "home/kitchen/Stove.h": '#include "home/cellar/Wine.h"\n',
    "home/kitchen/All.h": '#include "home/kitchen/Stove.h"\n#include "../cellar/Wine.h"\n',
    "garden/Tree.cpp": '#include "home/kitchen/Stove.h"\n',
}


class CheckRoomsTest(unittest.TestCase):
    def check(self, changes=None, table=TABLE, arguments=()):
        """The exit status and everything that the script says of the tree with these changes."""
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for path, text in {**TREE, **(changes or {}), "scripts/support/rooms.txt": table}.items():
                (root / path).parent.mkdir(parents=True, exist_ok=True)
                (root / path).write_text(text)
            subprocess.run(["git", "init", "-q", folder], check=True)
            done = subprocess.run([sys.executable, SCRIPT, "--root", folder, *arguments], capture_output=True, text=True)
            return done.returncode, done.stdout + done.stderr

    def assert_breach(self, changes, *words, table=TABLE):
        status, said = self.check(changes, table)
        self.assertEqual(status, 1, said)
        for word in words:
            self.assertIn(word, said)
        self.assertIn("1 breach of", said)

    def test_a_tree_that_keeps_to_its_table(self):
        status, said = self.check(arguments=["--arrows"])
        self.assertEqual(status, 0, said)
        self.assertIn("   1 garden -> home/kitchen\n", said)
        self.assertIn("   1 home/kitchen/All.h -> home/cellar\n", said)
        self.assertIn("OK: 5 includes", said)

    def test_an_arrow_up_names_both_files_and_the_rule_however_it_is_spelled(self):
        why = "home/cellar/New.cpp -> home/kitchen/Stove.h: home/kitchen stands above home/cellar"
        for spelling in ('#include "home/kitchen/Stove.h"', "#include <home/kitchen/Stove.h>",
                         '#include "../kitchen/Stove.h"', '  #  include"home/cellar/../kitchen/Stove.h" // for tea'):
            with self.subTest(spelling):
                self.assert_breach({"home/cellar/New.cpp": f"int x;\n{spelling}\n"}, why)
        self.assert_breach({"home/cellar/New.inl": '#include "home/kitchen/Stove.h"\n'}, "home/cellar/New.inl -> home/k")

    def test_a_room_of_one_file_is_apart_from_its_folder(self):
        self.assert_breach({"home/kitchen/Pan.h": '#include "home/kitchen/All.h"\n'},
                           "home/kitchen/Pan.h -> home/kitchen/All.h: home/kitchen/All.h stands above home/kitchen")

    def test_houses_and_libraries(self):
        self.assert_breach({"home/kitchen/Pan.h": '#include "garden/Rose.h"\n', "garden/Rose.h": ""},
                           "home/kitchen/Pan.h -> garden/Rose.h: home does not see garden")
        self.assert_breach({"garden/Wall.cpp": "#include <brick/wall.h>\n"},
                           "garden/Wall.cpp -> brick/wall.h: <brick/wall.h> is for home/cellar")

    def test_what_stands_in_no_room(self):
        self.assert_breach({"shed/Spade.h": ""}, "shed/Spade.h: stands in no room")
        self.assert_breach({"garden/Rose.cpp": '#include "brick/wall.h"\n'},
                           "garden/Rose.cpp -> brick/wall.h: the header is in no room")

    def test_an_exception_needs_a_reason_and_a_use(self):
        exception = TABLE.replace("  home/cellar\n", "  home/cellar\n  home/cellar also home/kitchen: the hatch\n")
        up = {"home/cellar/New.cpp": '#include "home/kitchen/Stove.h"\n'}
        status, said = self.check(up, exception)
        self.assertEqual(status, 0, said)
        self.assert_breach({}, "nothing needs the arrow home/cellar -> home/kitchen any more", table=exception)
        status, said = self.check(up, exception.replace(" the hatch", ""))
        self.assertEqual(status, 1, said)
        self.assertIn("rooms.txt:4: an arrow against the list needs its reason", said)


if __name__ == "__main__":
    unittest.main()
