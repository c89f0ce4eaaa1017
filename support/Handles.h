// One owner a handle: the type says who closes it.
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
using UniqueFont = Unique<HFONT, DeleteObject>;
using UniqueBrush = Unique<HBRUSH, DeleteObject>;
using UniquePen = Unique<HPEN, DeleteObject>;
using UniqueBitmap = Unique<HBITMAP, DeleteObject>;
using UniqueIcon = Unique<HICON, DestroyIcon>;

/// A device context of a window, given back at the end of the scope.
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

/// An object selected into a device context, the former one put back at the end of the scope.
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

/// BeginPaint .. EndPaint through an off-screen bitmap, so that what is drawn appears at once.
class BufferedPaint {
public:
    explicit BufferedPaint(HWND window) : window_(window) {
        BeginPaint(window, &paint_);
        GetClientRect(window, &client_);
        memory_ = CreateCompatibleDC(paint_.hdc);
        bitmap_.reset(CreateCompatibleBitmap(paint_.hdc, client_.right, client_.bottom));
        before_ = SelectObject(memory_, bitmap_.get());
    }
    ~BufferedPaint() {
        const RECT& dirty = paint_.rcPaint;
        BitBlt(paint_.hdc, dirty.left, dirty.top, dirty.right - dirty.left, dirty.bottom - dirty.top, memory_,
               dirty.left, dirty.top, SRCCOPY);
        SelectObject(memory_, before_);
        DeleteDC(memory_);
        EndPaint(window_, &paint_);
    }
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;

    HDC dc() const { return memory_; }
    const RECT& client() const { return client_; }

private:
    HWND window_;
    PAINTSTRUCT paint_{};
    RECT client_{};
    HDC memory_ = nullptr;
    UniqueBitmap bitmap_;
    HGDIOBJ before_ = nullptr;
};
