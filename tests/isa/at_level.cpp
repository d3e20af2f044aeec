// Runs a program with the libraries of a folder, where the machine has the level that they are built for:
//
//     bcast_at_level x86-64-v3 build/isa/x86-64-v3 build/bcast_contract_tests --gtest_brief=1
//
// Apart from the program, which would end as soon as it has loaded a library that the machine cannot run.

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string_view>

#include <unistd.h>

namespace {

constexpr int skipped = 77; // as ctest is told
constexpr int wrong_usage = 2;

int run(char **program, const char *folder)
{
    setenv("LD_LIBRARY_PATH", folder, 1);
    setenv("BCAST_LIBRARY_FOLDER", folder, 1); // loaded_libraries.cpp looks whether it came to that
    execv(program[0], program);
    std::cerr << "bcast_at_level: cannot run " << program[0] << ": " << std::strerror(errno) << '\n';
    return EXIT_FAILURE;
}

} // namespace

int main(int count, char **arguments)
{
    if (count < 4) {
        std::cerr << "usage: bcast_at_level LEVEL FOLDER PROGRAM [ARGUMENT...]\n";
        return wrong_usage;
    }
    const std::string_view level = arguments[1];
    const bool is_v3 = level == "x86-64-v3", is_v4 = level == "x86-64-v4";
    if (!is_v3 && !is_v4 && level != "baseline") {
        std::cerr << "bcast_at_level: no level " << level << ": baseline, x86-64-v3 or x86-64-v4\n";
        return wrong_usage;
    }
    if ((is_v3 && !__builtin_cpu_supports("x86-64-v3")) || (is_v4 && !__builtin_cpu_supports("x86-64-v4"))) {
        std::cout << "bcast_at_level: Skipped\nthis machine has no " << level << '\n';
        return skipped;
    }
    return run(arguments + 3, arguments[2]);
}
