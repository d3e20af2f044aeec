// Runs the benchmarks and prints, for each series, what a row costs beside its references: the quickest of all
// repetitions of each, all taken in one run.

#include "bench/bench.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace bench {

namespace {

const char *name_of(selection sel)
{
    switch (sel) {
    case selection::none:
        return "none";
    case selection::sorted_half:
        return "sorted";
    case selection::random_half:
        return "random";
    }
    return "";
}

// Gathers the runs of all variants of a series and prints them as one line.
class table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.error_occurred || run.run_type != Run::RT_Iteration)
                continue;
            const std::string name = run.run_name.function_name;
            const size_t slash = name.rfind('/');
            const std::string line = name.substr(0, slash), variant = name.substr(slash + 1);
            if (!rows.contains(line))
                order.push_back(line);
            const double ns = run.cpu_accumulated_time * 1e9 / double(run.iterations) / run.counters.at("rows").value;
            double &best = rows[line].try_emplace(variant, ns).first->second;
            best = std::min(best, ns);
        }
    }

    void Finalize() override
    {
        std::printf("%-66s %8s   beside (ns per row, and the cast's ratio to it)\n", "series", "ns/row");
        for (const std::string &line : order) {
            const auto &variants = rows[line];
            const auto cast = variants.find("cast");
            std::printf("%-66s %8.3f", line.c_str(), cast == variants.end() ? 0.0 : cast->second);
            for (const auto &[variant, ns] : variants) {
                if (variant == "cast")
                    continue;
                std::printf("   %s %.3f", variant.c_str(), ns);
                if (cast != variants.end())
                    std::printf(" (%.2f)", cast->second / ns);
            }
            std::printf("\n");
        }
    }

private:
    std::vector<std::string> order;
    std::map<std::string, std::map<std::string, double>> rows;
};

} // namespace

std::string series::name(const char *variant) const
{
    return what + "/rows:" + std::to_string(batch_rows) + "/nulls:" + std::to_string(null_percent) +
           (unfit_nulls ? "u" : "") + "/sel:" + name_of(sel) + "/" + variant;
}

std::vector<series> all_series(const std::string &what, bool unfit_nulls)
{
    std::vector<series> all;
    for (uint32_t rows : {4096u, 65535u})
        for (selection sel : {selection::none, selection::sorted_half, selection::random_half})
            for (int nulls : {0, 10, 50})
                all.push_back({what, rows, nulls, sel, false});
    if (unfit_nulls)
        for (int nulls : {10, 50})
            all.push_back({what, 4096, nulls, selection::none, true});
    return all;
}

std::vector<series> dense_series(const std::string &what)
{
    std::vector<series> dense = all_series(what, false);
    std::erase_if(dense, [](const series &s) { return s.sel != selection::none; });
    return dense;
}

std::vector<uint8_t> make_flags(int null_percent)
{
    std::mt19937 random(1);
    std::vector<uint8_t> flags(pool_rows);
    for (uint8_t &flag : flags)
        flag = int(random() % 100) >= null_percent;
    return flags;
}

std::vector<uint16_t> make_selection(const series &s)
{
    std::mt19937 random(2);
    std::vector<uint16_t> all;
    std::vector<uint16_t> numbers(s.batch_rows);
    for (uint32_t batch = 0; s.sel != selection::none && batch < s.batches(); batch++) {
        for (uint32_t r = 0; r < s.batch_rows; r++)
            numbers[r] = uint16_t(r);
        std::shuffle(numbers.begin(), numbers.end(), random);
        if (s.sel == selection::sorted_half)
            std::sort(numbers.begin(), numbers.begin() + s.rows());
        all.insert(all.end(), numbers.begin(), numbers.begin() + s.rows());
    }
    return all;
}

void add(const series &s, const char *variant, std::function<pass()> make)
{
    const double rows = double(s.rows()) * s.batches();
    benchmark::RegisterBenchmark(s.name(variant).c_str(), [make = std::move(make), rows](benchmark::State &state) {
        const pass once = make();
        once();
        for (auto _ : state)
            once();
        state.counters["rows"] = rows;
    });
}

} // namespace bench

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    bench::table table;
    benchmark::RunSpecifiedBenchmarks(&table);
}
