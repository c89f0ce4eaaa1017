// UTF-16 text, and the only conversions between it and the single-byte texts of the data files.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text inside the program: UTF-16 code units, line breaks as CR LF.
using Text = std::u16string;
using TextView = std::u16string_view;

/// A character set of the data files. The functions come from Windows (`systemCodePage`) or from a test.
struct CodePage {
    unsigned id = 0;  ///< Windows code page number, handed back to the functions below
    /// UTF-16 to bytes. Sets `lost` (never clears it) when a character has no counterpart and became "?".
    std::string (*encode)(unsigned id, TextView text, bool& lost) = nullptr;
    /// Bytes to UTF-16; bytes that mean nothing become some replacement character; it never fails.
    Text (*decode)(unsigned id, std::string_view bytes) = nullptr;
};

/// A text as it goes into a field of fixed width.
struct EncodedField {
    std::string bytes;        ///< exactly the field's width, padded with blanks
    bool unmappable = false;  ///< a character is not in the code page and was stored as "?"
    bool cut = false;         ///< the text was longer than the field
};

/// Encodes `text` into a field of `width` bytes, cut at a character boundary and padded with blanks.
EncodedField encodeField(const CodePage& page, TextView text, std::size_t width);

/// Reads a field of fixed width, up to the first zero byte and without trailing blanks.
Text decodeField(const CodePage& page, std::string_view bytes);

/// Bytes that `text` needs in the code page.
std::size_t encodedLength(const CodePage& page, TextView text);

/// The text in small letters, for comparing. The same in every locale, as a Turkish system must still read
/// "SI" as "si"; both small sigmas become one.
Text lowered(TextView text);
/// Whether two names differ in no more than that.
bool isSameName(TextView one, TextView other);

/// The text without blanks at its end.
TextView withoutTrailingBlanks(TextView text);

/// The text with every lone CR or LF turned into CR LF, as an edit control or a drawn label needs it.
Text withLineBreaks(TextView text);

/// The text with every occurrence of `what` replaced by `with`. `what` must not be empty.
Text replaced(TextView text, TextView what, TextView with);

/// The first and the second half of a letter beyond U+FFFF.
constexpr bool isHighSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
constexpr bool isLowSurrogate(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

/// The text cut to at most `length` code units without splitting a surrogate pair.
TextView clipped(TextView text, std::size_t length);
