// One standard output for narrow and wide text.
#pragma once

#include <memory>
#include <streambuf>

// While it lives, what is written to std::wcout goes through std::cout's buffer as UTF-8, so that narrow and wide lines
// arrive complete and in the order written, and no character can put the stream into an error state. What is ill-formed
// comes out as U+FFFD.
class Utf8Console
{
public:
    Utf8Console();
    ~Utf8Console();
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;

private:
    std::unique_ptr<std::wstreambuf> buffer;
    std::wstreambuf* previous;
};
