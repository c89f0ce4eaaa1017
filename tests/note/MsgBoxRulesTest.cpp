#include "note/MsgBoxRules.h"

#include <gtest/gtest.h>

#include "tests/support/Plain.h"

namespace {

struct FaceCase {
    const char* name;
    long code;
    const char* first;
    const char* second;
    bool secondIsDefault;
    MsgIcon icon;
};

constexpr FaceCase kFaces[] = {
    {"OnlyOk", 0, "OK", "", false, MsgIcon::None},
    {"OkCancel", 1, "&OK", "&Cancel", false, MsgIcon::None},
    {"YesNo", 4, "&Yes", "&No", false, MsgIcon::None},
    {"RetryCancel", 5, "&Retry", "&Cancel", false, MsgIcon::None},
    {"AnIconDoesNotChangeTheButtons", 16, "OK", "", false, MsgIcon::Critical},
    {"Question", 32, "OK", "", false, MsgIcon::Question},
    {"ExclamationIsNotCriticalAndQuestion", 48, "OK", "", false, MsgIcon::Exclamation},
    {"Information", 64, "OK", "", false, MsgIcon::Information},
    {"AnUnknownIconIsNoPicture", 0x50, "OK", "", false, MsgIcon::None},
    {"YesNoWithQuestionMark", 36, "&Yes", "&No", false, MsgIcon::Question},
    {"RetryCancelWithExclamation", 53, "&Retry", "&Cancel", false, MsgIcon::Exclamation},
    {"SecondIsDefault", 4 + 16 + 256, "&Yes", "&No", true, MsgIcon::Critical},
    {"AButtonThatIsNotThereIsNoDefault", 256, "OK", "", false, MsgIcon::None},
    {"AnUnknownSetCanBeAnswered", 6, "OK", "", false, MsgIcon::None},
};

TEST(MsgBoxRules, ShowTheFaceOfACode) {
    for (const FaceCase& c : kFaces) {
        const MsgButtons face = msgButtons(c.code);
        EXPECT_EQ(plain(face.first), c.first) << c.name;
        EXPECT_EQ(plain(face.second), c.second) << c.name;
        EXPECT_EQ(face.secondIsDefault, c.secondIsDefault) << c.name;
        EXPECT_EQ(face.icon, c.icon) << c.name;
    }
}

struct AnswerCase {
    const char* name;
    long code;
    int first;
    int second;  ///< also what the close box answers
};

constexpr AnswerCase kAnswers[] = {
    {"OnlyOk", 0, 1, 0},      {"OkCancel", 1, 1, 2},
    {"YesNo", 4, 6, 7},       {"YesNoWithQuestionMark", 36, 6, 7},
    {"RetryCancel", 5, 0, 2}, {"OnlyOkWithAnIcon", 16, 1, 0},
};

TEST(MsgBoxRules, AnswerByCaption) {
    for (const AnswerCase& c : kAnswers) {
        const MsgButtons face = msgButtons(c.code);
        EXPECT_EQ(answerOfFirst(face.first), c.first) << c.name;
        EXPECT_EQ(answerOfSecond(face.second), c.second) << c.name;
    }
}

TEST(MsgBoxRules, AnswerTranslatedCaptions) {
    EXPECT_EQ(answerOfFirst(u"&S\u00ec"), 6);
    EXPECT_EQ(answerOfFirst(u"&Si"), 6);
    EXPECT_EQ(answerOfSecond(u"&Annulla"), 2);
    EXPECT_EQ(answerOfFirst(u"&Riprova"), 0);
}

struct ShellCase {
    std::intptr_t result;
    const char* message;
};

constexpr ShellCase kShell[] = {
    {0, "Generic access file error."},
    {2, "File not found."},
    {3, "Path not found."},
    {5, "Access denied."},
    {8, "Generic access file error."},
    {27, "Incomplete association file type."},
    {31, "Missing association file type."},
    {32, "Generic access file error."},
    {33, ""},
    {INTPTR_MAX, ""},
    {-1, "Generic access file error."},
};

TEST(ShellMessage, SaysWhyAFileDidNotOpen) {
    for (const ShellCase& c : kShell)
        EXPECT_EQ(plain(shellMessage(c.result)), c.message) << c.result;
}

}  // namespace
