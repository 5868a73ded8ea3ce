// Maps a status to what the system can return.
#pragma once

namespace Corvane
{

// The status to leave the program with. Systems that keep only part of it must not turn a failure into success: a
// failure that would read as 0 becomes 1.
int ExitStatus(int status);

} // namespace Corvane
