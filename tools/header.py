"""Reads the reporting methods and the vocabulary from the wrapper's headers, by libclang."""

import subprocess
from pathlib import Path
from typing import NamedTuple

import clang.cindex
from clang.cindex import AccessSpecifier, CursorKind, TokenKind, TypeKind


class NotUnderstood(Exception):
    """A fault in what the reference is made from, as a sentence that names the place."""


class Method(NamedTuple):
    name: str
    signature: str  # as in the header, without its indentation
    parameters: list  # names
    heading: str  # the first sentence of the comment above its group
    group_note: str  # what that comment says beyond it
    note: str  # the comment on this method alone; "" for none


CLASS = "CorvaneTavi"
# Public, and not listed: the other methods report through it.
NOT_LISTED = "TrackWaypoint"
# Prepares the event that StartTrackFileChange sends.
PREPARING = "AddDocument"


def parse(file, sources):
    """`file` as C++, with the project's headers and g++'s own."""
    include = subprocess.run(["g++", "-print-file-name=include"], check=True, capture_output=True, text=True).stdout
    arguments = ["-x", "c++", "-std=c++20", f"-I{sources}", f"-I{sources / 'sdk/include'}", "-isystem", include.strip(),
                 "-fparse-all-comments"]
    unit = clang.cindex.Index.create().parse(str(file), args=arguments)
    for problem in unit.diagnostics:
        if problem.severity >= clang.cindex.Diagnostic.Error:
            raise NotUnderstood(f"{problem.location.file}:{problem.location.line}: {problem.spelling}")
    return unit


def fail(cursor, what):
    raise NotUnderstood(f"{cursor.location.file}:{cursor.location.line}: {what}")


def children(cursor, kind, name):
    return [child for child in cursor.get_children() if child.kind == kind and child.spelling == name]


def signature_of(method, source):
    """From the method's first character to its semicolon, laid out as in the header's `source`, which is bytes."""
    begin, end = method.extent.start, method.extent.end
    text = source[begin.offset:end.offset].decode()
    return text.replace("\n" + " " * (begin.column - 1), "\n") + ";"


def check_method(method):
    """Ends unless it is declared as `void Name(type name, ...);`."""
    parameters = list(method.get_arguments())
    if (method.kind != CursorKind.CXX_METHOD or method.result_type.kind != TypeKind.VOID or method.is_definition()
            or method.is_static_method() or method.is_const_method() or not all(each.spelling for each in parameters)):
        fail(method, f"{method.spelling} is not declared as reporting methods are: \"void {method.spelling}(...);\", "
                     "not static or const, each parameter with a name.")


def is_reporting(member):
    return member.access_specifier == AccessSpecifier.PUBLIC and member.spelling != NOT_LISTED and (
        member.spelling == PREPARING or member.spelling.startswith(("Track", "StartTrack")))


def read_methods(file, sources):
    """The public reporting methods of the class, and the one that prepares an event, in order."""
    unit = parse(file, sources)
    source = file.read_bytes()
    lines = source.decode().splitlines()
    methods = []
    heading, group_note = None, ""
    for kind in children(unit.cursor, CursorKind.CLASS_DECL, CLASS):
        for member in filter(is_reporting, kind.get_children()):
            check_method(member)
            if any(method.name == member.spelling for method in methods):
                fail(member, f"{member.spelling} is declared twice: each reporting method has its own name.")
            comment = (member.raw_comment or "").splitlines()
            note = " ".join(line.strip().lstrip("/").strip() for line in comment)
            before = member.extent.start.line - 2  # counted from 0
            is_above = lines[before].strip().startswith("//")
            begins_group = lines[before - len(comment) if is_above else before].strip() in ("", "public:")
            if begins_group or heading is None:
                if not is_above:
                    fail(member, f"{member.spelling} is in no group: the comment above a group's first method is the "
                                 "group's heading.")
                heading, _, group_note = (part.strip() for part in note.partition("."))
                note = ""
            methods.append(Method(member.spelling, signature_of(member, source),
                                  [parameter.spelling for parameter in member.get_arguments()],
                                  heading, group_note, note))
    if not methods:
        raise NotUnderstood(f"{file} declares no reporting method of a class {CLASS}.")
    return methods


def read_vocabulary(file, sources):
    """The texts of the constants of Corvane::Vocabulary, in order."""
    texts = []
    for outer in children(parse(file, sources).cursor, CursorKind.NAMESPACE, "Corvane"):
        for inner in children(outer, CursorKind.NAMESPACE, "Vocabulary"):
            for constant in inner.get_children():
                literals = [token.spelling for token in constant.get_tokens() if token.kind == TokenKind.LITERAL]
                if len(literals) != 1 or not literals[0].startswith('L"') or "\\" in literals[0]:
                    fail(constant, f"{constant.spelling} is not a constant with one plain wide text.")
                texts.append(literals[0][2:-1])
                if constant.spelling != texts[-1].replace(".", "_"):
                    fail(constant, f'{constant.spelling} has the text "{texts[-1]}": a constant is named by its text, '
                                   "with each dot made an underscore.")
    return texts
