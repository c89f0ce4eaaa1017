// A tray over a fake collection that records what it is asked to do.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "core/basTrayIcon.h"
#include "core/fTray.h"
#include "resources/resource.h"
#include "support/Window.h"
#include "tests/core/FakeTray.h"

/// The collection as the tray knows it: answers with what the test sets and records what it is asked to do.
class FakeDesk final : public RecordedTray<TrayHost> {
public:
    TrayMenuState shown;
    std::vector<Text> noteTitles{u"Milk", u"Salt & pepper", u""};
    HWND box = nullptr;
    std::vector<UINT> fromBelow;  ///< messages that programs with fewer rights may send

    FakeDesk() { shown.notes = 3; }

    TrayMenuState state() const override { return shown; }
    std::vector<Text> titles() const override { return noteTitles; }
    HWND openBox() const override { return box; }
    void letThrough(HWND window, UINT message) override {
        EXPECT_EQ(GetWindowTextLengthW(window), 0) << "before the title by which a second start finds it";
        fromBelow.push_back(message);
    }
    void defaultAction() override { note("default"); }
    void alreadyRunning() override { note("already running"); }
    void commitEdits() override { note("commit"); }
    void endSession() override { note("end session"); }
    void showSaveFailure() override { note("save failure"); }
    void tick() override { note("tick"); }
    void clockSet() override { note("clock set"); }
};

using Calls = std::vector<std::string>;

class Tray : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(tray.create(desk));
        procedureOfForm = procedure(tray.hwnd);
        ASSERT_EQ(FindWindowW(L"ThunderRT6FormDC", L"kardel:trayicon"), nullptr);
        const ULONGLONG end = GetTickCount64() + 20000;
        while (!tray.addIcon() && GetTickCount64() < end)
            pumpFor(100);
        ASSERT_EQ(FindWindowW(L"ThunderRT6FormDC", L"kardel:trayicon"), tray.hwnd);
    }

    void post(UINT message, WPARAM wp, LPARAM lp) {
        PostMessageW(tray.hwnd, message, wp, lp);
        pumpPending();
    }
    void mouse(std::initializer_list<UINT> messages) {
        for (const UINT message : messages)
            PostMessageW(tray.hwnd, WM_TRAYICON, TRAYICON_ID, static_cast<LPARAM>(message));
        pumpPending();
    }
    Calls after(WPARAM command) {
        desk.calls.clear();
        post(WM_COMMAND, command, 0);
        return desk.calls;
    }
    static LONG_PTR procedure(HWND window) { return GetWindowLongPtrW(window, GWLP_WNDPROC); }
    bool iconIsThere() const {
        // Adding an icon that is there already is refused.
        if (!TrayIconAdd(tray.hwnd)) return true;
        TrayIconDelete(tray.hwnd);
        return false;
    }

    FakeDesk desk;
    fTray tray;
    LONG_PTR procedureOfForm = 0;  ///< before the icon was there
};
