#pragma once

#include <cstddef>
#include <functional>

// Runs `body`, which throws nothing, on another thread with a stack of `size` bytes, and waits for its end. Throws
// std::runtime_error when the thread cannot be created.
void RunOnStackOf(std::size_t size, const std::function<void()>& body);
