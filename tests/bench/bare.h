// What the steps of inside.cpp are compared with: the same windows, texts and bytes with nothing else around
// them.
#pragma once

#include "support/Text.h"
#include "support/WinText.h"

/// A window with a label and an edit control over it that answers no message.
struct BareNote {
    explicit BareNote(const RECT& at);
    ~BareNote();
    BareNote(const BareNote&) = delete;
    BareNote& operator=(const BareNote&) = delete;

    /// Opens the edit control with a text.
    void edit(const Text& text) const;
    /// Takes the text over: the edit control goes, and the label shows the text. Returns the text.
    Text take() const;

    HWND hwnd;
    HWND label;
    HWND editor;
};

/// Writes one value, in a key that is opened for it.
bool writeBareValue(const Text& path, const Text& name, const Text& text);

/// Writes some bytes at an offset of an existing file.
bool writeBareBytes(const Text& path, long long offset, const std::string& bytes);
