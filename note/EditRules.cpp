#include "note/EditRules.h"

#include <algorithm>
#include <utility>

namespace {

enum class Kind : unsigned char { Blank, Break, Sign, Letter };

Kind kindOf(char16_t c) {
    constexpr char16_t kNoBreakSpace = 0xA0;
    constexpr char16_t kWideSpace = 0x3000;
    if (c == u'\r' || c == u'\n') return Kind::Break;
    if (c == u' ' || c == u'\t' || c == kNoBreakSpace || c == kWideSpace) return Kind::Blank;
    constexpr TextView kSigns = u"!\"#$%&'()*+,-./:;<=>?@[\\]^`{|}~";
    return kSigns.find(c) != TextView::npos ? Kind::Sign : Kind::Letter;
}

/// Whether a text may be cut before its unit `at`, which is 0 or one of its units.
bool isBoundary(TextView text, std::size_t at) {
    if (at == 0) return true;
    const bool pair = isHighSurrogate(text[at - 1]) && isLowSurrogate(text[at]);
    return !pair && !(text[at - 1] == u'\r' && text[at] == u'\n');
}

}  // namespace

Text withInserted(TextView text, TextRange selected, TextView inserted) {
    Text whole(text.substr(0, selected.from));
    whole += inserted;
    whole += text.substr(std::min(selected.to, text.size()));
    return whole;
}

TextView fittingPart(TextView text, TextRange selected, TextView inserted, const FitsStore& fits) {
    const auto holds = [&](std::size_t length) {
        return fits(withInserted(text, selected, inserted.substr(0, length)));
    };
    if (holds(inserted.size())) return inserted;
    std::size_t most = 0;  // fits, or nothing at all
    std::size_t least = inserted.size();
    while (least - most > 1) {
        const std::size_t middle = most + (least - most) / 2;
        (holds(middle) ? most : least) = middle;
    }
    while (!isBoundary(inserted, most))
        --most;
    return inserted.substr(0, most);
}

Text pastedText(TextView clipboard, bool oneLine) {
    const TextView text = clipboard.substr(0, clipboard.find(u'\0'));
    if (oneLine) return Text(text.substr(0, text.find_first_of(u"\r\n")));
    return withLineBreaks(text);
}

std::size_t wordStart(TextView text, std::size_t caret) {
    std::size_t at = std::min(caret, text.size());
    while (at > 0 && kindOf(text[at - 1]) == Kind::Blank)
        --at;
    if (at == 0) return 0;
    const Kind kind = kindOf(text[at - 1]);
    if (kind == Kind::Break) {
        if (at < caret) return at;  // only the blanks at the beginning of a line
        --at;
        return isBoundary(text, at) ? at : at - 1;
    }
    while (at > 0 && kindOf(text[at - 1]) == kind)
        --at;
    return at;
}

bool standsAt(TextView text, TextRange selected, TextView words) {
    const std::size_t before = selected.to - std::min(selected.to, words.size());
    const auto standsFrom = [&](std::size_t at) {
        return at <= text.size() && text.substr(at).starts_with(words);
    };
    return standsFrom(selected.from) || standsFrom(before);
}

Text TypedText::next(char16_t character) {
    const char16_t before = std::exchange(before_, character);
    if (isHighSurrogate(character)) return {};
    if (isLowSurrogate(character)) return isHighSurrogate(before) ? Text{before, character} : Text();
    if (character == u'\r') return u"\r\n";
    if (character == u'\n') return before == u'\r' ? Text() : Text(u"\r\n");
    return Text(1, character);
}

int WheelLines::turned(int delta, int perNotch) {
    constexpr int kNotch = 120;
    if (delta * rest_ < 0) rest_ = 0;  // the direction has changed
    const int units = rest_ + delta * perNotch;
    const int lines = units / kNotch;
    rest_ = units - lines * kNotch;
    return -lines;
}

int scrolledTo(int first, int lines, int allLines, int linesOnPage) {
    const int last = std::max(0, allLines - std::max(1, linesOnPage));
    return std::clamp(first + lines, 0, std::max(last, first));  // what is already scrolled too far stays
}
