// Whole runs of programs, from the start of the process to its end, their output into /dev/null. The programs take
// turns, and the order changes from batch to batch. Prints, as JSON, each program's microseconds per run, one number a
// batch.
//
//     build/benchmark/benchmarks/process_benchmark BATCHES RUNS PROGRAM...
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

// Ends the process when the program cannot be started or fails.
void Run(char* program)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    char* const arguments[] = {program, nullptr};
    pid_t process = 0;
    int status = -1;
    const bool started = posix_spawn(&process, program, &actions, nullptr, arguments, environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    if (!started || waitpid(process, &status, 0) != process || status != 0)
    {
        std::cerr << program << " failed" << std::endl;
        std::exit(1);
    }
}

struct Times
{
    std::vector<double> clock;
    std::vector<double> processor;
};

double ProcessorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time)
    { return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec); };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void RunBatch(char* program, int runs, Times& times)
{
    const double before = ProcessorSeconds();
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < runs; ++i)
        Run(program);
    const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
    times.clock.push_back(elapsed.count() / runs);
    times.processor.push_back(1e9 * (ProcessorSeconds() - before) / runs);
}

void Print(const char* name, const std::vector<Times>& times, std::vector<double> Times::*kind)
{
    std::cout << '"' << name << "\": [";
    for (const Times& ofProgram : times)
    {
        std::cout << (&ofProgram == times.data() ? "[" : ", [");
        for (const double& time : ofProgram.*kind)
            std::cout << (&time == (ofProgram.*kind).data() ? "" : ", ") << time;
        std::cout << "]";
    }
    std::cout << "]";
}

} // namespace

int main(int argc, char** argv)
{
    const int batches = argc > 1 ? std::atoi(argv[1]) : 0;
    const int runs = argc > 2 ? std::atoi(argv[2]) : 0;
    if (batches <= 0 || runs <= 0 || argc < 4)
    {
        std::cerr << "process_benchmark BATCHES RUNS PROGRAM..." << std::endl;
        return 2;
    }

    const std::vector<char*> programs(argv + 3, argv + argc);
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < programs.size(); ++i)
    {
        Times warmUp;
        RunBatch(programs[i], runs, warmUp);
        order.push_back(i);
    }
    std::vector<Times> times(programs.size());
    for (int batch = 0; batch < batches; ++batch)
    {
        for (const std::size_t i : order)
            RunBatch(programs[i], runs, times[i]);
        std::rotate(order.begin(), order.begin() + 1, order.end());
    }

    std::cout << "{";
    Print("clock", times, &Times::clock);
    std::cout << ", ";
    Print("processor", times, &Times::processor);
    std::cout << "}" << std::endl;
    return 0;
}
