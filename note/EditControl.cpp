#include "note/EditControl.h"

#include <algorithm>

#include "resources/resource.h"
#include "support/Handles.h"

HWND createEditor(HWND note, bool body, const Text& text, const PxRect& at, HFONT font) {
    const DWORD style = body ? ES_MULTILINE | ES_AUTOVSCROLL : ES_AUTOHSCROLL;
    const INT_PTR id = body ? ID_TXTNOTA : ID_TXTTITLE;
    const HWND editor = CreateWindowExW(0, L"EDIT", wide(text), WS_CHILD | WS_CLIPSIBLINGS | style, at.left,
                                        at.top, at.width(), at.height(), note, reinterpret_cast<HMENU>(id),
                                        GetModuleHandleW(nullptr), nullptr);
    if (editor == nullptr) return nullptr;
    SendMessageW(editor, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    SendMessageW(editor, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
    SendMessageW(editor, EM_SETLIMITTEXT, 0, 0);  // no limit of the control's own, as only the store's counts
    return editor;
}

Text clipboardText(HWND owner) {
    if (OpenClipboard(owner) == FALSE) return {};
    Text text;
    // Formatted text, for example from a web page, is there as plain text, too.
    if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
        if (const auto* const units = static_cast<const char16_t*>(GlobalLock(data))) {
            text.assign(units, GlobalSize(data) / sizeof(char16_t));
            GlobalUnlock(data);
        }
    }
    CloseClipboard();
    return text;
}

int lineHeight(HWND editor) {
    const WindowDc dc(editor);
    const Selected font(dc, reinterpret_cast<HFONT>(SendMessageW(editor, WM_GETFONT, 0, 0)));
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    return std::max(1, static_cast<int>(metrics.tmHeight));
}

Text wrappedText(HWND note, const Text& text, const PxRect& place, HFONT font) {
    const HWND editor = createEditor(note, true, withLineBreaks(text), place, font);
    if (editor == nullptr) return text;
    const auto lines = static_cast<int>(SendMessageW(editor, EM_GETLINECOUNT, 0, 0));
    Text wrapped;
    for (int line = 0; line < lines; ++line) {
        const LRESULT start = SendMessageW(editor, EM_LINEINDEX, static_cast<WPARAM>(line), 0);
        const auto length =
            static_cast<std::size_t>(SendMessageW(editor, EM_LINELENGTH, static_cast<WPARAM>(start), 0));
        Text words(length + 1, u'\0');
        words[0] = static_cast<char16_t>(words.size());  // here it expects the room that there is
        const LRESULT copied = SendMessageW(editor, EM_GETLINE, static_cast<WPARAM>(line),
                                            reinterpret_cast<LPARAM>(wideBuffer(words)));
        if (line > 0) wrapped += u"\r\n";
        wrapped += words.substr(0, static_cast<std::size_t>(copied));
    }
    DestroyWindow(editor);
    return wrapped;
}
