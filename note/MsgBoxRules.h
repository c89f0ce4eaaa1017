// What a message box shows for a code of the platform, and what a press of its buttons answers. Needs no
// window.
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
/// default. A set of buttons that is not known gets the one button OK.
MsgButtons msgButtons(long code);

/// The answer that a button's caption stands for; captions may be translated. Read with their "&".
int answerOfFirst(TextView caption);
int answerOfSecond(TextView caption);

/// What to tell the user about a result of the shell: empty above 32, which is success.
Text shellMessage(std::intptr_t result);
