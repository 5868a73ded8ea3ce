#include <harness/ExitStatus.h>

namespace Corvane
{

int ExitStatus(int status)
{
    // Only the low eight bits reach the parent process.
    const bool readsAsSuccess = (status & 0xFF) == 0;
    return status != 0 && readsAsSuccess ? 1 : status;
}

} // namespace Corvane
