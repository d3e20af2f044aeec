#include "bench/bench.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <numeric>

namespace bench {

const char *name_of(selection sel)
{
    switch (sel) {
    case selection::none:
        return "none";
    case selection::sorted_half:
        return "sorted";
    case selection::clustered_half:
        return "clustered";
    case selection::random_half:
        return "random";
    case selection::random_repeats:
        return "repeats";
    case selection::reversed:
        return "reversed";
    }
    return "";
}

std::string series::name(const char *variant) const
{
    return what + "/rows:" + std::to_string(batch_rows) + "/nulls:" + std::to_string(null_percent) +
           (unfit_nulls ? "u" : "") + "/sel:" + name_of(sel) + (growth.empty() ? "" : "/growth:" + growth) + "/" +
           variant;
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

// Orders the numbers of a batch's rows so that the first ones are the selected.
static void select(selection sel, std::vector<uint16_t> &numbers, std::mt19937 &random)
{
    const auto half = numbers.begin() + ptrdiff_t(numbers.size() / 2);
    switch (sel) {
    case selection::none:
        return;
    case selection::sorted_half:
        std::shuffle(numbers.begin(), numbers.end(), random);
        std::sort(numbers.begin(), half);
        return;
    case selection::clustered_half:
        std::stable_partition(numbers.begin(), numbers.end(), [](uint16_t r) { return r / 64 % 2 == 0; });
        return;
    case selection::random_half:
        std::shuffle(numbers.begin(), numbers.end(), random);
        return;
    case selection::random_repeats:
        for (uint16_t &number : numbers)
            number = uint16_t(random() % numbers.size());
        return;
    case selection::reversed:
        std::reverse(numbers.begin(), numbers.end());
    }
}

std::vector<uint16_t> make_selection(const series &s)
{
    std::mt19937 random(2);
    std::vector<uint16_t> all;
    std::vector<uint16_t> numbers(s.batch_rows);
    for (uint32_t batch = 0; s.sel != selection::none && batch < s.batches(); batch++) {
        std::iota(numbers.begin(), numbers.end(), uint16_t(0));
        select(s.sel, numbers, random);
        all.insert(all.end(), numbers.begin(), numbers.begin() + s.rows());
    }
    return all;
}

std::map<std::string, series> &all_added()
{
    static std::map<std::string, series> added;
    return added;
}

void add(const series &s, const char *variant, std::function<pass()> make, uint32_t times)
{
    const double rows = double(s.rows()) * s.batches() * times;
    const std::string name = s.name(variant);
    if (!all_added().emplace(name, s).second) {
        std::fprintf(stderr, "bcast_bench: two benchmarks have the name %s\n", name.c_str());
        std::exit(2);
    }
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State &state) {
        static std::pair<std::string, pass> made; // a pool serves all repetitions, which follow one another
        if (made.first != name) {
            made = {};
            made = {name, make()};
            made.second();
        }
        for (auto _ : state)
            made.second();
        state.counters["rows"] = rows;
    });
}

static std::map<std::string, text_values> &all_offered()
{
    static std::map<std::string, text_values> offered;
    return offered;
}

void offer_values(const std::string &what, text_values make) { all_offered().emplace(what, std::move(make)); }

const text_values *offered_values(const std::string &what)
{
    const auto found = all_offered().find(what);
    return found == all_offered().end() ? nullptr : &found->second;
}

} // namespace bench
