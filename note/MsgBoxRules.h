// What a message box shows for a platform code, and what its buttons answer, without a window.
#pragma once

#include <cstdint>

#include "support/Text.h"

/// Answers, as the platform numbers them.
inline constexpr int kAnswerNone = 0;
inline constexpr int kAnswerOk = 1;
inline constexpr int kAnswerCancel = 2;
inline constexpr int kAnswerYes = 6;
inline constexpr int kAnswerNo = 7;

enum class MsgIcon : unsigned char { None, Critical, Question, Exclamation, Information };

struct MsgButtons {
    Text first;   ///< caption of btn1
    Text second;  ///< caption of btn2; empty: there is only one button
    bool secondIsDefault = false;
    MsgIcon icon = MsgIcon::None;
};

/// The face for a code: bits 0-2 say which buttons, bits 4-6 which icon, bit 8 makes the second button the
/// default. An unknown set of buttons means a single OK button.
MsgButtons msgButtons(long code);

/// The answer that a button's caption, including its "&", stands for; captions may be translated.
int answerOfFirst(TextView caption);
int answerOfSecond(TextView caption);

/// What to tell the user about a result of the shell: empty above 32, which is success.
Text shellMessage(std::intptr_t result);
