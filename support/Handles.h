// One owner per handle: the type says how it is closed.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "support/WinText.h"

template <auto Close>
struct Closer {
    template <class T>
    void operator()(T* handle) const noexcept {
        Close(handle);
    }
};

template <class Handle, auto Close>
using Unique = std::unique_ptr<std::remove_pointer_t<Handle>, Closer<Close>>;

using UniqueHandle = Unique<HANDLE, CloseHandle>;  ///< files, mutexes; never INVALID_HANDLE_VALUE
using UniqueKey = Unique<HKEY, RegCloseKey>;
using UniqueMenu = Unique<HMENU, DestroyMenu>;
using UniqueDc = Unique<HDC, DeleteDC>;  ///< a memory device context
using UniqueFont = Unique<HFONT, DeleteObject>;
using UniqueBrush = Unique<HBRUSH, DeleteObject>;
using UniquePen = Unique<HPEN, DeleteObject>;
using UniqueBitmap = Unique<HBITMAP, DeleteObject>;
using UniqueIcon = Unique<HICON, DestroyIcon>;

/// A window's device context, released at the end of the scope.
class WindowDc {
public:
    explicit WindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
    ~WindowDc() { ReleaseDC(window_, dc_); }
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    operator HDC() const { return dc_; }

private:
    HWND window_;
    HDC dc_;
};

/// Selects an object into a device context and puts the previous one back at the end of the scope.
class Selected {
public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), before_(SelectObject(dc, object)) {}
    ~Selected() { SelectObject(dc_, before_); }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

private:
    HDC dc_;
    HGDIOBJ before_;
};
