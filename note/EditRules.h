// What typing, pasting, deleting and scrolling do to a text that has to fit the store, without an editor.
#pragma once

#include <functional>

#include "support/Text.h"

/// The selected part of a text, in UTF-16 units; empty where only the caret stands.
struct TextRange {
    std::size_t from = 0;
    std::size_t to = 0;
    bool operator==(const TextRange&) const = default;
};

/// Whether a text can be stored as a whole.
using FitsStore = std::function<bool(const Text&)>;

/// The text with `inserted` in place of the selection.
Text withInserted(TextView text, TextRange selected, TextView inserted);

/// The longest beginning of `inserted` with which the text still fits. It never ends within a letter or a
/// line break.
TextView fittingPart(TextView text, TextRange selected, TextView inserted, const FitsStore& fits);

/// What a paste inserts of the clipboard's text, which ends at its first zero: for a title the first line,
/// for a body all lines.
Text pastedText(TextView clipboard, bool oneLine);

/// Where the deletion of the word before the caret begins: it takes blanks and the word or punctuation before
/// them, or one line break.
std::size_t wordStart(TextView text, std::size_t caret);

/// Whether `words` are at the selection: selected, after it or just before it. Some editors show there what
/// an input method is composing, others do not.
bool standsAt(TextView text, TextRange selected, TextView words);

/// Puts together what arrives character by character: letters that come in two halves, and line breaks that
/// come as one or two characters.
class TypedText {
public:
    /// What the next character adds to the text: nothing for the first half of a letter, for a half that
    /// stays alone, and for the second half of a line break.
    Text next(char16_t character);

private:
    char16_t before_ = 0;
};

/// Adds up turns of the wheel to whole lines.
class WheelLines {
public:
    /// Lines that the text moves up; 0 while a fine wheel has not turned far enough. `delta`: as Windows
    /// reports it, 120 per notch; `perNotch`: lines.
    int turned(int delta, int perNotch);

private:
    int rest_ = 0;
};

/// The first line shown after scrolling by `lines`: never beyond the last page.
int scrolledTo(int first, int lines, int allLines, int linesOnPage);
