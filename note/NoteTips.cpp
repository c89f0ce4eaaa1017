#include "note/NoteTips.h"

#include "note/fpost.h"
// Needs windows.h before it.
#include <commctrl.h>

namespace {

enum Tip : UINT_PTR { kTipIconize = 1, kTipClose, kTipDelete, kTipWidth, kTipHeight };

void addTip(HWND tips, HWND part, UINT_PTR tip, const HotArea& area, const NoteLook& look) {
    TOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_SUBCLASS;
    tool.hwnd = part;
    tool.uId = tip;
    tool.rect = look.px(area);
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace

void NoteTips::want(const fpost& note) {
    if (window_ != nullptr) return;
    window_ = CreateWindowExW(
        WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, note.hwnd, nullptr, GetModuleHandleW(nullptr), nullptr);
    if (window_ == nullptr) return;
    const NoteLook& look = *note.host->look;
    addTip(window_, note.lbl2, kTipIconize, design::kIconizeButton, look);
    addTip(window_, note.lbl2, kTipClose, design::kCloseButton, look);
    addTip(window_, note.pic, kTipDelete, design::kDeleteButton, look);
    addTip(window_, note.pic2, kTipWidth, design::kWidthArrow, look);
    addTip(window_, note.pic2, kTipHeight, design::kHeightArrow, look);
}

void NoteTips::fill(const fpost& note, NMHDR& header) {
    if (header.code != TTN_GETDISPINFOW) return;
    Text text;
    switch (header.idFrom) {
        case kTipIconize:
            text = note.record.iconized ? u"Restore" : u"Iconize";
            break;
        case kTipClose:
            text = u"Close";
            break;
        case kTipDelete:
            text = u"Delete";
            break;
        case kTipWidth:
            text = u"Wider; with Shift or the right button narrower";
            break;
        case kTipHeight:
            if (!note.record.iconized) text = u"Taller; with Shift or the right button shorter";
            break;
        default:
            break;
    }
    auto& info = reinterpret_cast<NMTTDISPINFOW&>(header);
    const std::size_t length =
        text.copy(reinterpret_cast<char16_t*>(info.szText), std::size(info.szText) - 1);
    info.szText[length] = L'\0';
}
