// Prints what a good run of cvtavi_test prints, line by line as it does, and does nothing else: what a run costs is
// measured against this.
#include <iostream>

namespace
{

const char* const lines[] = {
#include "GoodRunLines.inc"
};

} // namespace

int main()
{
    for (const char* line : lines)
        std::cout << line << std::endl;
    return 0;
}
