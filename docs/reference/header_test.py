#!/usr/bin/python3
"""What is read of a header, and what is refused with a sentence."""

import tempfile
import unittest
from pathlib import Path

import header

OPENING = """#pragma once
#include <string>
#include <vector>
class CorvaneTavi
{
public:
    static CorvaneTavi& Instance();

    // Reports what the others are made of.
    void TrackWaypoint(const std::string& name);

"""
CLOSING = """
private:
    void TrackNothing();
};
"""


def read(declarations, opening=OPENING, closing=CLOSING):
    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder) / "Wrapper.h"
        file.write_text(opening + declarations + closing, encoding="utf-8")
        return header.read_methods(file, Path(folder))


def read_one(declaration):
    [method] = read("    // A group\n" + declaration)
    return method


class Methods(unittest.TestCase):
    def test_the_public_reporting_methods_are_read_in_order(self):
        methods = read("    // Mesh\n    void TrackB(int a);\n    void TrackA(int b);\n\n"
                       "    // Documents. Prepares.\n    void AddDocument(int c);\n\n"
                       "    // Documents. Sends.\n    void StartTrackChange(int d);\n")
        self.assertEqual([method.name for method in methods], ["TrackB", "TrackA", "AddDocument", "StartTrackChange"])
        self.assertEqual([method.parameters for method in methods], [["a"], ["b"], ["c"], ["d"]])

    def test_a_comment_above_a_group_is_its_heading_and_its_note(self):
        methods = read("    // Mesh, and mould. Sizes are\n    // in `mm`. All of them.\n"
                       "    void TrackA(int a);\n    void TrackB(int b);\n\n    // Other\n    void TrackC(int c);\n")
        self.assertEqual([(method.heading, method.group_note) for method in methods],
                         [("Mesh, and mould", "Sizes are in `mm`. All of them.")] * 2 + [("Other", "")])
        self.assertEqual([method.note for method in methods], ["", "", ""])

    def test_a_comment_within_a_group_is_the_next_methods_alone(self):
        methods = read("    // Mesh\n    void TrackA(int a);\n    // Of the second alone.\n    // In two lines.\n"
                       "    void TrackB(int b);\n    void TrackC(int c);\n")
        self.assertEqual([method.note for method in methods], ["", "Of the second alone. In two lines.", ""])
        self.assertEqual({(method.heading, method.group_note) for method in methods}, {("Mesh", "")})

    def test_a_comment_behind_a_method_is_its_own(self):
        methods = read("    // Mesh\n    void TrackA(int a); // Of the first.\n    void TrackB(int b,\n"
                       "                int c); /* Of the second. */\n    void TrackC(int d);\n")
        self.assertEqual([method.note for method in methods], ["Of the first.", "Of the second.", ""])

    def test_a_comment_within_a_declaration_is_part_of_the_signature(self):
        method = read_one("    void TrackA(int a /* in mm */);\n")
        self.assertEqual((method.signature, method.note), ("void TrackA(int a /* in mm */);", ""))

    def test_comments_of_every_form_are_read(self):
        methods = read("    /* Mesh. The\n     * note. */\n    void TrackA(int a);\n\n"
                       "    /// Other. A note.\n    void TrackB(int b); ///< Its own.\n")
        self.assertEqual([(method.heading, method.group_note, method.note) for method in methods],
                         [("Mesh", "The note.", ""), ("Other", "A note.", "Its own.")])

    def test_the_signature_is_laid_out_as_in_the_header(self):
        method = read_one("    void TrackA(const std::vector<int>& tools,\n                int b);\n")
        self.assertEqual(method.signature, "void TrackA(const std::vector<int>& tools,\n            int b);")

    def test_a_default_argument_is_no_parameter(self):
        method = read_one('    void TrackA(int a, const std::wstring& name = std::wstring(L"x, y), z"), int c = (3, 4));\n')
        self.assertEqual(method.parameters, ["a", "name", "c"])
        self.assertEqual(method.signature, 'void TrackA(int a, const std::wstring& name = '
                                           'std::wstring(L"x, y), z"), int c = (3, 4));')

    def test_a_parameter_of_a_function_type_is_one_parameter(self):
        self.assertEqual(read_one("    void TrackA(void (*call)(int first, int second), int last);\n").parameters,
                         ["call", "last"])

    def test_what_is_not_understood_ends_with_a_sentence_that_names_the_line(self):
        for declaration, sentence in (
            ("int TrackA(int a);", "TrackA returns int"),
            ("void TrackA(int);", "A parameter of TrackA has no name."),
            ("void TrackA(int a, ...);", "TrackA takes any number of arguments"),
            ("static void TrackA(int a);", "TrackA is static or const"),
            ("void TrackA(int a) const;", "TrackA is static or const"),
            ("void TrackA(int a) {}", "TrackA is defined within the class"),
            ("template <typename T> void TrackA(T a);", "TrackA"),
            ("void TrackA(Unknown a);", "unknown type name 'Unknown'"),
        ):
            with self.subTest(declaration), self.assertRaises(header.NotUnderstood) as raised:
                read_one(f"    {declaration}\n")
            self.assertRegex(str(raised.exception), r"Wrapper\.h:13: .*" + sentence.replace("(", r"\("))

    def test_a_name_that_is_declared_twice_is_refused(self):
        with self.assertRaisesRegex(header.NotUnderstood, "Wrapper.h:14: TrackA is declared twice"):
            read("    // A group\n    void TrackA(int a);\n    void TrackA(bool a);\n")

    def test_a_method_without_a_group_is_refused(self):
        with self.assertRaisesRegex(header.NotUnderstood, "Wrapper.h:15: TrackB stands in no group"):
            read("    // A group\n    void TrackA(int a);\n\n    void TrackB(int a);\n")

    def test_a_header_without_the_class_or_without_methods_is_refused(self):
        with self.assertRaisesRegex(header.NotUnderstood, "has no class CorvaneTavi"):
            read("", opening="class Other {", closing="};")
        with self.assertRaisesRegex(header.NotUnderstood, "declares no reporting method"):
            read("")


class Vocabulary(unittest.TestCase):
    def read(self, constants):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "Words.h"
            file.write_text("#include <string>\nnamespace Corvane::Vocabulary\n{\n" + constants + "\n}\n"
                            'namespace Corvane { inline const std::wstring OTHER = L"OTHER"; }\n'
                            'namespace Vocabulary { inline const std::wstring ANOTHER = L"ANOTHER"; }\n'
                            "namespace Corvane::Vocabulary { void Function(); }\n", encoding="utf-8")
            return header.read_vocabulary(file, Path(folder))

    def test_the_texts_of_the_constants_are_read_in_order(self):
        self.assertEqual(self.read('inline const std::wstring B_TEXT =\n    L"B.TEXT"; // "C"\n'
                                   'inline const std::wstring A = L"A";'), ["B.TEXT", "A"])

    def test_what_is_no_plain_wide_text_is_refused(self):
        for constant in ('inline const std::wstring A = L"A" L"B";', 'inline const std::string A = "A";',
                         "inline const int A = 3;", r'inline const std::wstring A = L"\x41";'):
            with self.subTest(constant), self.assertRaisesRegex(header.NotUnderstood, r"Words\.h:4: A is not a constant"):
                self.read(constant)

    def test_a_constant_that_is_not_named_as_its_text_is_refused(self):
        with self.assertRaisesRegex(header.NotUnderstood, r"Words\.h:4: A_B is not named as its text is spelt"):
            self.read('inline const std::wstring A_B = L"A.C";')

    def test_a_header_without_constants_is_refused(self):
        with self.assertRaisesRegex(header.NotUnderstood, "has no constant"):
            self.read("")


if __name__ == "__main__":
    unittest.main()
