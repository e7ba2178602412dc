#!/usr/bin/python3 -I
"""Links between the documents lead to a file, and to a heading, that is there."""

import pathlib
import re
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]

LINK = re.compile(r"\[[^\]\n]*\]\(([^)\s]+)\)")
CODE = re.compile(r"^```.*?^```|`[^`\n]*`", re.DOTALL | re.MULTILINE)
HEADING = re.compile(r"^#+ (.+)$", re.MULTILINE)


def documents():
    return [path for folder in ("", "docs", "bench") for path in (PROJECT / folder).glob("*.md")]


def anchors(path):
    """Of each heading: small letters, blanks as hyphens, no other marks."""
    headings = HEADING.findall(path.read_text("utf-8"))
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


class LinksTest(unittest.TestCase):
    def test_links_lead_somewhere(self):
        for document in documents():
            for link in LINK.findall(CODE.sub("", document.read_text("utf-8"))):
                if "://" in link:
                    continue
                with self.subTest(link, document=document.name):
                    name, _, anchor = link.partition("#")
                    target = document.parent / name if name else document
                    self.assertTrue(target.exists(), "no such file")
                    if anchor:
                        self.assertIn(anchor, anchors(target))


if __name__ == "__main__":
    unittest.main()
