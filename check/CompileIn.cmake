# Writes a C++ source that defines CompiledInDocument() with the text of docs/events.json. The bytes are numbers, because
# Visual C++ limits the length of a literal.
#
#     cmake -D INPUT=<file> -D OUTPUT=<file> -P CompileIn.cmake
cmake_minimum_required(VERSION 3.25)

file(READ "${INPUT}" bytes HEX)
# 32 bytes a line: compilers limit its length, too.
string(REPEAT "[0-9a-f]" 64 line)
string(REGEX REPLACE "(${line})" "\\1\n" bytes "${bytes}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
file(
    WRITE "${OUTPUT}"
    "// Made from docs/events.json.
#include <check/Document.h>

namespace Corvane
{

std::string_view CompiledInDocument()
{
    static const unsigned char bytes[] = {
${bytes}
    };
    return {reinterpret_cast<const char*>(bytes), sizeof bytes};
}

} // namespace Corvane
"
)
