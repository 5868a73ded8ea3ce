"""What the wrapper's headers declare, read by libclang. What is not understood ends with a sentence."""

import subprocess
from dataclasses import dataclass
from pathlib import Path

import clang.cindex
from clang.cindex import AccessSpecifier, CursorKind, TokenKind, TypeKind


class NotUnderstood(Exception):
    """What is wrong, as a sentence that names the place."""


@dataclass
class Method:
    name: str
    signature: str  # as in the header, without its indentation
    parameters: list  # names
    heading: str  # the first sentence of the comment above its group
    group_note: str  # what that comment says beyond it
    note: str  # the comment on this method alone; "" for none


CLASS = "CorvaneTavi"
# Public, and reports what the others are made of.
NOT_LISTED = "TrackWaypoint"
# Prepares the event that StartTrackFileChange sends.
PREPARING = "AddDocument"


def parse(file, sources):
    """`file` as C++, with the project's headers; the compiler tells where its own are."""
    include = subprocess.run(["g++", "-print-file-name=include"], check=True, capture_output=True, text=True).stdout
    arguments = ["-x", "c++", "-std=c++20", f"-I{sources}", f"-I{sources / 'sdk/include'}", "-isystem", include.strip()]
    unit = clang.cindex.Index.create().parse(str(file), args=arguments)
    for problem in unit.diagnostics:
        if problem.severity >= clang.cindex.Diagnostic.Error:
            raise NotUnderstood(f"{problem.location.file}:{problem.location.line}: {problem.spelling}")
    return unit


def fail(cursor, what):
    raise NotUnderstood(f"{Path(cursor.location.file.name).name}:{cursor.location.line}: {what}")


def text_of_comment(tokens):
    """The words of a comment, in one line, without its marks."""
    lines = []
    for token in tokens:
        text = token.spelling
        if text.startswith("/*"):
            lines += [line.strip().lstrip("*").strip() for line in text[2:-2].lstrip("*!").splitlines()]
        else:
            lines.append(text.lstrip("/").lstrip("!<").strip())
    return " ".join(line for line in lines if line)


def find_class(unit, name):
    found = [cursor for cursor in unit.cursor.get_children()
             if cursor.kind == CursorKind.CLASS_DECL and cursor.spelling == name and cursor.is_definition()]
    if len(found) != 1:
        raise NotUnderstood(f"{unit.spelling} has no class {name}")
    return found[0]


def signature_of(method, source):
    """From the method's first character to its semicolon, laid out as in the header's `source`, which is bytes."""
    begin, end = method.extent.start, method.extent.end
    indentation = begin.column - 1
    first, *others = source[begin.offset:end.offset].decode().splitlines()
    return "\n".join([first] + [line[indentation:] if not line[:indentation].strip() else line.strip()
                                for line in others]) + ";"


def check_method(method):
    """Ends unless it is a plain method that returns nothing."""
    if method.kind != CursorKind.CXX_METHOD:
        fail(method, f"{method.spelling} is no plain method: a reporting method is neither a template nor a "
                     f"constructor.")
    if method.result_type.kind != TypeKind.VOID:
        fail(method, f"{method.spelling} returns {method.result_type.spelling}: a reporting method returns nothing.")
    if method.is_definition():
        fail(method, f"{method.spelling} is defined within the class: a reporting method is only declared there.")
    if method.is_static_method() or method.is_const_method():
        fail(method, f"{method.spelling} is static or const, which no reporting method is.")
    if method.type.is_function_variadic():
        fail(method, f"{method.spelling} takes any number of arguments, which no reporting method does.")
    for parameter in method.get_arguments():
        if not parameter.spelling:
            fail(method, f"A parameter of {method.spelling} has no name.")


def is_reporting(cursor):
    name = cursor.spelling.partition("<")[0]
    return name != NOT_LISTED and (name == PREPARING or name.startswith(("Track", "StartTrack")))


def read_methods(file, sources):
    """The public reporting methods of the class, and the one that prepares an event, in order."""
    unit = parse(file, Path(sources))
    source = Path(file).read_bytes()
    lines = source.decode().splitlines()
    kind = find_class(unit, CLASS)
    members = [member for member in kind.get_children() if member.access_specifier == AccessSpecifier.PUBLIC]
    starts = {member.extent.start.line: member for member in members}
    within = {number for member in members for number in range(member.extent.start.line, member.extent.end.line + 1)}
    comments = {token.extent.start.line: token for token in unit.get_tokens(extent=kind.extent)
                if token.kind == TokenKind.COMMENT}

    group = None  # (heading, note)
    note = []  # tokens of a comment on the next method alone
    methods = []
    number = kind.extent.start.line
    while number <= kind.extent.end.line:
        line = lines[number - 1].strip()
        if not line:
            note = []
            group = None
        elif number in comments and number not in within:
            block = []
            begins_group = not lines[number - 2].strip() or lines[number - 2].strip().endswith((":", "{"))
            while number in comments and number not in within:
                block.append(comments[number])
                number = comments[number].extent.end.line + 1
            if begins_group:
                heading, _, rest = text_of_comment(block).partition(".")
                group = (heading.strip(), rest.strip())
            else:
                note = block
            continue
        elif number in starts:
            member = starts[number]
            if is_reporting(member):
                check_method(member)
                after = comments.get(member.extent.end.line)
                if after is not None and after.extent.start.column > member.extent.end.column:
                    note = note + [after]
                if group is None:
                    fail(member, f"{member.spelling} stands in no group: the comment above a group's first method "
                                 f"gives the group's heading.")
                if any(method.name == member.spelling for method in methods):
                    fail(member, f"{member.spelling} is declared twice: each reporting method has a name of its own.")
                methods.append(Method(member.spelling, signature_of(member, source),
                                      [parameter.spelling for parameter in member.get_arguments()],
                                      group[0], group[1], text_of_comment(note)))
            note = []
            number = member.extent.end.line
        number += 1
    if not methods:
        raise NotUnderstood(f"{file} declares no reporting method.")
    return methods


def namespaces(cursor, name):
    return [child for child in cursor.get_children() if child.kind == CursorKind.NAMESPACE and child.spelling == name]


def read_vocabulary(file, sources):
    """The texts of the constants of Corvane::Vocabulary, in order."""
    unit = parse(file, Path(sources))
    constants = [child for outer in namespaces(unit.cursor, "Corvane") for inner in namespaces(outer, "Vocabulary")
                 for child in inner.get_children() if child.kind == CursorKind.VAR_DECL]
    texts = []
    for constant in constants:
        literals = [token.spelling for token in constant.get_tokens() if token.kind == TokenKind.LITERAL]
        if len(literals) != 1 or not literals[0].startswith('L"') or "\\" in literals[0]:
            fail(constant, f"{constant.spelling} is not a constant with one plain wide text.")
        texts.append(literals[0][2:-1])
        if constant.spelling != texts[-1].replace(".", "_"):
            fail(constant, f"{constant.spelling} is not named as its text is spelt.")
    if not texts:
        raise NotUnderstood(f"{file} has no constant of Corvane::Vocabulary.")
    return texts
