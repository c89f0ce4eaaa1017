#include "note/NoteBody.h"

#include <algorithm>

namespace {

/// Whether each letter stands alone, beside the one before, in the font itself. Others the editor shapes,
/// orders or takes from another font by rules of its own: it has to draw them.
bool isSimple(const Text& text) {
    constexpr char16_t kSoftHyphen = 0xAD;
    constexpr char16_t kLastLatin = 0x24F;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 2, u"\r\n") == 0) {
            ++i;
            continue;
        }
        const char16_t letter = text[i];
        const bool control = letter < u' ' || (letter > u'~' && letter < 0xA0);
        if (control || letter == kSoftHyphen || letter > kLastLatin) return false;
    }
    return true;
}

/// Where a letter begins in a multi-line editor, pixels.
int leftOf(HWND editor, LRESULT letter) {
    const LRESULT place = SendMessageW(editor, EM_POSFROMCHAR, static_cast<WPARAM>(letter), 0);
    return static_cast<short>(LOWORD(place));
}

/// What a very long text may show of itself, and more, in whole paragraphs: letters at the end of one can
/// decide on the order of those at its beginning.
Text seenOf(const Text& text, const RECT& area) {
    constexpr LONG kAlways = 4096;  // letters
    constexpr LONG kFewest = 16;    // square pixels of a letter
    const LONG most = std::max((area.right - area.left) * (area.bottom - area.top) / kFewest, kAlways);
    return text.substr(0, text.find(u"\r\n", static_cast<std::size_t>(most)));
}

}  // namespace

void NoteBody::breakLines(HWND editor, std::size_t letters, LONG room) {
    lines_.clear();
    advances_.assign(letters, 0);
    int before = 0;
    const auto count = std::min<LRESULT>(SendMessageW(editor, EM_GETLINECOUNT, 0, 0), room);
    for (LRESULT line = 0; line < count; ++line) {
        const LRESULT start = SendMessageW(editor, EM_LINEINDEX, static_cast<WPARAM>(line), 0);
        const LRESULT length = SendMessageW(editor, EM_LINELENGTH, static_cast<WPARAM>(start), 0);
        lines_.push_back({static_cast<int>(start), static_cast<int>(length)});
        for (LRESULT letter = start; letter < start + length; ++letter) {
            const int left = leftOf(editor, letter);
            if (letter > start) advances_[static_cast<std::size_t>(letter - 1)] = left - before;
            before = left;
        }
    }
}

void NoteBody::draw(HDC dc, HWND editor, const Text& text, const NoteLook& look) {
    RECT area{};
    SendMessageW(editor, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
    const LONG width = area.right - area.left;
    const LONG height = area.bottom - area.top;
    const int lineHeight = look.bodyHeight;
    const bool same = broken_ && width == width_ && height <= height_;
    if (!same || !simple_) {
        const Text seen = seenOf(text, area);
        simple_ = isSimple(seen);
        SetWindowTextW(editor, wide(seen));
        if (simple_) {
            breakLines(editor, seen.size(), height / lineHeight + 1);
        } else {
            SendMessageW(editor, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
        }
        SetWindowTextW(editor, L"");  // fifty laid out bodies would take megabytes
        width_ = width;
        height_ = height;
        broken_ = true;
    }
    if (!simple_) return;
    const Selected font(dc, look.body.get());
    LONG top = area.top;
    for (const BodyLine& line : lines_) {
        if (top >= area.bottom) break;
        ExtTextOutW(dc, area.left, top, ETO_CLIPPED, &area, wideData(text) + line.start,
                    static_cast<UINT>(line.length), advances_.data() + line.start);
        top += lineHeight;
    }
}
