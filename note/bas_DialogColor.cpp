#include "note/bas_DialogColor.h"

#include <commdlg.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "support/SystemLibrary.h"

namespace {

// Windows silently refuses a record of another size.
#ifdef _WIN64
static_assert(sizeof(CHOOSECOLORA) == 72);
#else
static_assert(sizeof(CHOOSECOLORA) == 36);
#endif

constexpr std::size_t kCustomColors = 16;

/// The user's own colours, kept for the whole run.
std::array<COLORREF, kCustomColors>& customColors() {
    static std::array<COLORREF, kCustomColors> colors = [] {
        std::array<COLORREF, kCustomColors> paper{};
        std::fill(paper.begin(), paper.end(), kWhite);
        return paper;
    }();
    return colors;
}

UINT_PTR CALLBACK nameDialog(HWND dialog, UINT message, WPARAM, LPARAM lp) {
    if (message == WM_INITDIALOG) {
        const auto* request = reinterpret_cast<const CHOOSECOLORA*>(lp);
        SetWindowTextA(dialog, reinterpret_cast<LPCSTR>(request->lCustData));
        // Its owner keeps it above that note only, but another one may be always on top.
        SetWindowPos(dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
    return 0;  // the dialog's own handling follows
}

}  // namespace

bool isSystemDialog(HWND window) {
    constexpr ULONG_PTR kDialogClass = 0x8002;
    return GetClassLongPtrW(window, GCW_ATOM) == kDialogClass;
}

std::optional<Rgb> ChooseColorDialog(HWND owner, Rgb color, const char* title) {
    const char* const caption = std::string_view(title) == kNoDialogTitle ? "Color" : title;
    CHOOSECOLORA request{};
    request.lStructSize = sizeof(request);
    request.hwndOwner = owner;
    request.rgbResult = color;
    request.lpCustColors = customColors().data();
    request.Flags = CC_RGBINIT | CC_ENABLEHOOK;
    request.lCustData = reinterpret_cast<LPARAM>(caption);
    request.lpfnHook = nameDialog;
    // Loaded when it is first needed, because it brings in everything about printers.
    static const auto choose =
        systemFunction<decltype(&ChooseColorA)>(systemLibrary(u"comdlg32.dll"), "ChooseColorA");
    if (choose == nullptr || choose(&request) == FALSE) return std::nullopt;
    return request.rgbResult;
}
