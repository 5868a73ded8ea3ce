#pragma once

#include <cstddef>
#include <functional>

// Runs `body`, which throws nothing, on a thread of its own with a stack of `size` bytes, and waits for its end. Throws
// std::runtime_error when there is no such thread to be had.
void RunOnStackOf(std::size_t size, const std::function<void()>& body);
