// Code pages for tests on any system: a single-byte one, a double-byte one and UTF-8.
#pragma once

#include <array>
#include <cstdint>

#include "support/Text.h"

namespace testing_pages {

inline constexpr std::array<char16_t, 32> kWestern80{
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

inline char byteOf(unsigned value) {
    return static_cast<char>(static_cast<unsigned char>(value));
}
inline unsigned valueOf(char byte) {
    return static_cast<unsigned char>(byte);
}

inline std::string encodeWestern(unsigned, TextView text, bool& lost) {
    std::string bytes;
    for (const char16_t c : text) {
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            bytes += byteOf(c);
            continue;
        }
        unsigned found = 0;
        for (unsigned i = 0; i < kWestern80.size(); ++i) {
            if (kWestern80[i] == c && c != 0xFFFD) found = 0x80 + i;
        }
        lost = lost || found == 0;
        bytes += found == 0 ? '?' : byteOf(found);
    }
    return bytes;
}

inline Text decodeWestern(unsigned, std::string_view bytes) {
    Text text;
    for (const char byte : bytes) {
        const unsigned value = valueOf(byte);
        text += value >= 0x80 && value < 0xA0 ? kWestern80[value - 0x80] : static_cast<char16_t>(value);
    }
    return text;
}

// An invented double-byte page: kana are a lead byte (hex 81 or 82) and a trail byte (hex 40 to BF).
inline std::string encodeKana(unsigned, TextView text, bool& lost) {
    std::string bytes;
    for (const char16_t c : text) {
        if (c < 0x80) {
            bytes += byteOf(c);
        } else if (c >= 0x3000 && c < 0x3100) {
            bytes += byteOf(0x81U + (c - 0x3000U) / 128);
            bytes += byteOf(0x40U + c % 128U);
        } else {
            lost = true;
            bytes += '?';
        }
    }
    return bytes;
}

inline Text decodeKana(unsigned, std::string_view bytes) {
    Text text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const unsigned lead = valueOf(bytes[i]);
        if (lead < 0x80) {
            text += static_cast<char16_t>(lead);
            continue;
        }
        const bool pair = (lead == 0x81 || lead == 0x82) && i + 1 < bytes.size();
        // A stray lead byte swallows the byte after it, as in real double-byte pages.
        const unsigned trail = pair ? valueOf(bytes[++i]) : 0;
        const bool valid = trail >= 0x40 && trail < 0xC0;
        text += valid ? static_cast<char16_t>(0x3000 + (lead - 0x81) * 128 + (trail - 0x40)) : u'\xFFFD';
    }
    return text;
}

inline std::string encodeUtf8(unsigned, TextView text, bool& lost) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        const bool high = c >= 0xD800 && c <= 0xDBFF;
        const bool pair = high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
        if (pair) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00U);
        } else if (c >= 0xD800 && c <= 0xDFFF) {
            lost = true;
            c = 0xFFFD;
        }
        const auto tail = [&](unsigned shift) { bytes += byteOf(0x80U | ((c >> shift) & 0x3FU)); };
        if (c < 0x80) {
            bytes += byteOf(c);
        } else if (c < 0x800) {
            bytes += byteOf(0xC0U | (c >> 6));
            tail(0);
        } else if (c < 0x10000) {
            bytes += byteOf(0xE0U | (c >> 12));
            tail(6);
            tail(0);
        } else {
            bytes += byteOf(0xF0U | (c >> 18));
            tail(12);
            tail(6);
            tail(0);
        }
    }
    return bytes;
}

inline Text decodeUtf8(unsigned, std::string_view bytes) {
    Text text;
    for (std::size_t i = 0; i < bytes.size();) {
        const unsigned lead = valueOf(bytes[i]);
        const std::size_t length = lead < 0x80    ? 1
                                   : lead >= 0xF0 ? 4
                                   : lead >= 0xE0 ? 3
                                   : lead >= 0xC0 ? 2
                                                  : 0;
        if (length == 0 || i + length > bytes.size()) {
            text += u'\xFFFD';
            ++i;
            continue;
        }
        char32_t c = length == 1 ? lead : lead & (0x7FU >> length);
        for (std::size_t k = 1; k < length; ++k)
            c = (c << 6) | (valueOf(bytes[i + k]) & 0x3FU);
        i += length;
        if (c < 0x10000) {
            text += static_cast<char16_t>(c);
        } else {
            text += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
        }
    }
    return text;
}

}  // namespace testing_pages

inline CodePage westernPage() {
    return {1252, testing_pages::encodeWestern, testing_pages::decodeWestern};
}
inline CodePage kanaPage() {
    return {932, testing_pages::encodeKana, testing_pages::decodeKana};
}
inline CodePage utf8Page() {
    return {65001, testing_pages::encodeUtf8, testing_pages::decodeUtf8};
}
