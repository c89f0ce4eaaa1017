// What the steps of inside.cpp are measured against: the same windows, texts and bytes with nothing around
// them.
#pragma once

#include "support/Text.h"
#include "support/WinText.h"

/// A window with a label and an edit control over it, that answers nothing.
struct BareNote {
    explicit BareNote(const RECT& at);
    ~BareNote();
    BareNote(const BareNote&) = delete;
    BareNote& operator=(const BareNote&) = delete;

    /// Opens the edit control with a text.
    void edit(const Text& text) const;
    /// Takes the text over: the edit control goes, the label shows it. Returns it.
    Text take() const;

    HWND hwnd;
    HWND label;
    HWND editor;
};

/// One value, in a key that is opened for it.
bool writeBareValue(const Text& path, const Text& name, const Text& text);

/// Some bytes at an offset of a file that is there.
bool writeBareBytes(const Text& path, long long offset, const std::string& bytes);
