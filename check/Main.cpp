#include <check/Program.h>
#include <check/System.h>
#include <harness/Console.h>

int main(int count, char** arguments)
{
    Corvane::StandardOutput output;
    return Corvane::RunTaviCheck(Corvane::CommandLineArguments(count, arguments), output);
}
