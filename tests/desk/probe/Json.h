// Writes the probe's answers: one line of JSON in UTF-8. Nothing is parsed here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Builds one JSON value from left to right. The caller keeps keys and values in step; commas are set here.
class Json {
public:
    Json& beginObject() { return open('{'); }
    Json& endObject() { return close('}'); }
    Json& beginArray() { return open('['); }
    Json& endArray() { return close(']'); }
    Json& key(std::string_view name);
    Json& text(std::wstring_view value);  ///< UTF-16; a lone surrogate is written as its \u escape
    Json& number(std::int64_t value);
    Json& truth(bool value);
    Json& null();

    Json& field(std::string_view name, std::wstring_view value) { return key(name).text(value); }
    Json& field(std::string_view name, std::int64_t value) { return key(name).number(value); }
    Json& flag(std::string_view name, bool value) { return key(name).truth(value); }

    [[nodiscard]] const std::string& str() const { return out_; }

private:
    Json& open(char bracket);
    Json& close(char bracket);
    void comma();

    std::string out_;
    bool needComma_ = false;
};

/// UTF-8 to UTF-16 and back. Invalid bytes become U+FFFD.
std::wstring fromUtf8(std::string_view text);
