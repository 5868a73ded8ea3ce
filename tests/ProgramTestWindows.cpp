// What of the program is Windows' own.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Program.h"

TEST(Program, EveryBitOfAStatusReachesTheParent)
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    for (const int status : {1, 255, 256, 65'536, -1})
    {
        const nlohmann::json script = {{"SetTestingFlags", {{"default", {{"status", status}}}}}};
        EXPECT_EQ(copy.Run(script.dump()).status, status);
    }
}
