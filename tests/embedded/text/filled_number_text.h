// Texts of numbers that fill a width: blanks and zeros at either end, as many as pass the blocks that a parser takes
// them in, around numbers that each of its readers takes or refuses.
#pragma once

#include "tests/support/random_number_text.h"

#include <string>
#include <vector>

namespace bcast::test {

// Each count of blanks and zeros up to 330, around a few numbers.
inline std::vector<std::string> filled_number_texts()
{
    const std::vector<std::string> numbers = {"",
                                              "7",
                                              "50",
                                              "12.5",
                                              ".25",
                                              "3.",
                                              ".",
                                              "1234567890123456",
                                              "12345678.12345678",
                                              "9007199254740993",
                                              "12345678901234567",
                                              "9223372036854775807",
                                              "9223372036854775808",
                                              "123456789012345678.5",
                                              "12345678901234567890.123456789012",
                                              "1.5e3",
                                              "15e-1",
                                              "12.50E+0020",
                                              "1e-18",
                                              "5e-00001",
                                              "99999999999999999999e-2",
                                              "e5",
                                              "-4",
                                              "1x"};
    std::vector<std::string> texts;
    for (size_t count = 0; count <= 330; count++) {
        const std::string blanks(count, ' '), zeros(count, '0'), tab = count > 0 ? "\t" : "";
        const std::string &number = numbers[count % numbers.size()];
        for (const std::string sign : {"", "-", "+"}) {
            for (const std::string &some : {number, numbers[(count / 7) % numbers.size()], std::string("8.5")}) {
                for (const std::string &text :
                     {blanks + sign + some, sign + some + blanks, sign + zeros + some, sign + some + zeros,
                      tab + blanks + sign + zeros + some + blanks + tab, sign + zeros + "." + zeros + some,
                      sign + some + "." + zeros, sign + some + "e" + zeros + "1", sign + some + "e-" + zeros + "2"})
                    texts.push_back(text);
            }
        }
    }
    return texts;
}

// Every part may be there or not, and long.
struct random_filled_text : random_number_text {
    size_t count() { return one_in(2) ? 0 : one_in(6) ? below(60) : below(20); }

    std::string blanks()
    {
        std::string text(count(), ' ');
        if (!text.empty() && one_in(4))
            text[below(text.size())] = "\t\n\v\f\r"[below(5)];
        return text;
    }

    std::string zeros() { return std::string(count(), '0'); }

    std::string operator()()
    {
        std::string text = blanks();
        if (one_in(2))
            text += one_in(2) ? '-' : '+';
        text += zeros() + digits(one_in(3) ? 40 : 18);
        if (one_in(2))
            text += '.' + zeros() + digits(one_in(3) ? 40 : 10) + zeros();
        if (one_in(4)) {
            text += one_in(2) ? 'e' : 'E';
            if (one_in(2))
                text += one_in(2) ? '-' : '+';
            text += (one_in(4) ? zeros() : "") + std::to_string(below(one_in(4) ? 12000 : 40));
        }
        text += blanks();
        if (one_in(12) && !text.empty())
            text[below(text.size())] = one_in(2) ? "0123456789+-.eE xX/:"[below(20)] : static_cast<char>(below(256));
        return text;
    }
};

} // namespace bcast::test
