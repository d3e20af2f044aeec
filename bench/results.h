// What the benchmarks come to: for each series and variant the quickest of all repetitions, in ns per row.
#pragma once

#include "bench/bench.h"

#include <map>

namespace bench {

// Prints a line for each series, and writes all to a file of comma-separated values unless its name is empty.
class results : public benchmark::BenchmarkReporter {
public:
    results(const std::string &csv_file, const std::string &duckdb_version);

    bool ReportContext(const Context &) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

private:
    struct line {
        series s;
        std::map<std::string, double> ns; // by variant
    };
    void print() const;
    void write_csv() const;

    std::string csv, duckdb;
    std::vector<line> lines;
    std::map<std::string, size_t> numbers; // of lines, by series
};

} // namespace bench
