#include "note/bas_GetWorkArea.h"

namespace {

BOOL CALLBACK addMonitor(HMONITOR monitor, HDC, LPRECT, LPARAM param) noexcept {
    auto& monitors = *reinterpret_cast<std::vector<Monitor>*>(param);
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    if (GetMonitorInfoW(monitor, &info) == FALSE) return TRUE;
    try {
        const bool primary = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
        monitors.push_back({pxRect(info.rcMonitor), primary ? GetWorkArea() : pxRect(info.rcWork), primary});
    } catch (...) {
        return FALSE;  // out of memory: those found so far have to do
    }
    return TRUE;
}

}  // namespace

PxRect GetWorkArea() {
    RECT work{};
    if (SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0) == FALSE || IsRectEmpty(&work) != FALSE) {
        return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    }
    return pxRect(work);
}

std::vector<Monitor> readMonitors() {
    std::vector<Monitor> monitors;
    EnumDisplayMonitors(nullptr, nullptr, addMonitor, reinterpret_cast<LPARAM>(&monitors));
    if (monitors.empty()) {
        const PxRect screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
        monitors.push_back({screen, GetWorkArea(), true});
    }
    return monitors;
}

PxRect workAreaAt(const PxRect& rect) {
    return monitorAt(readMonitors(), rect).work;
}
