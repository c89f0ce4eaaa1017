#include "support/Text.h"

#include <cassert>

namespace {

std::size_t characterLength(TextView text, std::size_t at) {
    const bool pair = isHighSurrogate(text[at]) && at + 1 < text.size() && isLowSurrogate(text[at + 1]);
    return pair ? 2 : 1;
}

}  // namespace

EncodedField encodeField(const CodePage& page, TextView text, std::size_t width) {
    EncodedField field;
    field.bytes = page.encode(page.id, text, field.unmappable);
    if (field.bytes.size() > width) {
        // Only now character by character: a cut between two bytes of one character would leave a lead byte
        // that swallows the padding when it is read.
        field.cut = true;
        field.unmappable = false;
        field.bytes.clear();
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t length = characterLength(text, at);
            bool lost = false;
            const std::string one = page.encode(page.id, text.substr(at, length), lost);
            if (field.bytes.size() + one.size() > width) break;
            field.bytes += one;
            field.unmappable = field.unmappable || lost;
            at += length;
        }
    }
    field.bytes.resize(width, ' ');
    return field;
}

Text decodeField(const CodePage& page, std::string_view bytes) {
    bytes = bytes.substr(0, bytes.find('\0'));
    bytes = bytes.substr(0, bytes.find_last_not_of(' ') + 1);
    return bytes.empty() ? Text() : page.decode(page.id, bytes);
}

std::size_t encodedLength(const CodePage& page, TextView text) {
    bool lost = false;
    return page.encode(page.id, text, lost).size();
}

TextView withoutTrailingBlanks(TextView text) {
    return text.substr(0, text.find_last_not_of(u' ') + 1);
}

Text withLineBreaks(TextView text) {
    Text result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t c = text[at];
        if (c != u'\r' && c != u'\n') {
            result += c;
            continue;
        }
        result += u"\r\n";
        if (c == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n') ++at;
    }
    return result;
}

Text replaced(TextView text, TextView what, TextView with) {
    assert(!what.empty());
    Text result;
    std::size_t at = 0;
    for (std::size_t found = text.find(what); found != TextView::npos; found = text.find(what, at)) {
        result += text.substr(at, found - at);
        result += with;
        at = found + what.size();
    }
    result += text.substr(at);
    return result;
}

TextView clipped(TextView text, std::size_t length) {
    if (text.size() <= length) return text;
    if (length > 0 && isHighSurrogate(text[length - 1]) && isLowSurrogate(text[length])) --length;
    return text.substr(0, length);
}
