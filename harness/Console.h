// One standard output for narrow and wide text.
#pragma once

#include <memory>
#include <streambuf>
#include <system_error>

#include <harness/SystemConsole.h>

namespace Corvane
{

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

// While it lives, std::cout and std::wcout write to the system's standard output, whole lines when they are flushed.
// From the first failure on nothing is written, so that no line arrives behind one that is lost.
class StandardOutput
{
public:
    StandardOutput();
    ~StandardOutput();
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    // Writes what is held back. Returns the first failure since the start.
    std::error_code Flush();

private:
    class Buffer;

    std::unique_ptr<Buffer> buffer;
    std::streambuf* previous;
    Utf8Console wideOutput;
};

} // namespace Corvane
