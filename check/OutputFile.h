// Files that the program writes.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace Corvane
{

// Writes the text, byte for byte, to the file of that name, which is in UTF-8. Returns the system's error.
std::error_code WriteOutputFile(const std::string& name, std::string_view text);

} // namespace Corvane
