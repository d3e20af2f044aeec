#include "bench/results.h"

#include "machine/level.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <thread>

namespace bench {

namespace {

// The value in the first line of the file that begins with `key`, without what stands around it.
std::string value_in(const char *file, const std::string &key)
{
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        if (!line.starts_with(key))
            continue;
        const size_t from = line.find_first_not_of(" \t:=\"", key.size()), to = line.find_last_not_of(" \"");
        return from == std::string::npos ? "" : line.substr(from, to - from + 1);
    }
    return "unknown";
}

std::string best_level()
{
    for (const machine::level each : {machine::level::avx512, machine::level::avx2})
        if (machine::has(each))
            return std::string(", ") + machine::name_of(each);
    return "";
}

std::string today()
{
    const std::time_t now = std::time(nullptr);
    char text[16];
    std::strftime(text, sizeof text, "%Y-%m-%d", std::gmtime(&now));
    return text;
}

std::string compiler()
{
#ifdef __clang__
    return std::string("clang ") + __clang_version__;
#else
    return std::string("g++ ") + __VERSION__;
#endif
}

[[noreturn]] void cannot_write(const std::string &file)
{
    std::fprintf(stderr, "bcast_bench: cannot write %s\n", file.c_str());
    std::exit(2);
}

} // namespace

// The file is opened now, lest minutes of measuring be lost.
results::results(const std::string &csv_file, const std::string &duckdb_version) : csv(csv_file), duckdb(duckdb_version)
{
    if (!csv.empty() && !std::ofstream(csv))
        cannot_write(csv);
}

void results::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs) {
        if (run.error_occurred || run.run_type != Run::RT_Iteration)
            continue;
        const std::string name = run.run_name.function_name;
        const size_t slash = name.rfind('/');
        const auto [number, is_new] = numbers.try_emplace(name.substr(0, slash), lines.size());
        if (is_new)
            lines.push_back({all_added().at(name), {}});
        const double ns = run.cpu_accumulated_time * 1e9 / double(run.iterations) / run.counters.at("rows").value;
        double &best = lines[number->second].ns.try_emplace(name.substr(slash + 1), ns).first->second;
        best = std::min(best, ns);
    }
}

void results::Finalize()
{
    print();
    if (!csv.empty())
        write_csv();
}

void results::print() const
{
    std::printf("%-80s %8s   beside (ns per row, and the cast's ratio to it)\n", "series", "ns/row");
    for (const line &l : lines) {
        std::string name = l.s.name("");
        name.pop_back();
        const auto cast = l.ns.find("cast");
        if (cast == l.ns.end())
            std::printf("%-80s %8s", name.c_str(), "");
        else
            std::printf("%-80s %8.3f", name.c_str(), cast->second);
        for (const auto &[variant, ns] : l.ns) {
            if (variant == "cast")
                continue;
            std::printf("   %s %.3f", variant.c_str(), ns);
            if (cast != l.ns.end())
                std::printf(" (%.2f)", cast->second / ns);
        }
        std::printf("\n");
    }
}

void results::write_csv() const
{
    std::ofstream out(csv);
    out << "# date: " << today() << '\n'
        << "# processor: " << value_in("/proc/cpuinfo", "model name") << best_level() << '\n'
        << "# cores: " << std::thread::hardware_concurrency() << '\n'
        << "# system: " << value_in("/etc/os-release", "PRETTY_NAME") << '\n'
        << "# compiler: " << compiler() << '\n'
        << "# duckdb: " << duckdb << '\n'
        << "cast,rows,nulls,unfit,sel,growth,x,variant,ns\n";
    for (const line &l : lines) {
        const size_t colon = std::min(l.s.growth.find(':'), l.s.growth.size());
        const std::string kind = l.s.growth.substr(0, colon);
        const std::string x = kind.empty() ? "" : l.s.growth.substr(colon + 1);
        for (const auto &[variant, ns] : l.ns)
            out << '"' << l.s.what << "\"," << l.s.batch_rows << ',' << l.s.null_percent << ',' << l.s.unfit_nulls
                << ',' << name_of(l.s.sel) << ',' << kind << ',' << x << ',' << variant << ',' << ns << '\n';
    }
    if (!out.flush())
        cannot_write(csv);
}

} // namespace bench
