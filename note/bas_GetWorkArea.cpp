#include "note/bas_GetWorkArea.h"

namespace {

RECT winRect(const PxRect& r) {
    return {r.left, r.top, r.right, r.bottom};
}

}  // namespace

PxRect GetWorkArea() {
    RECT work{};
    if (SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0) == FALSE || IsRectEmpty(&work) != FALSE) {
        return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    }
    return pxRect(work);
}

PxRect workAreaAt(const PxRect& rect) {
    const RECT asked = winRect(rect);
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    const HMONITOR monitor = MonitorFromRect(&asked, MONITOR_DEFAULTTONEAREST);
    if (GetMonitorInfoW(monitor, &info) == FALSE || (info.dwFlags & MONITORINFOF_PRIMARY) != 0) {
        return GetWorkArea();
    }
    return pxRect(info.rcWork);
}

bool isOnScreen(const PxRect& rect) {
    const RECT asked = winRect(rect);
    return MonitorFromRect(&asked, MONITOR_DEFAULTTONULL) != nullptr;
}
