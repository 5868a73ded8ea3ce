#include <harness/SystemConsole.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace Corvane
{

// A terminal takes what its user has set, which is UTF-8 nearly everywhere; a program has no say in it.
SystemConsole::SystemConsole()
{
    // The next file would get the number of a standard stream that is closed, and the output. A folder takes none.
    int number = 0;
    while (number >= 0 && number <= STDERR_FILENO)
        number = open("/", O_RDONLY);
    close(number);

    // A reader that is gone and a file that is at its limit are errors to report, and no end of the program.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
}

SystemConsole::~SystemConsole() = default;

std::error_code SystemConsole::Write(std::string_view text)
{
    while (!text.empty())
    {
        const ssize_t count = write(STDOUT_FILENO, text.data(), text.size());
        if (count >= 0)
        {
            text.remove_prefix(static_cast<std::size_t>(count));
            continue;
        }
        const int error = errno;
        if (error == EAGAIN)
        {
            pollfd room{STDOUT_FILENO, POLLOUT, 0};
            poll(&room, 1, -1);
        }
        else if (error != EINTR)
        {
            return {error, std::system_category()};
        }
    }
    return {};
}

} // namespace Corvane
