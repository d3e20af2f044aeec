// Runs the benchmarks:
//     bcast_bench [--csv=FILE] [--duckdb=LIBDUCKDB.SO] [options of Google Benchmark]

#include "bench/duckdb.h"
#include "bench/results.h"

#include <algorithm>
#include <string>

// The value of the argument --NAME=VALUE, which is taken away; empty if there is none.
static std::string take_argument(const std::string &name, int &argc, char **argv)
{
    const std::string start = "--" + name + "=";
    std::string value;
    const auto end = std::remove_if(argv + 1, argv + argc, [&](const char *argument) {
        const bool found = std::string(argument).starts_with(start);
        if (found)
            value = argument + start.size();
        return found;
    });
    argc = int(end - argv);
    return value;
}

[[gnu::visibility("default")]] int bench_main(int argc, char **argv)
{
    const std::string csv = take_argument("csv", argc, argv), duckdb = take_argument("duckdb", argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    const std::string duckdb_version = duckdb.empty() ? "none" : bench::add_duckdb(duckdb);
    bench::results results(csv, duckdb_version);
    return benchmark::RunSpecifiedBenchmarks(&results) == 0 ? 2 : 0;
}
