// Services that do next to nothing, for what a cast costs without them: the walk and the calls. Preloaded,
//
//     LD_PRELOAD=build-bench/libbcast_bench_empty.so build-bench/bcast_bench --benchmark_filter=^date_to_text/.*/cast
//
// they stand before the embedded ones.

#include <services/column.h>
#include <services/temporal.h>

#include <cstring>

void vqdt_date_encode_fast(const vqtime *, vqdt_decoded *) {}

// One store, as the embedded service has it: the cast looks for the NUL.
int32_t vq_date_to_char(const vqdt_decoded *, char *text)
{
    using block [[gnu::vector_size(16)]] = char;
    constexpr block date = {'2', '0', '2', '3', '-', '0', '7', '-', '1', '4'};
    std::memcpy(text, &date, sizeof date);
    return 1;
}

int32_t nblob_assign_const(void *, void *, nstr *, const char *, int32_t) { return 0; }
void bdta3_col_assign_bin(void *, void *, bdta3_col *, int32_t, const void *, int32_t) {}
void nstr_clear(void *, void *, nstr *) {}
void vqtime_glgl_adjust_ignore(vqtime *) {}
int32_t char_to_date_simple_with_alen(const char *, int32_t, void *, uint16_t, vqtime *, int32_t) { return 0; }
