#include <iostream>
#include <string>

#include <harness/Console.h>
#include <harness/Driver.h>
#include <harness/ExitStatus.h>

int main()
{
    Corvane::StandardOutput output;
    const int status = Corvane::RunDriver();
    if (const std::error_code failure = output.Flush())
        std::cerr << "cvtavi_test: standard output cannot be written: " + failure.message() + "\n";
    return Corvane::ExitStatus(status);
}
