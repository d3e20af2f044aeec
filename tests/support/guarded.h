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

// Writable bytes between two inaccessible pages. Few pages are kept for the next array of the thread, since to map and
// unmap them costs more than what most tests do with an array.
class guarded_pages {
public:
    explicit guarded_pages(std::size_t bytes)
        : page_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
          body_size_(std::max<std::size_t>(1, (bytes + page_ - 1) / page_) * page_)
    {
        if (shelf *kept = own_shelf(); kept && kept->count > 0)
            map_ = kept->maps[--kept->count];
        else
            map_ = new_map();
    }
    ~guarded_pages()
    {
        shelf *kept = own_shelf();
        if (kept && kept->count < std::size(kept->maps) && (!read_only_ || protect(PROT_READ | PROT_WRITE)))
            kept->maps[kept->count++] = map_;
        else
            munmap(map_, body_size_ + 2 * page_);
    }
    guarded_pages(const guarded_pages &) = delete;
    guarded_pages &operator=(const guarded_pages &) = delete;

    unsigned char *body() const { return static_cast<unsigned char *>(map_) + page_; }
    std::size_t size() const { return body_size_; }
    void make_read_only() { read_only_ = protect(PROT_READ); }

private:
    struct shelf {
        void *maps[64];
        std::size_t count;
    };

    // By number of pages. Without a destructor, for there are arrays that stay for the whole run.
    shelf *own_shelf() const
    {
        static thread_local shelf shelves[32] = {};
        const std::size_t pages = body_size_ / page_;
        return pages < std::size(shelves) ? &shelves[pages] : nullptr;
    }

    void *new_map() const
    {
        void *map = mmap(nullptr, body_size_ + 2 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (map == MAP_FAILED)
            throw std::bad_alloc();
        if (mprotect(static_cast<unsigned char *>(map) + page_, body_size_, PROT_READ | PROT_WRITE) != 0) {
            munmap(map, body_size_ + 2 * page_);
            throw std::bad_alloc();
        }
        return map;
    }
    bool protect(int protection) const { return mprotect(body(), body_size_, protection) == 0; }

    std::size_t page_;
    std::size_t body_size_;
    void *map_;
    bool read_only_ = false;
};

// Which edge of the array touches an inaccessible page. The other edge is less
// than a page away from one; what lies between is filled with guard_fill.
enum class guard_edge { end, start };

inline constexpr unsigned char guard_fill = 0xA5;

template <typename T> class guarded {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    // count elements, every byte of them guard_fill.
    explicit guarded(std::size_t count, guard_edge edge = guard_edge::end) : count_(count), pages_(count * sizeof(T))
    {
        std::memset(pages_.body(), guard_fill, pages_.size());
        data_ = reinterpret_cast<T *>(edge == guard_edge::end ? pages_.body() + pages_.size() - count * sizeof(T)
                                                              : pages_.body());
    }

    // A copy of what is there.
    explicit guarded(std::span<const T> from, guard_edge edge = guard_edge::end) : guarded(from.size(), edge)
    {
        std::copy(from.begin(), from.end(), data_);
    }

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
    void make_read_only() { pages_.make_read_only(); }

    // True while nobody has written between the array and the far inaccessible page.
    bool slack_untouched() const
    {
        const auto *first = reinterpret_cast<const unsigned char *>(data_);
        const auto *last = first + count_ * sizeof(T);
        const auto is_fill = [](unsigned char byte) { return byte == guard_fill; };
        return std::all_of(static_cast<const unsigned char *>(pages_.body()), first, is_fill) &&
               std::all_of(last, static_cast<const unsigned char *>(pages_.body() + pages_.size()), is_fill);
    }

private:
    std::size_t count_;
    guarded_pages pages_;
    T *data_;
};
