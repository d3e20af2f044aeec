// Arrays beside pages that may not be touched: a read or write past the guarded
// edge ends the test with a fault at the very access.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <span>
#include <type_traits>

#include <sys/mman.h>
#include <unistd.h>

// Which edge of the array touches an inaccessible page. The other edge is less
// than a page away from one; what lies between is filled with guard_fill.
enum class guard_edge { end, start };

inline constexpr unsigned char guard_fill = 0xA5;

template <typename T> class guarded {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    // count elements, every byte of them guard_fill.
    explicit guarded(std::size_t count, guard_edge edge = guard_edge::end) : count_(count)
    {
        const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const std::size_t bytes = count * sizeof(T);
        body_size_ = std::max<std::size_t>(1, (bytes + page - 1) / page) * page;
        map_size_ = body_size_ + 2 * page;
        void *map = mmap(nullptr, map_size_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (map == MAP_FAILED)
            throw std::bad_alloc();
        map_ = static_cast<unsigned char *>(map);
        body_ = map_ + page;
        if (mprotect(body_, body_size_, PROT_READ | PROT_WRITE) != 0) {
            munmap(map_, map_size_);
            throw std::bad_alloc();
        }
        std::memset(body_, guard_fill, body_size_);
        data_ = reinterpret_cast<T *>(edge == guard_edge::end ? body_ + body_size_ - bytes : body_);
    }

    // A copy of what is there.
    explicit guarded(std::span<const T> from, guard_edge edge = guard_edge::end) : guarded(from.size(), edge)
    {
        std::copy(from.begin(), from.end(), data_);
    }

    ~guarded() { munmap(map_, map_size_); }
    guarded(const guarded &) = delete;
    guarded &operator=(const guarded &) = delete;

    T *data() { return data_; }
    const T *data() const { return data_; }
    std::size_t size() const { return count_; }
    T *begin() { return data_; }
    T *end() { return data_ + count_; }
    const T *begin() const { return data_; }
    const T *end() const { return data_ + count_; }
    T &operator[](std::size_t i) { return data_[i]; }
    const T &operator[](std::size_t i) const { return data_[i]; }

    // From here on a write to the array faults as well.
    void make_read_only() { mprotect(body_, body_size_, PROT_READ); }

    // True while nobody has written between the array and the far inaccessible page.
    bool slack_untouched() const
    {
        const auto *first = reinterpret_cast<const unsigned char *>(data_);
        const auto *last = first + count_ * sizeof(T);
        const auto is_fill = [](unsigned char byte) { return byte == guard_fill; };
        return std::all_of(static_cast<const unsigned char *>(body_), first, is_fill) &&
               std::all_of(last, static_cast<const unsigned char *>(body_ + body_size_), is_fill);
    }

private:
    std::size_t count_;
    std::size_t body_size_;
    std::size_t map_size_;
    unsigned char *map_;
    unsigned char *body_;
    T *data_;
};
