// The product file, UPI/upiconfig.xml beside the program, read without the wrapper, whose reading is compared with
// this.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace Corvane
{

struct ProductFile
{
    std::map<std::string, std::string> levels; // the identifiers of all four levels
    std::string remark;                        // why identifiers are "undefined"; empty when none is

    // Product line, release, master and build, joined by "&"; empty when one of them is empty.
    std::string ProductKey() const;
};

// The outermost level is the first one of the file; each further one is the first within the one before.
ProductFile ReadProductFile(const std::filesystem::path& file);

// The running program's.
std::filesystem::path ProductFilePath();

} // namespace Corvane
