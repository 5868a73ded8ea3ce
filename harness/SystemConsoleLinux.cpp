#include <harness/SystemConsole.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace Corvane
{

// A terminal's encoding is its user's setting, nearly always UTF-8. A program cannot change it.
SystemConsole::SystemConsole()
{
    // The next file that is opened would get the descriptor of a standard stream that is closed, and with it the
    // output. The root folder takes these descriptors instead: it cannot be written.
    int number = 0;
    while (number >= 0 && number <= STDERR_FILENO)
        number = open("/", O_RDONLY);
    close(number);

    // A reader that has gone and a file at its size limit are reported as errors. Their signals would end the program.
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
            pollfd stream{STDOUT_FILENO, POLLOUT, 0};
            poll(&stream, 1, -1);
        }
        else if (error != EINTR)
        {
            return {error, std::system_category()};
        }
    }
    return {};
}

} // namespace Corvane
