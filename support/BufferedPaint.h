// Drawing off screen: what a window shows appears at once.
#pragma once

#include <algorithm>
#include <utility>

#include "support/Handles.h"

/// An off-screen picture that windows draw through, one at a time. It is kept from one drawing to the next,
/// as making one takes longer than most drawings.
class Canvas {
public:
    /// A device context with a picture of at least this size in pixels behind it, until done(). A large
    /// picture is not kept: its memory would be missed elsewhere.
    HDC begin(HDC like, LONG width, LONG height) {
        if (!dc_) dc_.reset(CreateCompatibleDC(like));
        if (width <= width_ && height <= height_) return dc_.get();
        const LONG most = std::max(width, width_) * std::max(height, height_);
        const bool kept = most <= kMostKept;
        if (kept) {
            width = std::max(width, width_);
            height = std::max(height, height_);
        }
        UniqueBitmap made(CreateCompatibleBitmap(like, width, height));
        if (!made) return dc_.get();
        SelectObject(dc_.get(), made.get());
        (kept ? bitmap_ : large_) = std::move(made);
        if (kept) width_ = width;
        if (kept) height_ = height;
        return dc_.get();
    }
    void done() {
        if (!large_) return;
        if (bitmap_) {
            SelectObject(dc_.get(), bitmap_.get());
        } else {
            dc_.reset();  // lets go of the bitmap
        }
        large_.reset();
    }

private:
    static constexpr LONG kMostKept = 256 * 1024;  // pixels, of four bytes each
    UniqueBitmap bitmap_;
    UniqueBitmap large_;
    LONG width_ = 0;
    LONG height_ = 0;
    UniqueDc dc_;
};

/// BeginPaint .. EndPaint through an off-screen picture, so that what is drawn appears at once.
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
