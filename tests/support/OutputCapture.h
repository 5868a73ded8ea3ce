// While it lives, what is written to std::cout and std::wcout is stored instead of shown, in the order written, as
// UTF-8.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

#include <harness/Console.h>

class OutputCapture
{
public:
    OutputCapture() : previous(std::cout.rdbuf(captured.rdbuf())) {}
    ~OutputCapture()
    {
        std::wcout.flush();
        std::cout.rdbuf(previous);
    }
    OutputCapture(const OutputCapture&) = delete;
    OutputCapture& operator=(const OutputCapture&) = delete;

    std::string Text() const { return captured.str(); }

private:
    std::ostringstream captured;
    std::streambuf* previous;
    Corvane::Utf8Console wideOutput;
};
