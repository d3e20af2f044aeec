// Casts a varchar column to int, prints the values, and then the rows that failed.
#include <bcast/bcast.h>
#include <bcast/embedded.hpp>

#include <iostream>
#include <string>

namespace {

template <typename T> std::string shown(const std::optional<T> &value)
{
    if constexpr (std::is_integral_v<T>)
        return value ? std::to_string(*value) : "null";
    else
        return value ? '"' + std::string(*value) + '"' : "null";
}

} // namespace

int main()
{
    bcast::column src(BCAST_VARCHAR);
    for (const char *text : {"42", "twelve", "", "-7.5", "99999999999", " 1e6 "})
        src.append(text);
    src.append(std::nullopt);

    bcast::column dst(BCAST_INT);
    dst.make_room(src.rows());
    bcast::pool pool;
    bcast::failures failures;
    const auto rows = static_cast<std::uint16_t>(src.rows());
    const std::int32_t status = bcast_varchar_to_int(nullptr, pool.heap(), src.vector(), dst.vector(), rows,
                                                     failures.codes(), failures.count());

    for (std::uint32_t row = 0; row < rows; row++) {
        if (failures.codes()[row] == 0)
            std::cout << shown(src.text(row)) << " is " << shown(dst.int64(row)) << '\n';
    }
    if (status < 0)
        std::cout << *failures.count() << " rows failed, the last with " << bcast_code_name(status) << '\n';
    for (auto row = failures.next(0, rows); row < rows; row = failures.next(row + 1, rows))
        std::cout << "row " << row << ", " << shown(src.text(row)) << ": " << bcast_code_text(failures.codes()[row])
                  << '\n';
}
