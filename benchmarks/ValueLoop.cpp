// Does one thing to an object of N members, or of N levels, COUNT times: for a tool that counts instructions. The
// difference of two runs, with different counts, is the cost without that of start and end.
//
//     valgrind --tool=callgrind build/benchmark/benchmarks/value_loop members build 1000 5
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "Shapes.h"

using Veltrane::TaviDesktopSDK::JsonValue;

namespace
{

// False when the action is unknown or its result is wrong.
template <typename Shape>
bool Run(std::string_view action, std::size_t size, unsigned long count)
{
    const Shape shape(size);
    const JsonValue object = shape.Build();
    const JsonValue other = shape.Build();
    bool isRight = count > 0;
    for (unsigned long i = 0; i < count; ++i)
    {
        if (action == "build")
            isRight &= shape.Build().GetCount() > 0;
        else if (action == "copy")
            isRight &= JsonValue(object).GetCount() > 0;
        else if (action == "compare")
            isRight &= object.Compare(other) == 0;
        else if (action == "look_up")
            isRight &= shape.LookUp(object);
        else if (action == "text")
            isRight &= object.GetJsonString().size() > size;
        else
            isRight = false;
    }
    return isRight;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string_view shape = argc == 5 ? argv[1] : "";
    if (shape == "members" &&
        Run<Members>(argv[2], std::strtoul(argv[3], nullptr, 10), std::strtoul(argv[4], nullptr, 10)))
        return 0;
    if (shape == "levels" &&
        Run<Levels>(argv[2], std::strtoul(argv[3], nullptr, 10), std::strtoul(argv[4], nullptr, 10)))
        return 0;
    std::cerr << "value_loop members|levels build|copy|compare|look_up|text N COUNT" << std::endl;
    return 2;
}
