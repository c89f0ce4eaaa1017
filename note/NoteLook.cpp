#include "note/NoteLook.h"

#include <algorithm>

#include "resources/resource.h"
#include "support/Window.h"

namespace {

UniqueFont loadFont(int dpi, int weight) {
    constexpr int kPointsPerInch = 72;
    const int height = -MulDiv(design::kFontPoints, dpi, kPointsPerInch);
    return UniqueFont(CreateFontW(height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                  OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                                  DEFAULT_PITCH | FF_SWISS, wide(design::kFontName)));
}

int heightOf(HFONT font) {
    const WindowDc screen(nullptr);
    const Selected selected(screen, font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(screen, &metrics);
    return static_cast<int>(metrics.tmHeight);
}

}  // namespace

HCURSOR NoteLook::cursor(int number) const {
    const int index = number - IDC_RESIZE_WIDTH;
    const bool known = index >= 0 && index < static_cast<int>(cursors.size());
    const HCURSOR found = known ? cursors[static_cast<std::size_t>(index)] : nullptr;
    return found != nullptr ? found : arrow;
}

NoteLook loadNoteLook() {
    NoteLook look;
    look.dpi = screenDpi();
    look.body = loadFont(look.dpi, FW_NORMAL);
    look.title = loadFont(look.dpi, FW_BOLD);
    look.titleHeight = heightOf(look.title.get());
    look.bodyHeight = std::max(1, heightOf(look.body.get()));
    look.arrow = LoadCursorW(nullptr, IDC_ARROW);
    int number = IDC_RESIZE_WIDTH;
    for (HCURSOR& cursor : look.cursors) {
        cursor = LoadCursorW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(number++));
    }
    return look;
}
