#include "note/MsgBoxRules.h"

namespace {

constexpr long kButtonsMask = 0x07;
constexpr long kIconMask = 0x70;
constexpr long kSecondIsDefault = 0x100;
constexpr std::intptr_t kShellSuccess = 32;

// The icon is a field of three bits, not three flags: 48 is neither 16 nor 32.
MsgIcon iconOf(long code) {
    switch (code & kIconMask) {
        case 0x10:
            return MsgIcon::Critical;
        case 0x20:
            return MsgIcon::Question;
        case 0x30:
            return MsgIcon::Exclamation;
        case 0x40:
            return MsgIcon::Information;
        default:
            return MsgIcon::None;
    }
}

bool has(TextView text, TextView part) {
    return text.find(part) != TextView::npos;
}

}  // namespace

MsgButtons msgButtons(long code) {
    MsgButtons face;
    switch (code & kButtonsMask) {
        case 1:
            face.first = u"&OK";
            face.second = u"&Cancel";
            break;
        case 4:
            face.first = u"&Yes";
            face.second = u"&No";
            break;
        case 5:
            face.first = u"&Retry";
            face.second = u"&Cancel";
            break;
        default:
            face.first = u"OK";
            break;
    }
    face.icon = iconOf(code);
    face.secondIsDefault = (code & kSecondIsDefault) != 0 && !face.second.empty();
    return face;
}

int answerOfFirst(TextView caption) {
    if (has(caption, u"S\u00ec") || has(caption, u"Si") || has(caption, u"Yes")) return kAnswerYes;
    return has(caption, u"OK") ? kAnswerOk : kAnswerNone;
}

int answerOfSecond(TextView caption) {
    if (has(caption, u"No")) return kAnswerNo;
    return has(caption, u"Cancel") || has(caption, u"Annulla") ? kAnswerCancel : kAnswerNone;
}

Text shellMessage(std::intptr_t result) {
    if (result > kShellSuccess) return {};
    switch (result) {
        case 2:
            return u"File not found.";
        case 3:
            return u"Path not found.";
        case 5:
            return u"Access denied.";
        case 27:
            return u"Incomplete association file type.";
        case 31:
            return u"Missing association file type.";
        default:
            return u"Generic access file error.";
    }
}
