#include "Json.h"

#include <windows.h>

void Json::comma() {
    if (needComma_) out_ += ',';
    needComma_ = true;
}

Json& Json::open(char bracket) {
    comma();
    out_ += bracket;
    needComma_ = false;
    return *this;
}

Json& Json::close(char bracket) {
    out_ += bracket;
    needComma_ = true;
    return *this;
}

Json& Json::key(std::string_view name) {
    comma();
    out_ += '"';
    out_ += name;
    out_ += "\":";
    needComma_ = false;
    return *this;
}

Json& Json::text(std::wstring_view value) {
    static constexpr char kHex[] = "0123456789abcdef";
    comma();
    out_ += '"';
    for (const wchar_t c : value) {
        // Everything but plain ASCII becomes an escape, so that the line survives any console or code page on
        // its way.
        if (c == L'"' || c == L'\\') {
            out_ += '\\';
            out_ += static_cast<char>(c);
        } else if (c >= 0x20 && c < 0x7F) {
            out_ += static_cast<char>(c);
        } else {
            out_ += "\\u";
            for (int shift = 12; shift >= 0; shift -= 4)
                out_ += kHex[(static_cast<unsigned>(c) >> shift) & 0xFU];
        }
    }
    out_ += '"';
    return *this;
}

Json& Json::number(std::int64_t value) {
    comma();
    out_ += std::to_string(value);
    return *this;
}

Json& Json::truth(bool value) {
    comma();
    out_ += value ? "true" : "false";
    return *this;
}

Json& Json::null() {
    comma();
    out_ += "null";
    return *this;
}

std::wstring fromUtf8(std::string_view text) {
    if (text.empty()) return {};
    const int bytes = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), length);
    return wide;
}
