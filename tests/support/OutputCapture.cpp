#include "OutputCapture.h"

#include <iostream>

OutputCapture::OutputCapture() : previous(std::cout.rdbuf(captured.rdbuf())) {}

OutputCapture::~OutputCapture()
{
    std::wcout.flush();
    std::cout.rdbuf(previous);
}
