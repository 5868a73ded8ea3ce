// A heap of the module's own, in place of the C++ library's: every block bears its module's mark, and a module that is
// asked to free a block without its own ends the program.
#pragma once

#include <cstddef>

// Blocks that this module holds at the moment.
std::size_t OwnBlockCount();
