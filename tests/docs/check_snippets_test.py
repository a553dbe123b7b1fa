#!/usr/bin/env python3
"""The check of the documentation's blocks finds each kind of fault."""
import unittest

from check_snippets import faults

SOURCE = "void f()\n{\n    // [call]\n    g();\n\n    h();\n    // [call]\n}\n"


class CheckSnippets(unittest.TestCase):
    def test_accepts_a_block_that_a_source_holds_with_another_indentation(self):
        self.assertEqual(list(faults({"d": "```cpp\ng();\n\nh();\n```\n"}, {"s": SOURCE})), [])

    def test_finds_a_block_that_no_source_holds(self):
        found = list(faults({"d": "```cpp\ng();\n\nh();\n```\n```cpp\ni();\n```\n"}, {"s": SOURCE}))
        self.assertEqual(found, ["d: no compiled source has the block that begins 'i();'"])

    def test_finds_a_part_that_no_document_shows(self):
        self.assertEqual(list(faults({"d": ""}, {"s": SOURCE})), ["s: no document shows the part 'call'"])

    def test_refuses_a_part_without_an_end(self):
        with self.assertRaisesRegex(ValueError, "the part 'call' does not end"):
            list(faults({}, {"s": "// [call]\ng();\n"}))


if __name__ == "__main__":
    unittest.main()
