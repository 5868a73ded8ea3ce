#include <harness/SystemConsole.h>

// A terminal takes what its user has set, which is UTF-8 nearly everywhere; a program has no say in it.
SystemConsole::SystemConsole() = default;

SystemConsole::~SystemConsole() = default;
