#include <check/CommandLineArguments.h>
#include <check/Program.h>
#include <harness/Console.h>

int main(int count, char** arguments)
{
    Corvane::StandardOutput output;
    return Corvane::RunTaviCheck(Corvane::CommandLineArguments(count, arguments), output);
}
