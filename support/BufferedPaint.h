// Drawing off screen, so that what a window shows appears all at once.
#pragma once

#include <algorithm>
#include <utility>

#include "support/Handles.h"

/// An off-screen picture that windows draw through, one at a time. It is kept from one drawing to the next,
/// because making one takes longer than most drawings do.
class Canvas {
public:
    /// A device context with a picture of at least this size in pixels behind it, until done(). Everything
    /// else about it is as Windows made it, whatever the previous drawing left behind. A large picture is not
    /// kept, as it would hold too much memory.
    HDC begin(HDC like, LONG width, LONG height) {
        done();
        if (!dc_) dc_.reset(CreateCompatibleDC(like));
        if (width > width_ || height > height_) grow(like, width, height);
        fresh_ = SaveDC(dc_.get());
        return dc_.get();
    }
    void done() {
        // A clip region, font or mode left behind would cut or change what every other window draws. The
        // picture stays: to select it anew for every part of every note takes a third of Show All.
        if (fresh_ != 0) RestoreDC(dc_.get(), std::exchange(fresh_, 0));
        if (!large_) return;
        SelectObject(dc_.get(), bitmap_ ? bitmap_.get() : empty_);
        large_.reset();
    }

private:
    /// Leaves the picture there already is when Windows refuses a larger one.
    void grow(HDC like, LONG width, LONG height) {
        const LONG both = std::max(width, width_) * std::max(height, height_);
        const bool kept = both <= kMostKept;
        if (kept) {
            width = std::max(width, width_);
            height = std::max(height, height_);
        }
        UniqueBitmap made(CreateCompatibleBitmap(like, width, height));
        if (!made) return;
        const HGDIOBJ before = SelectObject(dc_.get(), made.get());
        if (empty_ == nullptr) empty_ = before;
        if (kept) {
            width_ = width;
            height_ = height;
        }
        UniqueBitmap& place = kept ? bitmap_ : large_;
        place = std::move(made);
    }

    static constexpr LONG kMostKept = 256 * 1024;  // pixels, of four bytes each
    UniqueBitmap bitmap_;
    UniqueBitmap large_;
    LONG width_ = 0;
    LONG height_ = 0;
    HGDIOBJ empty_ = nullptr;  ///< what stood in the device context at first
    UniqueDc dc_;              ///< declared last, so that it goes before the pictures that it may hold
    int fresh_ = 0;            ///< what SaveDC returned for the untouched state; 0: nothing is being drawn
};

/// BeginPaint .. EndPaint through an off-screen picture, so that everything drawn appears at once.
class BufferedPaint {
public:
    BufferedPaint(HWND window, Canvas& canvas) : window_(window), canvas_(canvas) {
        BeginPaint(window, &paint_);
        GetClientRect(window, &client_);
        memory_ = canvas.begin(paint_.hdc, client_.right, client_.bottom);
    }
    ~BufferedPaint() {
        const RECT& dirty = paint_.rcPaint;
        BitBlt(paint_.hdc, dirty.left, dirty.top, dirty.right - dirty.left, dirty.bottom - dirty.top, memory_,
               dirty.left, dirty.top, SRCCOPY);
        canvas_.done();
        EndPaint(window_, &paint_);
    }
    BufferedPaint(const BufferedPaint&) = delete;
    BufferedPaint& operator=(const BufferedPaint&) = delete;

    HDC dc() const { return memory_; }
    const RECT& client() const { return client_; }

private:
    HWND window_;
    Canvas& canvas_;
    PAINTSTRUCT paint_{};
    RECT client_{};
    HDC memory_ = nullptr;
};
