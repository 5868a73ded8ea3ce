#include <harness/SystemConsole.h>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>

SystemConsole::SystemConsole()
{
    DWORD mode = 0;
    if (GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) == 0)
        return; // not a console
    previousCodePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    // The run time's text mode, and output without a buffer, take a character's bytes apart on their way to a console.
    _setmode(_fileno(stdout), _O_BINARY);
    static_cast<void>(std::setvbuf(stdout, nullptr, _IOFBF, 1 << 16));
}

SystemConsole::~SystemConsole()
{
    if (previousCodePage == 0)
        return;
    static_cast<void>(std::fflush(stdout));
    SetConsoleOutputCP(previousCodePage);
}
