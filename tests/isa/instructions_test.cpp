// The libraries that are built for one level of the instruction set, disassembled: no instruction is above the level.

#include "tests/abi/command_output.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bcast::test {
namespace {

struct instruction {
    std::string_view mnemonic; // without prefixes
    std::string_view operands;
};

// Of a line of the disassembly, "  3b0f:\trep stos %rax,%es:(%rdi)"; without mnemonic where the line is none.
instruction parse(std::string_view line)
{
    constexpr std::string_view prefixes[] = {"lock",   "rep", "repz", "repnz", "bnd", "notrack", "data16",
                                             "addr32", "cs",  "ds",   "es",    "fs",  "gs",      "ss"};
    const size_t tab = line.find('\t');
    if (!line.starts_with(' ') || tab == std::string_view::npos)
        return {};
    std::string_view rest = line.substr(tab + 1);
    for (;;) {
        const size_t end = std::min(rest.find(' '), rest.size());
        const std::string_view word = rest.substr(0, end);
        rest.remove_prefix(std::min(rest.find_first_not_of(' ', end), rest.size()));
        if (rest.empty() || (std::ranges::find(prefixes, word) == std::end(prefixes) && !word.starts_with("rex.")))
            return {word, rest};
    }
}

bool starts_with_any(std::string_view text, std::span<const std::string_view> beginnings)
{
    return std::ranges::any_of(beginnings, [&](std::string_view part) { return text.starts_with(part); });
}

bool has_any(std::string_view text, std::span<const std::string_view> parts)
{
    return std::ranges::any_of(parts, [&](std::string_view part) { return text.find(part) != std::string_view::npos; });
}

// What x86-64-v2 and later added. tzcnt is not among it: older machines read it as bsf, and compilers use it as that.
bool is_above_baseline(const instruction &one)
{
    constexpr std::string_view families[] = {
        "addsub",  "hadd",     "hsub",     "lddqu",    "movddup",  "movshdup", "movsldup",           // SSE3
        "pabs",    "palignr",  "phadd",    "phsub",    "pmaddubs", "pmulhrsw", "pshufb",   "psign",  // SSSE3
        "blend",   "dpp",      "extractp", "insertps", "movntdqa", "mpsadbw",  "packusdw", "pblend", // SSE4.1
        "pcmpeqq", "pextrb",   "pextrd",   "pextrq",   "phminpos", "pinsrb",   "pinsrd",   "pinsrq", //
        "pmaxsb",  "pmaxsd",   "pmaxud",   "pmaxuw",   "pminsb",   "pminsd",   "pminud",   "pminuw", //
        "pmovsx",  "pmovzx",   "pmuldq",   "pmulld",   "ptest",    "round",                          //
        "crc32",   "pcmpestr", "pcmpgtq",  "pcmpistr",                                               // SSE4.2
        "k",       "v",                                                                              // AVX and on
    };
    constexpr std::string_view names[] = {"cmpxchg16b", "lahf", "popcnt", "sahf",  "andn", "bextr", "blsi",
                                          "blsmsk",     "blsr", "bzhi",   "lzcnt", "mulx", "movbe", "pdep",
                                          "pext",       "rorx", "sarx",   "shlx",  "shrx"};
    constexpr std::string_view wide_registers[] = {"%ymm", "%zmm"};
    constexpr std::string_view older[] = {"verr", "verw"};
    const auto is_among = [&](std::span<const std::string_view> list) {
        return std::ranges::find(list, one.mnemonic) != list.end();
    };
    return !is_among(older) &&
           (is_among(names) || starts_with_any(one.mnemonic, families) || has_any(one.operands, wide_registers));
}

// AVX-512: wide registers, masks, and the vector registers from 16 on.
bool is_above_v3(const instruction &one)
{
    constexpr std::string_view registers[] = {"%zmm", "%k",   "mm16", "mm17", "mm18", "mm19", "mm20", "mm21", "mm22",
                                              "mm23", "mm24", "mm25", "mm26", "mm27", "mm28", "mm29", "mm30", "mm31"};
    return has_any(one.operands, registers);
}

// A multiplication and an addition that are rounded once.
bool is_fused(const instruction &one)
{
    constexpr std::string_view names[] = {"vfmadd", "vfmsub", "vfnmadd", "vfnmsub"};
    return starts_with_any(one.mnemonic, names);
}

struct disassembly {
    size_t instructions = 0;
    std::vector<std::string> found; // the lines, each behind its function
};

disassembly search(const std::string &level, const std::string &library, bool (*is_meant)(const instruction &))
{
    std::istringstream lines = output_of(BCAST_OBJDUMP " --disassemble --no-show-raw-insn '" BCAST_LEVELS_FOLDER "/" +
                                         level + "/" + library + "'");
    disassembly all;
    std::string function;
    for (std::string line; std::getline(lines, line);) {
        if (line.ends_with(">:"))
            function = line.substr(line.find('<'));
        const instruction one = parse(line);
        all.instructions += !one.mnemonic.empty();
        if (is_meant(one))
            all.found.push_back(function + line);
    }
    return all;
}

std::string beginning_of(const disassembly &all)
{
    std::string text =
        std::to_string(all.found.size()) + " of " + std::to_string(all.instructions) + " instructions:\n";
    for (size_t i = 0; i < std::min<size_t>(all.found.size(), 20); i++)
        text += all.found[i] + '\n';
    return text;
}

class instructions : public testing::TestWithParam<const char *> {
protected:
    void expect_none(const std::string &level, bool (*is_meant)(const instruction &))
    {
        const disassembly all = search(level, GetParam(), is_meant);
        EXPECT_GT(all.instructions, 10000U) << "that is not the whole of " << GetParam();
        EXPECT_TRUE(all.found.empty()) << GetParam() << " for " << level << " has " << beginning_of(all);
    }
    // So that the search is known to find what there is.
    void expect_some(const std::string &level, bool (*is_meant)(const instruction &))
    {
        EXPECT_FALSE(search(level, GetParam(), is_meant).found.empty()) << GetParam() << " for " << level;
    }
};

INSTANTIATE_TEST_SUITE_P(of, instructions, testing::Values("libbcast.so", "libbcast_embedded.so"),
                         [](const auto &each) {
                             return std::string(each.param).substr(0, std::string(each.param).find('.'));
                         });

TEST_P(instructions, of_the_baseline_are_those_of_any_x86_64)
{
    expect_none("baseline", is_above_baseline);
    expect_some("x86-64-v3", is_above_baseline);
}

TEST_P(instructions, of_v3_are_not_those_of_v4)
{
    expect_none("x86-64-v3", is_above_v3);
    expect_some("x86-64-v4", is_above_v3);
}

TEST_P(instructions, of_every_level_round_each_operation_by_itself)
{
    expect_none("x86-64-v3", is_fused);
    expect_none("x86-64-v4", is_fused);
}

TEST(instruction, is_told_by_its_name_and_registers)
{
    const auto above_baseline = [](const char *text) {
        return is_above_baseline(parse(std::string("  1f:\t") + text));
    };
    for (const char *text : {"vpaddd %xmm0,%xmm1,%xmm2", "paddd  %ymm0,%ymm1", "bzhi   %eax,(%rdi),%ecx",
                             "shlx   %eax,%ecx,%edx", "kmovd  %eax,%k1", "pshufb %xmm0,%xmm1", "popcnt %rax,%rax",
                             "lock cmpxchg16b (%rdi)", "blsr   %rax,%rax", "pmulld %xmm0,%xmm1", "lzcnt  %rax,%rax"})
        EXPECT_TRUE(above_baseline(text)) << text;
    for (const char *text :
         {"paddd  %xmm0,%xmm1", "rep stos %rax,%es:(%rdi)", "tzcnt  %rax,%rax", "ret", "cs nopw 0x0(%rax,%rax,1)",
          "lock cmpxchg %rcx,(%rdi)", "pminub %xmm0,%xmm1", "cvtdq2pd %xmm0,%xmm0", "bswap  %eax",
          "pextrw $0x0,%xmm3,%eax", "andnps %xmm0,%xmm1", "pandn  %xmm0,%xmm1"})
        EXPECT_FALSE(above_baseline(text)) << text;

    for (const char *text : {"vpaddd %zmm0,%zmm1,%zmm2", "vmovdqu8 (%rsi),%ymm0{%k1}{z}", "vpaddd %xmm16,%xmm1,%xmm2",
                             "vmovdqa %ymm31,%ymm0", "kortestd %k0,%k0"})
        EXPECT_TRUE(is_above_v3(parse(std::string("  1f:\t") + text))) << text;
    EXPECT_FALSE(is_above_v3(parse("  1f:\tvpaddd %ymm0,%ymm15,%ymm2")));
    EXPECT_TRUE(is_fused(parse("  1f:\tvfmadd132sd 0x0(%rip),%xmm1,%xmm0")));
}

} // namespace
} // namespace bcast::test
