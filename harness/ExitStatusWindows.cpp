#include <harness/ExitStatus.h>

int ExitStatus(int status)
{
    return status;
}
