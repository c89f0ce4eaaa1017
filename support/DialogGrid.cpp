#include "support/DialogGrid.h"

namespace {

UniqueFont messageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0) == FALSE) return nullptr;
    return UniqueFont(CreateFontIndirectW(&metrics.lfMessageFont));
}

HGDIOBJ usable(HFONT font) {
    return font != nullptr ? font : GetStockObject(DEFAULT_GUI_FONT);
}

}  // namespace

DialogGrid loadDialogGrid() {
    constexpr TextView kLetters = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    DialogGrid grid;
    grid.font = messageFont();
    const WindowDc screen(nullptr);
    const Selected selected(screen, usable(grid.font.get()));
    SIZE extent{};
    GetTextExtentPoint32W(screen, wideData(kLetters), static_cast<int>(kLetters.size()), &extent);
    TEXTMETRICW metrics{};
    GetTextMetricsW(screen, &metrics);
    grid.baseX = static_cast<int>((extent.cx / 26 + 1) / 2);
    grid.baseY = static_cast<int>(metrics.tmHeight);
    return grid;
}

PxSize DialogGrid::textSize(TextView text, int width) const {
    const WindowDc screen(nullptr);
    const Selected selected(screen, usable(font.get()));
    RECT area{0, 0, width, 0};
    const UINT lines = width > 0 ? DT_WORDBREAK | DT_EDITCONTROL : DT_SINGLELINE;
    DrawTextW(screen, wideData(text), static_cast<int>(text.size()), &area,
              DT_CALCRECT | DT_NOPREFIX | DT_EXPANDTABS | lines);
    return {static_cast<int>(area.right), static_cast<int>(area.bottom)};
}

HWND DialogGrid::add(HWND form, const wchar_t* name, const Text& text, DWORD style, int id) const {
    const auto menu = reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
    const HWND control = CreateWindowExW(0, name, wide(text), WS_CHILD | WS_CLIPSIBLINGS | style, 0, 0, 0, 0,
                                         form, menu, GetModuleHandleW(nullptr), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(usable(font.get())), FALSE);
    return control;
}

void placeControl(HWND control, int left, int top, int width, int height) {
    SetWindowPos(control, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}
