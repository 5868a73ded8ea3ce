#include <harness/ExitStatus.h>

namespace Corvane
{

int ExitStatus(int status)
{
    return status;
}

} // namespace Corvane
