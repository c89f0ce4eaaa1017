#include "support/Number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

constexpr bool isBlank(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

constexpr double kEnoughDigits = 1e17;  // more than a double can tell apart
constexpr int kMostScale = 100000;

/// number * 10^scale, clamped to the range of a double. Written by hand because a library function would
/// follow the locale, or bring in tables larger than the rest of this folder.
double scaledByTen(double number, int scale) {
    if (number == 0) return 0;
    constexpr double kMost = std::numeric_limits<double>::max();
    for (; scale > 0 && number < kMost; --scale)
        number = number > kMost / 10 ? kMost : number * 10;
    for (; scale < 0 && number > 0; ++scale)
        number /= 10;
    return number;
}

template <class Int>
Int saturated(double number) {
    constexpr double low = std::numeric_limits<Int>::min();
    constexpr double high = std::numeric_limits<Int>::max();
    return static_cast<Int>(std::clamp(std::nearbyint(number), low, high));
}

}  // namespace

double leadingNumber(TextView text) {
    std::size_t at = 0;
    const auto peek = [&](std::size_t ahead = 0) {
        return at + ahead < text.size() ? text[at + ahead] : u'\0';
    };
    while (isBlank(peek()))
        ++at;
    const bool negative = peek() == u'-';
    if (negative || peek() == u'+') ++at;

    double digits = 0;
    int scale = 0;  // power of ten that the digits still lack
    bool any = false;
    const auto take = [&](int perDigit) {
        for (; isDigit(peek()); ++at, any = true) {
            if (digits < kEnoughDigits) {
                digits = digits * 10 + (peek() - u'0');
                scale += perDigit;
            } else {
                scale += perDigit + 1;  // too small to matter beside the digits before it
            }
        }
    };
    take(0);
    if (peek() == u'.') {
        ++at;
        take(-1);
    }
    const std::size_t sign = peek(1) == u'+' || peek(1) == u'-' ? 1 : 0;
    if (any && (peek() == u'e' || peek() == u'E') && isDigit(peek(1 + sign))) {
        const bool down = peek(1) == u'-';
        int exponent = 0;
        for (at += 1 + sign; isDigit(peek()); ++at)
            exponent = std::min(exponent * 10 + (peek() - u'0'), kMostScale);
        scale += down ? -exponent : exponent;
    }
    const double size = scaledByTen(digits, scale);
    return negative ? -size : size;
}

std::int16_t leadingInt16(TextView text) {
    return saturated<std::int16_t>(leadingNumber(text));
}

std::int32_t leadingInt32(TextView text) {
    return saturated<std::int32_t>(leadingNumber(text));
}

Text decimal(std::int64_t number) {
    std::array<char, 24> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    return Text(buffer.data(), end);
}

Text twoDigits(std::int64_t number) {
    const Text text = decimal(number);
    return text.size() < 2 ? u"0" + text : text;
}

Text boolText(bool flag) {
    return flag ? u"True" : u"False";
}

bool ParseBool(TextView text) {
    const Text word = lowered(text);
    for (const TextView yes : {u"on", u"true", u"vero", u"yes", u"si", u"s\u00ec"}) {
        if (word == yes) return true;
    }
    for (const TextView no : {u"off", u"false", u"falso", u"no"}) {
        if (word == no) return false;
    }
    // Not rounded: "0.4" is a number other than 0.
    return leadingNumber(word) != 0;
}
