#include "note/NoteParts.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "note/bas_GetWorkArea.h"
#include "note/fpost.h"
#include "resources/resource.h"

namespace {

constexpr Text::value_type kTitleLead[] = u"     ";

}  // namespace

bool NoteParts::create() {
    const HINSTANCE program = GetModuleHandleW(nullptr);
    laid_ = client();
    const NoteRects at = rectsIn(laid_);
    const auto child = [&](LPCWSTR kind, DWORD style, int id, const Text& text, const PxRect& rect) {
        return CreateWindowExW(0, kind, wide(text), WS_CHILD | WS_CLIPSIBLINGS | style, rect.left, rect.top,
                               rect.width(), rect.height(), note_.hwnd,
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), program, nullptr);
    };
    const LPCWSTR part = wide(kPartClass);
    // Created from the top of the z order down: where parts overlap, the one created first gets the press.
    note_.lbl2 = child(part, WS_VISIBLE, ID_LBL2, u"Iconize, close", at.lbl2);
    note_.pic = child(part, WS_VISIBLE, ID_PIC, u"Delete", at.pic);
    note_.pic2 = child(part, WS_VISIBLE, ID_PIC2, u"Resize", at.pic2);
    note_.lbl = child(part, WS_VISIBLE, ID_LBL, kTitleLead + note_.record.Titolo, at.lbl);
    note_.pic_time = child(part, 0, ID_PIC_TIME, u"", at.pic_time);
    const DWORD bodyShown = note_.record.iconized ? 0 : WS_VISIBLE;
    note_.nota = child(part, bodyShown, ID_NOTA, withLineBreaks(note_.record.Nota), at.nota);
    const auto made = {note_.lbl, note_.lbl2, note_.pic, note_.nota, note_.pic2, note_.pic_time};
    return std::none_of(made.begin(), made.end(), [](HWND window) { return window == nullptr; });
}

PxRect NoteParts::client() const {
    RECT client{};
    GetClientRect(note_.hwnd, &client);
    return pxRect(client);
}

NoteRects NoteParts::rectsIn(const PxRect& client) const {
    const NoteLook& look = *note_.host->look;
    return layoutNote(client.right, client.bottom, note_.record.iconized, look.dpi, look.titleHeight);
}

NoteRects NoteParts::rects() const {
    return rectsIn(client());
}

bool NoteParts::fit() {
    const PxRect now = client();
    if (now == laid_) return false;
    laid_ = now;
    const NoteRects at = rectsIn(now);
    const std::pair<HWND, const PxRect*> places[] = {{note_.lbl, &at.lbl},   {note_.lbl2, &at.lbl2},
                                                     {note_.pic, &at.pic},   {note_.nota, &at.nota},
                                                     {note_.pic2, &at.pic2}, {note_.pic_time, &at.pic_time}};
    HDWP batch = BeginDeferWindowPos(static_cast<int>(std::size(places)));
    for (const auto& [part, rect] : places) {
        if (batch == nullptr) break;  // out of memory: the parts stay where they were
        batch = DeferWindowPos(batch, part, nullptr, rect->left, rect->top, rect->width(), rect->height(),
                               SWP_NOZORDER | SWP_NOACTIVATE);
    }
    if (batch != nullptr) EndDeferWindowPos(batch);
    note_.editing.place(at);
    ShowWindow(note_.nota, note_.record.iconized ? SW_HIDE : SW_SHOWNA);
    if (note_.record.iconized) ShowWindow(note_.pic_time, SW_HIDE);
    return true;
}

void NoteParts::showTitle() const {
    setWindowText(note_.lbl, kTitleLead + note_.record.Titolo);
}
