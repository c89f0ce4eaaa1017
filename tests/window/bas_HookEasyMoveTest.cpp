// The procedures that snap a window while it is dragged, called in the way the system's move loop calls them.
#include "note/bas_HookEasyMove.h"

#include <gtest/gtest.h>

#include <new>

#include "note/bas_GetWorkArea.h"
#include "support/Window.h"

namespace {

constexpr const char16_t* kClass = u"MoveHookTestNote";
constexpr UINT kAsk = WM_APP + 9;
constexpr LRESULT kAnswer = 77;
constexpr int kWidth = 200;
constexpr int kHeight = 150;

LRESULT CALLBACK plainProc(HWND hwnd, UINT message, WPARAM wp, LPARAM lp) noexcept {
    return message == kAsk ? kAnswer : DefWindowProcW(hwnd, message, wp, lp);
}

class DraggedNote : public testing::Test {
protected:
    void SetUp() override {
        registerClass(kClass, plainProc, 0);
        window = CreateWindowExW(WS_EX_TOOLWINDOW, wide(kClass), L"", WS_POPUP, 300, 300, kWidth, kHeight,
                                 nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        procedure = GetWindowLongPtrW(window, GWLP_WNDPROC);
        desk.easyAlign = true;
        desk.leastWidth = 75;
        desk.leastHeight = 47;
        desk.others = [this] { return others; };
    }
    void TearDown() override {
        if (IsWindow(window) != FALSE) DestroyWindow(window);
    }

    /// The result of a drag to this place.
    RECT dragTo(int left, int top) {
        RECT rect{left, top, left + kWidth, top + kHeight};
        answer = SendMessageW(window, WM_MOVING, 0, reinterpret_cast<LPARAM>(&rect));
        return rect;
    }

    HWND window = nullptr;
    LONG_PTR procedure = 0;
    LRESULT answer = 0;
    SnapRules desk;
    std::vector<PxRect> others;
};

TEST_F(DraggedNote, SnapsToTheWorkAreaAndToOtherNotes) {
    const PxRect work = GetWorkArea();
    others = {{600, 300, 700, 400}};
    const MoveHook hook(window, MoveHook::Kind::EasyMove, desk);
    EXPECT_EQ(dragTo(work.right - kWidth - 1, 200).right, work.right);
    EXPECT_EQ(answer, TRUE);
    EXPECT_EQ(dragTo(702, 320).left, 700);
    EXPECT_EQ(answer, TRUE);
    const RECT away = dragTo(250, 330);
    EXPECT_EQ(away.left, 250);
    EXPECT_EQ(away.top, 330);
    EXPECT_NE(answer, TRUE) << "the answer to an unchanged place is the system's";
}

TEST_F(DraggedNote, OnAnAlignedDeskSnapsOnlyWithEasyAlignment) {
    const PxRect work = GetWorkArea();
    for (const bool easy : {true, false}) {
        desk.easyAlign = easy;
        const MoveHook hook(window, MoveHook::Kind::AlignedMove, desk);
        EXPECT_EQ(dragTo(work.right - kWidth - 1, 200).right, easy ? work.right : work.right - 1);
    }
}

TEST_F(DraggedNote, KeepsItsOwnProcedureForEverythingElseAndGetsItBack) {
    {
        const MoveHook hook(window, MoveHook::Kind::EasyMove, desk);
        EXPECT_NE(GetWindowLongPtrW(window, GWLP_WNDPROC), procedure);
        EXPECT_EQ(SendMessageW(window, kAsk, 0, 0), kAnswer);
    }
    EXPECT_EQ(GetWindowLongPtrW(window, GWLP_WNDPROC), procedure);
    EXPECT_EQ(SendMessageW(window, kAsk, 0, 0), kAnswer);
    try {
        const MoveHook hook(window, MoveHook::Kind::AlignedMove, desk);
        throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
        EXPECT_EQ(GetWindowLongPtrW(window, GWLP_WNDPROC), procedure);
    }
}

TEST_F(DraggedNote, MayGoDuringTheDrag) {
    const MoveHook hook(window, MoveHook::Kind::EasyMove, desk);
    DestroyWindow(window);
    EXPECT_FALSE(IsWindow(window));
}

}  // namespace
