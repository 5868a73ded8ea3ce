#include <iostream>
#include <string>

#include <harness/Console.h>
#include <harness/Driver.h>
#include <harness/ExitStatus.h>

int main()
{
    StandardOutput output;
    const int status = RunDriver();
    if (const std::error_code failure = output.Flush())
        std::cerr << "cvtavi_test: standard output cannot be written: " + failure.message() + "\n";
    return ExitStatus(status);
}
