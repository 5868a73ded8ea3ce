#pragma once

// The status to leave the program with. Systems that keep only part of it must not turn a failure into success.
int ExitStatus(int status);
