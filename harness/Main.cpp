#include <harness/Console.h>
#include <harness/Driver.h>

int main()
{
    const Utf8Console console;
    return RunDriver();
}
