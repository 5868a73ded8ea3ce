#include <harness/Console.h>
#include <harness/Driver.h>
#include <harness/ExitStatus.h>
#include <harness/SystemConsole.h>

int main()
{
    const SystemConsole console;
    const Utf8Console wideOutput;
    return ExitStatus(RunDriver());
}
