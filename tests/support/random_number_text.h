// Texts of numbers, most of them well-formed: signs, blanks, points and exponents where they may stand, numbers near
// the limits of int64, now and then a foreign byte.
#pragma once

#include <cstddef>
#include <random>
#include <string>

namespace bcast::test {

struct random_number_text {
    std::mt19937_64 random{20240702};
    size_t exponent_max = 44;
    size_t long_digits_max = 60;

    size_t below(size_t n) { return random() % n; }
    bool one_in(size_t n) { return below(n) == 0; }

    std::string digits(size_t most)
    {
        std::string text;
        for (size_t n = below(most + 1); n > 0; n--)
            text += one_in(4) ? '0' : one_in(4) ? '9' : static_cast<char>('0' + below(10));
        return text;
    }

    // Digits that lie near a limit of int64, or anywhere.
    std::string number()
    {
        if (!one_in(4))
            return digits(one_in(10) ? long_digits_max : 20);
        std::string text = one_in(2) ? "9223372036854775807" : "9223372036854775808";
        if (one_in(2))
            text[below(text.size())] = static_cast<char>('0' + below(10));
        return text;
    }

    std::string operator()()
    {
        std::string text;
        if (one_in(6))
            text += std::string(below(4), " \t\n\v\f\r"[below(6)]);
        if (one_in(3))
            text += one_in(2) ? '-' : '+';
        std::string whole = number();
        if (one_in(3))
            whole.insert(whole.begin() + static_cast<std::ptrdiff_t>(below(whole.size() + 1)), '.');
        text += whole;
        if (one_in(3)) {
            text += one_in(2) ? 'e' : 'E';
            if (one_in(2))
                text += one_in(2) ? '-' : '+';
            text += one_in(10) ? digits(25) : std::to_string(below(exponent_max + 1));
        }
        if (one_in(6))
            text += std::string(below(4), " \t\n\v\f\r"[below(6)]);
        if (one_in(8) && !text.empty())
            text[below(text.size())] = one_in(2) ? "0123456789+-.eE xX/:"[below(20)] : static_cast<char>(below(256));
        return text;
    }
};

} // namespace bcast::test
