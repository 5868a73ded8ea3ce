// What a system's console needs, so that UTF-8 shows as it is meant.
#pragma once

// While it lives, a console or terminal at standard output takes UTF-8; afterwards what it took before. Constructed
// before the program's first output. Of no effect on a pipe or a file.
class SystemConsole
{
public:
    SystemConsole();
    ~SystemConsole(); // NOLINT(performance-trivially-destructible): not every system has nothing to undo
    SystemConsole(const SystemConsole&) = delete;
    SystemConsole& operator=(const SystemConsole&) = delete;

private:
    [[maybe_unused]] unsigned previousCodePage = 0;
};
