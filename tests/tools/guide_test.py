"""The user guide holds together: its links lead somewhere, and what the program looks for in it is there."""

import re
import unittest
from pathlib import Path

GUIDE = Path(__file__).resolve().parents[2] / "docs/guide"
LINK = re.compile(r"\]\(([^)]+)\)")
NAMED = re.compile(r'<a id="([^"]+)"></a>')
HEADING = re.compile(r"^#+\s+(.*\S)\s*$", re.M)


def anchor(heading):
    kept = "".join(c for c in heading.lower() if c.isalnum() or c in " -_")
    return kept.replace(" ", "-")


class Guide(unittest.TestCase):
    def setUp(self):
        self.pages = {path.name: path.read_text(encoding="utf-8") for path in GUIDE.glob("*.md")}

    def places(self, name):
        text = self.pages[name]
        return set(NAMED.findall(text)) | {anchor(heading) for heading in HEADING.findall(text)}

    def test_every_link_leads_to_a_page_and_a_place(self):
        lost = []
        links = [(name, link) for name, text in self.pages.items() for link in LINK.findall(text)]
        self.assertGreater(len(links), 15)
        for name, link in links:
            file, _, place = link.partition("#")
            target = file or name
            known = target in self.pages and (not place or place in self.places(target))
            if not known and not (GUIDE / target).is_file():
                lost.append(f"{name}: {link}")
        self.assertEqual(lost, [])

    def test_the_clean_up_can_be_asked_for_by_name(self):
        self.assertEqual([name for name, text in self.pages.items() if "toc_clean" in NAMED.findall(text)],
                         ["clean-up.md"])

    def test_the_beginning_names_every_chapter_once(self):
        chapters = re.findall(r"^\d+\. \[[^\]]*\]\(([a-z-]+\.md)\)", self.pages["index.md"], re.M)
        self.assertEqual(sorted([*chapters, "index.md"]), sorted(self.pages))

    def test_a_name_of_a_place_stands_before_its_heading(self):
        for name, text in self.pages.items():
            for match in NAMED.finditer(text):
                self.assertRegex(text[match.end():], r"^\n(<a id=\"[^\"]+\"></a>\n)*#", name)


if __name__ == "__main__":
    unittest.main()
