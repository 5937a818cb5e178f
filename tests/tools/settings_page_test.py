"""The page about settings names every setting that the program has. KELVANE_CLI names the program."""

import json
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

PAGE = Path(__file__).resolve().parents[2] / "docs/formats/settings.md"


class SettingsPage(unittest.TestCase):
    def test_every_key_has_a_row(self):
        with tempfile.TemporaryDirectory() as folder:
            run = subprocess.run([os.environ["KELVANE_CLI"], "settings", "list", "--json"], capture_output=True,
                                 check=True, env={**os.environ, "XDG_CONFIG_HOME": folder, "XDG_CACHE_HOME": folder})
            self.assertEqual(os.listdir(folder), [], "a look writes nothing")
        document = json.loads(run.stdout)
        keys = [row["key"] for row in document["settings"] + document["lists"]]
        page = PAGE.read_text(encoding="utf-8")
        self.assertGreater(len(keys), 40)
        self.assertEqual([key for key in keys if f"\n| `{key}` | " not in page], [])


if __name__ == "__main__":
    unittest.main()
