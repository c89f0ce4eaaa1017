#include "core/basTrayIcon.h"

#include <shellapi.h>

#include <cstring>

#include "resources/resource.h"
#include "support/Handles.h"

namespace {

// The icon record of the first shell. Later, longer records change which messages a click sends.
constexpr DWORD kRecordSize = NOTIFYICONDATAA_V1_SIZE;
static_assert(sizeof(void*) != 4 || kRecordSize == 88);
static_assert(sizeof(void*) != 8 || kRecordSize == 104);

constexpr char kTip[] = "Kardel";
static_assert(sizeof(kTip) <= 64);  // the record's field, with the closing zero

NOTIFYICONDATAA record(HWND tray) {
    NOTIFYICONDATAA data{};
    data.cbSize = kRecordSize;
    data.hWnd = tray;
    data.uID = TRAYICON_ID;
    return data;
}

/// The shell keeps a copy of the icon, so this one is destroyed after the call.
bool notify(DWORD operation, HWND tray) {
    const UniqueIcon icon(static_cast<HICON>(
        LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_KARDEL), IMAGE_ICON,
                   GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_DEFAULTCOLOR)));
    NOTIFYICONDATAA data = record(tray);
    data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    data.uCallbackMessage = WM_TRAYICON;
    data.hIcon = icon.get();
    std::memcpy(data.szTip, kTip, sizeof(kTip));
    return Shell_NotifyIconA(operation, &data) != FALSE;
}

}  // namespace

bool TrayIconAdd(HWND tray) {
    return notify(NIM_ADD, tray);
}

bool TrayIconEnsure(HWND tray) {
    return notify(NIM_ADD, tray) || notify(NIM_MODIFY, tray);
}

bool TrayIconDelete(HWND tray) {
    NOTIFYICONDATAA data = record(tray);
    return Shell_NotifyIconA(NIM_DELETE, &data) != FALSE;
}
