// What a screen reader hears: the accessibility tree, asked through Windows' own client library.
#pragma once

#include "support/Accessible.h"
#include "support/Window.h"
// Needs windows.h before it.
#include <oleacc.h>

#include <utility>
#include <vector>

/// One object of the tree: a window or, with `element`, something drawn in it.
class Ear {
public:
    explicit Ear(HWND window, LONG element = CHILDID_SELF) : element_(element) {
        void* object = nullptr;
        if (SUCCEEDED(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT),
                                                 __uuidof(IAccessible), &object))) {
            object_ = static_cast<IAccessible*>(object);
        }
    }
    ~Ear() {
        if (object_ != nullptr) object_->Release();
    }
    Ear(const Ear&) = delete;
    Ear& operator=(const Ear&) = delete;

    Text name() const { return taken(&IAccessible::get_accName); }
    Text value() const { return taken(&IAccessible::get_accValue); }
    Text action() const { return taken(&IAccessible::get_accDefaultAction); }
    Role role() const {
        VARIANT role{};
        if (object_ == nullptr || object_->get_accRole(self(), &role) != S_OK) return Role::Standard;
        return static_cast<Role>(role.lVal);
    }
    bool press() const { return object_ != nullptr && object_->accDoDefaultAction(self()) == S_OK; }
    RECT place() const {
        LONG left = 0, top = 0, width = 0, height = 0;
        if (object_ != nullptr) object_->accLocation(&left, &top, &width, &height, self());
        return {left, top, left + width, top + height};
    }
    LONG elements() const {
        LONG count = 0;
        if (object_ != nullptr) object_->get_accChildCount(&count);
        return count;
    }
    LONG elementAt(POINT at) const {
        VARIANT hit{};
        if (object_ == nullptr || object_->accHitTest(at.x, at.y, &hit) != S_OK || hit.vt != VT_I4) return -1;
        return hit.lVal;
    }

private:
    VARIANT self() const {
        VARIANT child{};
        child.vt = VT_I4;
        child.lVal = element_;
        return child;
    }
    Text taken(HRESULT (STDMETHODCALLTYPE IAccessible::*get)(VARIANT, BSTR*)) const {
        BSTR text = nullptr;
        if (object_ == nullptr || (object_->*get)(self(), &text) != S_OK || text == nullptr) return {};
        const Text copy(fromWide(text));
        SysFreeString(text);
        return copy;
    }

    IAccessible* object_ = nullptr;
    LONG element_;
};

/// Collects the events that a listener outside the program gets while this exists.
class Events {
public:
    Events() {
        heard.clear();
        hook_ = SetWinEventHook(EVENT_MIN, EVENT_MAX, nullptr, hear, GetCurrentProcessId(), 0,
                                WINEVENT_OUTOFCONTEXT);
    }
    ~Events() { UnhookWinEvent(hook_); }
    Events(const Events&) = delete;
    Events& operator=(const Events&) = delete;

    bool has(DWORD event, HWND window) const {
        pumpPending();
        for (const auto& [what, where] : heard) {
            if (what == event && where == window) return true;
        }
        return false;
    }

private:
    static void CALLBACK hear(HWINEVENTHOOK, DWORD event, HWND window, LONG object, LONG, DWORD,
                              DWORD) noexcept {
        if (object == OBJID_CLIENT) heard.emplace_back(event, window);
    }
    static inline std::vector<std::pair<DWORD, HWND>> heard;
    HWINEVENTHOOK hook_ = nullptr;
};
