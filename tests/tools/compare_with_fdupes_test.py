"""The comparison with fdupes sees through the differences that do not count, and through no others."""

import contextlib
import io
import json
import os
import sys
import tempfile
import unittest
import urllib.parse
from pathlib import Path

sys.dont_write_bytecode = True
HOUSE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(HOUSE / "tools"))

import measure  # noqa: E402

compare = measure.load_script(HOUSE / "tools/compare_with_fdupes")


class Comparison(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = os.fsencode(folder.name)

    def file(self, name):
        path = os.path.join(self.folder, name)
        with open(path, "wb") as file:
            file.write(b"contents")
        return path

    def ours(self, *groups):
        def entry(path):
            return {"path": path.decode(errors="replace"), "pathBytes": urllib.parse.quote(path)}

        return compare.kelvane_groups(json.dumps({"groups": [{"files": [entry(p) for p in g]} for g in groups]}))

    def theirs(self, *groups):
        return compare.fdupes_groups(b"".join(b"\n".join(group) + b"\n\n" for group in groups))

    def equal(self, ours, theirs):
        with contextlib.redirect_stdout(io.StringIO()) as said:
            result = compare.report_differences(ours, theirs)
        self.assertEqual(result, said.getvalue() == "")
        return result

    def test_order_and_choice_among_hard_links_do_not_count(self):
        a, b, c, d = (self.file(name) for name in (b"a", b"b", b"c e", b"d\xe9"))
        second, lone = a + b" again", c + b" again"
        os.link(a, second)
        os.link(c, lone)
        self.assertTrue(self.equal(self.ours([a, b], [c, d]), self.theirs([d, c], [b, second])))
        self.assertTrue(self.equal(self.ours(), self.theirs([c, lone])), "one file by two names is no group")

    def test_missing_member_missing_group_and_split_group_are_seen(self):
        a, b, c, d = (self.file(name) for name in (b"a", b"b", b"c", b"d"))
        whole = self.theirs([a, b, c, d])
        for groups in ([[a, b, c]], [], [[a, b], [c, d]]):
            self.assertFalse(self.equal(self.ours(*groups), whole))
        self.assertFalse(self.equal(self.ours([a, b]), self.theirs()))

    def test_names_with_line_breaks_are_left_out_and_counted(self):
        a, b, broken = (self.file(name) for name in (b"a", b"b", b"broken\nname"))
        ours = self.ours([a, b, broken])
        theirs = self.theirs([a, broken, b])
        self.assertTrue(self.equal(ours, theirs))
        self.assertEqual(ours.skipped, 1)
        self.assertGreaterEqual(theirs.skipped, 1)


if __name__ == "__main__":
    unittest.main()
