# Writes a C++ source that gives the text of docs/events.json as check/Document.h declares it. The bytes are numbers, for
# Visual C++ limits the length of a literal.
#
#     cmake -D INPUT=<file> -D OUTPUT=<file> -P CompileIn.cmake
cmake_minimum_required(VERSION 3.25)

file(READ "${INPUT}" bytes HEX)
# 32 bytes a line: compilers have limits for these, too.
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
    static constexpr unsigned char bytes[] = {
${bytes}
    };
    return {reinterpret_cast<const char*>(bytes), sizeof bytes};
}

} // namespace Corvane
"
)
