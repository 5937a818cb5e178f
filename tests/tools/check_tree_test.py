"""Every rule of tools/check_tree passes a good small tree and names the fault in a bad one."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
HOUSE = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(HOUSE / "tools"))

from tree_checks import documents, includes, sizes, style, tests_run  # noqa: E402
from tree_checks.tree import Tree  # noqa: E402

GOOD = {
    ".clang-format": "BasedOnStyle: LLVM\n",
    "README.md": "See [the house](docs/house.md#rooms), `src/base/*.h` and [elsewhere](https://example.org/x).\n",
    "docs/house.md": "Back to [the start](../README.md).\n",
    "src/base/number.h": "#pragma once\n#include <vector>\nint number();\n",
    "src/base/number.cpp": '#include "base/number.h"\nint number() { return 1; }\n',
    "src/engine/walk.cpp": '#include "base/number.h"\n#include "props/kind.h"\n#include <xxhash.h>\nint walked;\n',
    "src/props/kind.h": "#pragma once\n",
    "src/platform/linux/open.cpp": '#ifdef __linux__\n#include "platform/linux/own.h"\n#include <sys/stat.h>\n#endif\n',
    "src/platform/linux/own.h": "#pragma once\n",
    "tests/CMakeLists.txt": "kelvane_tests(base)\nkelvane_python_tests(tools)\n",
    "tests/base/number_test.cpp": "int one;\nint two;\nint three;\nint four;\n",
    "tests/tools/thing_test.py": "pass\n",
}


class TreeTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        for path, text in GOOD.items():
            self.write(path, text)

    def write(self, path, text):
        (self.root / path).parent.mkdir(parents=True, exist_ok=True)
        (self.root / path).write_text(text, encoding="utf-8")

    def faults(self, rule):
        return list(rule.check(Tree(self.root)))

    def assert_fault(self, rule, path, words):
        found = self.faults(rule)
        self.assertEqual(len(found), 1, found)
        self.assertTrue(found[0].startswith(path), found)
        self.assertIn(words, found[0])


class WholeCheck(TreeTest):
    def test_faults_are_printed_with_their_places_and_fail(self):
        for text, code, words in ((GOOD["src/base/number.cpp"], 0, "0 faults"),
                                  ("int number();  \n", 1, "src/base/number.cpp:1: white space at the end of the line")):
            self.write("src/base/number.cpp", text)
            command = [sys.executable, HOUSE / "tools/check_tree", self.root]
            run = subprocess.run(command, capture_output=True, text=True, check=False)
            self.assertEqual(run.returncode, code, run.stdout + run.stderr)
            self.assertIn(words, run.stdout)


class Includes(TreeTest):
    def test_each_forbidden_include_is_named(self):
        cases = [
            ("src/base/a.h", '"engine/walk.h"', "to the right"),
            ("src/engine/a.cpp", '"cli/verb.h"', "to the right"),
            ("src/cli/a.cpp", '"ui/window.h"', "faces know nothing"),
            ("src/cli/main.cpp", '"platform/linux/own.h"', "adapters are included by nobody"),
            ("src/platform/windows/a.cpp", '"platform/linux/own.h"', "adapters are included by nobody"),
            ("src/platform/linux/a.cpp", '"engine/walk.h"', "base and the ports only"),
            ("src/base/a.cpp", '"number.h"', "names no folder"),
            ("src/platform/port.h", "<windows.h>", "headers of the system"),
            ("src/engine/a.cpp", "<sys/stat.h>", "headers of the system"),
            ("src/engine/a.cpp", "<nlohmann/json.hpp>", "is for src/cli/"),
            ("src/cli/a.cpp", "<QString>", "is for src/ui/"),
            ("src/extra/a.cpp", "<vector>", "no place in the order"),
        ]
        for path, included, words in cases:
            with self.subTest(path=path, included=included):
                self.write(path, f"#pragma once\n#  include {included}\n")
                self.assert_fault(includes, f"{path}:2", words)
                (self.root / path).unlink()

    def test_conditionals_on_the_system_stay_in_adapters(self):
        self.write("src/engine/walk.cpp", "#if defined(NDEBUG)\n#elif defined(__linux__)\n#endif\n")
        self.assert_fault(includes, "src/engine/walk.cpp:2", "asks for the system")


class Style(TreeTest):
    def test_each_blemish_is_named(self):
        cases = [
            ("README.md", "words \n", "white space"),
            ("docs/house.md", "two\twords\n", "a tab"),
            ("tests/base/number_test.cpp", "using namespace std;\n", "unclear origin"),
            ("src/base/number.h", "int number();\n", "#pragma once"),
            ("src/base/number.cpp", "int  number( ) ;\nint   other( ) ;\n", "not formatted"),
        ]
        for path, text, words in cases:
            with self.subTest(words):
                self.write(path, text)
                self.assert_fault(style, path, words)
                self.write(path, GOOD[path])



class TestsRun(TreeTest):
    def test_tests_that_ctest_never_runs_are_named(self):
        for path in ("tests/engine/walk_test.cpp", "tests/base/deep/number_test.cpp", "tests/other/thing_test.py"):
            with self.subTest(path):
                self.write(path, "\n")
                self.assert_fault(tests_run, path, "ctest never runs it")
                (self.root / path).unlink()

    def test_share_of_tests_has_two_borders(self):
        for lines, words in ((0, "wanted are"), (5, None), (20, "wanted are")):
            with self.subTest(lines=lines):
                self.write("tests/base/number_test.cpp", "int more;\n\n" * lines)
                if words:
                    self.assert_fault(tests_run, "tests are ", words)
                else:
                    self.assertEqual(self.faults(tests_run), [])


class Documents(TreeTest):
    def test_what_documents_point_at_exists(self):
        for text in ("[gone](docs/gone.md)", "look at `src/gone/`", "look at `./gone`"):
            with self.subTest(text):
                self.write("README.md", f"first\n{text}\n")
                self.assert_fault(documents, "README.md:2", "gone")


class Sizes(TreeTest):
    def test_file_beyond_the_limit_is_named(self):
        self.write("src/base/number.cpp", "int a;\n" * 1000)
        self.assertEqual(self.faults(sizes), [])
        self.write("src/base/number.cpp", "int a;\n" * 1001)
        self.assert_fault(sizes, "src/base/number.cpp", "1001 lines")

    def test_functions_are_found_whatever_surrounds_them(self):
        text = """enum class Kind { one, two };
constexpr int table[] = {1, 2};
struct S : Base {
    S() : value_(1) {}
    int get() const noexcept override
    {
        auto f = [&]() { return "}"; };  // }
        return f()[0] == '}' ? 10'000 : 0;
    }
    int value_{0};
};
template <class T>
T make(T value = {})
{
    return value;
}
"""
        self.assertEqual(list(sizes.function_lengths(text)), [(4, 1), (6, 4), (14, 3)])


if __name__ == "__main__":
    unittest.main()
