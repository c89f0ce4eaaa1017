// What fits into a text, where a paste is cut and what Ctrl+Backspace deletes, all without an editor.
#include "note/EditRules.h"

#include <gtest/gtest.h>

#include "tests/support/TestCodePages.h"

namespace {

FitsStore atMost(std::size_t units) {
    return [units](const Text& text) { return text.size() <= units; };
}

bool always(const Text&) {
    return true;
}

TEST(EditRules, InsertsInPlaceOfTheSelection) {
    EXPECT_EQ(withInserted(u"milk and bread", {5, 8}, u"or"), u"milk or bread");
    EXPECT_EQ(withInserted(u"milk", {4, 4}, u"!"), u"milk!");
    EXPECT_EQ(withInserted(u"milk", {0, 4}, u""), u"");
    EXPECT_EQ(withInserted(u"", {0, 0}, u"a"), u"a");
    EXPECT_EQ(withInserted(u"milk", {4, 9}, u"!"), u"milk!") << "a selection from a moment ago";
}

TEST(EditRules, CutsWhatDoesNotFit) {
    EXPECT_EQ(fittingPart(u"milk", {4, 4}, u" and bread", always), u" and bread");
    for (std::size_t room = 0; room <= 12; ++room) {
        const TextView part = fittingPart(u"milk", {4, 4}, u" and bread", atMost(4 + room));
        EXPECT_EQ(part, TextView(u" and bread").substr(0, room)) << room;
    }
    EXPECT_EQ(fittingPart(u"milk", {0, 4}, u"12345678", atMost(5)), u"12345")
        << "what is replaced makes room";
    EXPECT_EQ(fittingPart(u"far too long", {0, 0}, u"a", atMost(5)), u"");
    EXPECT_EQ(fittingPart(u"far too long", {0, 12}, u"short", atMost(5)), u"short");
    EXPECT_EQ(fittingPart(u"", {0, 0}, u"", atMost(0)), u"");
}

TEST(EditRules, NeverCutsALetterOrALineBreak) {
    EXPECT_EQ(fittingPart(u"", {0, 0}, u"a\U0001F600b", atMost(1)), u"a");
    EXPECT_EQ(fittingPart(u"", {0, 0}, u"a\U0001F600b", atMost(2)), u"a");
    EXPECT_EQ(fittingPart(u"", {0, 0}, u"a\U0001F600b", atMost(3)), u"a\U0001F600");
    EXPECT_EQ(fittingPart(u"", {0, 0}, u"\U0001F600", atMost(1)), u"");
    EXPECT_EQ(fittingPart(u"", {0, 0}, u"a\r\nb", atMost(2)), u"a");
    EXPECT_EQ(fittingPart(u"", {0, 0}, u"a\r\nb", atMost(3)), u"a\r\n");
}

TEST(EditRules, HalvesThatBelongToNoWholeAreCutLikeLetters) {
    for (const TextView text : {u"a\xDE00", u"\xD83D\x61", u"\xD83D\xD83D", u"a\n", u"\ra", u"\r\r", u"\n\n"})
        EXPECT_EQ(fittingPart(u"", {0, 0}, text, atMost(1)), text.substr(0, 1));
}

TEST(EditRules, CountsBytesWhereTheStoreDoes) {
    const CodePage page = kanaPage();
    const auto room = [&page](std::size_t bytes) {
        return [&page, bytes](const Text& text) { return encodedLength(page, text) <= bytes; };
    };
    EXPECT_EQ(fittingPart(u"abc", {3, 3}, u"\u3042\u3044\u3046", room(7)), u"\u3042\u3044");
    EXPECT_EQ(fittingPart(u"abc", {3, 3}, u"\u3042\u3044\u3046", room(8)), u"\u3042\u3044")
        << "half a letter is not inserted";
    EXPECT_EQ(fittingPart(u"abc", {3, 3}, u"\u3042\u3044\u3046", room(9)), u"\u3042\u3044\u3046");
    EXPECT_EQ(fittingPart(u"abc", {3, 3}, u"\u3042", room(4)), u"");
}

TEST(EditRules, APasteIsTheClipboardsText) {
    const TextView clipboard(u"one\ntwo\rthree\r\nfour\0rubbish", 26);
    EXPECT_EQ(pastedText(clipboard, false), u"one\r\ntwo\r\nthree\r\nfour");
    EXPECT_EQ(pastedText(clipboard, true), u"one") << "a title has one line";
    EXPECT_EQ(pastedText(u"\r\none", true), u"");
    EXPECT_EQ(pastedText(u"plain", true), u"plain");
    EXPECT_EQ(pastedText(u"", false), u"");
}

TEST(EditRules, CtrlBackspaceDeletesAWord) {
    const auto rest = [](TextView text) { return text.substr(0, wordStart(text, text.size())); };
    EXPECT_EQ(rest(u"milk and bread"), u"milk and ");
    EXPECT_EQ(rest(u"milk and  "), u"milk ") << "together with the blanks after it";
    EXPECT_EQ(rest(u"milk\tand"), u"milk\t");
    EXPECT_EQ(rest(u"milk, bread"), u"milk, ");
    EXPECT_EQ(rest(u"milk,"), u"milk");
    EXPECT_EQ(rest(u"what?!"), u"what");
    EXPECT_EQ(rest(u"über_9"), u"");
    EXPECT_EQ(rest(u"по-русски"), u"по-");
    EXPECT_EQ(rest(u"a \U0001F600\U0001F4DD"), u"a ");
    EXPECT_EQ(rest(u"one\r\ntwo"), u"one\r\n");
    EXPECT_EQ(rest(u"one\r\n"), u"one");
    EXPECT_EQ(rest(u"one\r\n\r\n"), u"one\r\n") << "one line break at a time";
    EXPECT_EQ(rest(u"one\r\n  "), u"one\r\n") << "only the blanks of the line";
    for (const TextView blank : {u" ", u"\t", u"\u00A0", u"\u3000"}) {
        EXPECT_EQ(rest(u"a" + Text(blank)), u"");
        EXPECT_EQ(rest(u"a!" + Text(blank)), u"a");
        EXPECT_EQ(rest(u"a" + Text(blank) + u"b"), u"a" + Text(blank));
    }
    for (const TextView letters : {u"azAZ09_", u"\u00A1\u00BF", u"\u3001\u3002", u"\x7F\x80"})
        EXPECT_EQ(rest(u"! " + Text(letters)), u"! ");
    for (const char16_t sign : TextView(u"!\"#$%&'()*+,-./:;<=>?@[\\]^`{|}~"))
        EXPECT_EQ(rest(Text(u"word") + sign), u"word");
    EXPECT_EQ(rest(u"   "), u"");
    EXPECT_EQ(rest(u""), u"");
    EXPECT_EQ(wordStart(u"milk and bread", 8), 5U) << "from the caret, wherever it stands";
    EXPECT_EQ(wordStart(u"milk", 99), 0U);
}

TEST(EditRules, KnowsWhatIsComposedAtTheCaret) {
    EXPECT_TRUE(standsAt(u"milk kana", {9, 9}, u"kana")) << "before the caret";
    EXPECT_TRUE(standsAt(u"milk kana", {5, 9}, u"kana")) << "selected";
    EXPECT_TRUE(standsAt(u"milk kana", {5, 5}, u"kana")) << "behind it";
    EXPECT_FALSE(standsAt(u"milk ", {5, 5}, u"kana"));
    EXPECT_FALSE(standsAt(u"kana and milk", {13, 13}, u"kana")) << "elsewhere";
    EXPECT_FALSE(standsAt(u"", {0, 0}, u"k"));
    EXPECT_TRUE(standsAt(u"milk", {4, 4}, u"")) << "nothing is composed, so it is there";
    EXPECT_FALSE(standsAt(u"milk", {9, 9}, u"kana"));
}

Text typed(TextView characters) {
    TypedText typing;
    Text text;
    for (const char16_t c : characters)
        text += typing.next(c);
    return text;
}

TEST(EditRules, HalvesOfALetterAreTypedTogetherOrNotAtAll) {
    EXPECT_EQ(typed(u"a\U0001F600b"), u"a\U0001F600b");
    TypedText typing;
    EXPECT_EQ(typing.next(0xD83D), u"");
    EXPECT_EQ(typing.next(0xDE00), u"\U0001F600");
    const char16_t lone[] = {u'a', 0xD83D, u'b', 0xDE00, u'c', 0xD83D, 0xD83D, 0xDE00, 0};
    EXPECT_EQ(typed(lone), u"abc\U0001F600");
}

TEST(EditRules, LineBreaksThatAreTypedAreWhole) {
    EXPECT_EQ(typed(u"a\rb"), u"a\r\nb");
    EXPECT_EQ(typed(u"a\nb"), u"a\r\nb");
    EXPECT_EQ(typed(u"a\r\nb"), u"a\r\nb") << "one break that comes as two characters";
    EXPECT_EQ(typed(u"a\r\rb"), u"a\r\n\r\nb");
    EXPECT_EQ(typed(u"a\n\nb"), u"a\r\n\r\nb");
    EXPECT_EQ(typed(u"a\r\n\r\nb"), u"a\r\n\r\nb");
    EXPECT_EQ(typed(u"a\n\rb"), u"a\r\n\r\nb");
}

TEST(EditRules, TheWheelAddsUpToLines) {
    WheelLines wheel;
    EXPECT_EQ(wheel.turned(120, 3), -3) << "away from the user: up";
    EXPECT_EQ(wheel.turned(-120, 3), 3);
    EXPECT_EQ(wheel.turned(-240, 1), 2);
    EXPECT_EQ(wheel.turned(-30, 3), 0);
    EXPECT_EQ(wheel.turned(-30, 3), 1) << "a fine wheel";
    EXPECT_EQ(wheel.turned(-30, 3), 1);
    EXPECT_EQ(wheel.turned(-30, 3), 1);
    EXPECT_EQ(wheel.turned(-30, 3), 0);
    EXPECT_EQ(wheel.turned(0, 3), 0);
    EXPECT_EQ(wheel.turned(-30, 3), 1) << "a message without a turn forgets nothing";
    EXPECT_EQ(wheel.turned(-30, 3), 1);
    EXPECT_EQ(wheel.turned(-30, 3), 1);
    EXPECT_EQ(wheel.turned(-30, 3), 0);
    EXPECT_EQ(wheel.turned(30, 3), 0) << "turning back does not finish the other way";
    EXPECT_EQ(wheel.turned(30, 3), -1);
}

TEST(EditRules, ScrollingStopsAtBothEnds) {
    EXPECT_EQ(scrolledTo(0, 3, 20, 5), 3);
    EXPECT_EQ(scrolledTo(14, 3, 20, 5), 15) << "the last page stays full";
    EXPECT_EQ(scrolledTo(2, -3, 20, 5), 0);
    EXPECT_EQ(scrolledTo(0, 3, 4, 5), 0) << "all of it is seen";
    EXPECT_EQ(scrolledTo(17, 3, 20, 5), 17) << "already beyond the end: turning further does not scroll back";
    EXPECT_EQ(scrolledTo(17, -1, 20, 5), 16);
    EXPECT_EQ(scrolledTo(0, 1, 2, 0), 1) << "a page shows at least one line";
}

}  // namespace
