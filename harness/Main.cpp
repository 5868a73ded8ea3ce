#include <harness/Console.h>
#include <harness/Driver.h>
#include <harness/ExitStatus.h>

int main()
{
    const Utf8Console console;
    return ExitStatus(RunDriver());
}
