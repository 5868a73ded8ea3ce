// Reports one event COUNT times, by the wrapper or by a comparison, and does nothing else: for a tool that counts
// instructions. The difference of two runs, with different counts, is the cost of the calls without that of start and
// end.
//
//     valgrind --tool=callgrind build/benchmark/benchmarks/event_loop Track3DCKeyPressed wrapper 1000
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "Events.h"
#include "Subjects.h"

int main(int argc, char** argv)
{
    const std::string_view name = argc > 1 ? argv[1] : "";
    const std::string_view subject = argc > 2 ? argv[2] : "";
    const std::uint64_t count = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 0;

    Subjects subjects;
    subjects.ForEach(
        [&]<typename Reporter>(const char* candidate, Reporter& reporter)
        {
            for (const Event<Reporter>& event : Events<Reporter>)
            {
                if (subject != candidate || name != event.name)
                    continue;
                for (std::uint64_t i = 0; i < count; ++i)
                    event.report(reporter);
            }
        });
    if (subjects.delivered != 0 && subjects.delivered == count)
        return 0;
    std::cerr << "event_loop EVENT wrapper|nlohmann|rapidjson|floor COUNT" << std::endl;
    return 2;
}
