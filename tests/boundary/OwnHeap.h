// Replaces operator new and operator delete in this module: every block has the module's mark, and a module that frees
// a block without its own mark aborts the program.
#pragma once

#include <cstddef>

// Blocks that this module has allocated and not freed.
std::size_t OwnBlockCount();
