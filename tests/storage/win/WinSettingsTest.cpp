// The settings in the real registry: what is written, read and removed there, and what is refused.
#include <gtest/gtest.h>

#include <algorithm>

#include "storage/RegistryStore.h"
#include "storage/Settings.h"
#include "tests/storage/win/TestKey.h"
#include "tests/storage/win/TestLog.h"

namespace {

using namespace std::string_literals;

/// The user's own settings stay, because the tests use a section that the program does not have.
struct WinSettings : testing::Test {
    Settings settings = userSettings();
    TestLog log;
    Text section = u"kardeltest-" + decimal(GetCurrentProcessId());
    Text path = u"Software\\VB and VBA Program Settings\\Kardel\\" + section;

    void SetUp() override { settings.removeSection(section); }
    void TearDown() override { settings.removeSection(section); }

    void setRaw(const Text& name, DWORD type, std::string_view bytes) const {
        HKEY opened = nullptr;
        RegCreateKeyExW(HKEY_CURRENT_USER, wide(path), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &opened,
                        nullptr);
        const UniqueKey key(opened);
        RegSetValueExW(opened, wide(name), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                       static_cast<DWORD>(bytes.size()));
    }
    Text text(const Text& name) {
        const SettingResult stored = settings.get(section, name);
        return stored.status == IoStatus::Done ? stored.text : u"(none)";
    }
};

TEST_F(WinSettings, AValueIsATextBelowTheApplicationsSection) {
    EXPECT_TRUE(saveSetting(settings, section, u"Name", u"caf\u00e9 \u0416\u3042"));
    EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, path, u"Name"), u"caf\u00e9 \u0416\u3042");
    EXPECT_EQ(text(u"NAME"), u"caf\u00e9 \u0416\u3042");
    EXPECT_EQ(log.text(), "(none)");
}

TEST_F(WinSettings, WhatIsMissingIsAbsentAndNotLogged) {
    EXPECT_EQ(settings.get(section, u"Name").status, IoStatus::Absent);
    EXPECT_EQ(settings.readSection(section).status, IoStatus::Absent);
    EXPECT_TRUE(settings.removeValue(section, u"Name"));
    EXPECT_TRUE(settings.removeSection(section));
    ASSERT_TRUE(saveSetting(settings, section, u"Other", u"x"));
    EXPECT_EQ(settings.get(section, u"Name").status, IoStatus::Absent);
    EXPECT_TRUE(settings.removeValue(section, u"Name"));
    EXPECT_EQ(log.text(), "(none)");
}

TEST_F(WinSettings, AnEmptyTextIsThere) {
    ASSERT_TRUE(saveSetting(settings, section, u"Name", u""));
    EXPECT_EQ(settings.get(section, u"Name").status, IoStatus::Done);
    EXPECT_EQ(settings.get(section, u"Name").text, u"");
}

TEST_F(WinSettings, ASectionIsReadInOneGo) {
    const Text longest(70000, u'\u00e8');
    std::vector<KeyText> values{{u"a", u"1"}, {u"long", longest}, {Text(300, u'n'), u"2"}, {u"empty", u""}};
    EXPECT_TRUE(settings.set(section, values));
    SectionResult read = settings.readSection(section);
    EXPECT_EQ(read.status, IoStatus::Done);
    std::sort(values.begin(), values.end());
    std::sort(read.values.begin(), read.values.end());
    EXPECT_EQ(read.values, values);
}

TEST_F(WinSettings, ATextIsReadToItsFirstZeroOrToItsEnd) {
    setRaw(u"open", REG_SZ, "a\0b\0"s);
    setRaw(u"two", REG_SZ, "a\0\0\0b\0\0\0"s);
    EXPECT_EQ(text(u"open"), u"ab");
    EXPECT_EQ(text(u"two"), u"a");
    SectionResult read = settings.readSection(section);
    std::sort(read.values.begin(), read.values.end());
    EXPECT_EQ(read.values, (std::vector<KeyText>{{u"open", u"ab"}, {u"two", u"a"}}));
}

TEST_F(WinSettings, ValuesAndSectionsAreRemoved) {
    settings.set(section, std::vector<KeyText>{{u"a", u"1"}, {u"b", u"2"}});
    EXPECT_TRUE(settings.removeValue(section, u"A"));
    EXPECT_EQ(text(u"a"), u"(none)");
    EXPECT_EQ(text(u"b"), u"2");
    EXPECT_TRUE(settings.removeSection(section));
    EXPECT_EQ(settings.readSection(section).status, IoStatus::Absent);
}

TEST_F(WinSettings, SectionsAreListed) {
    ASSERT_TRUE(saveSetting(settings, section, u"a", u"1"));
    const SectionNames sections = settings.sections();
    EXPECT_EQ(sections.status, IoStatus::Done);
    const std::vector<Text>& names = sections.names;
    EXPECT_EQ(std::count(names.begin(), names.end(), section), 1);
}

TEST_F(WinSettings, ANameThatIsNoSectionNameReachesNoOtherKey) {
    const TestKey outside;
    outside.create(u"below");
    ASSERT_TRUE(saveSetting(settings, section, u"a", u"1"));
    for (const Text& name : {Text(), Text(u"..\\x"), section + u"\\below", Text(u"\\")}) {
        EXPECT_FALSE(settings.removeSection(name));
        EXPECT_FALSE(settings.removeValue(name, u"a"));
        EXPECT_FALSE(saveSetting(settings, name, u"a", u"2"));
        EXPECT_EQ(settings.get(name, u"a").status, IoStatus::Failed);
        EXPECT_EQ(settings.readSection(name).status, IoStatus::Failed);
    }
    EXPECT_EQ(text(u"a"), u"1");
}

TEST_F(WinSettings, AFailureIsLogged) {
    EXPECT_FALSE(saveSetting(settings, Text(300, u's'), u"a", u"1"));  // a key's name ends at 255 characters
    EXPECT_EQ(log.lines(), 1);
    EXPECT_TRUE(log.has("\t(SaveSetting)\t[ Trying to create the section ''sss"));
}

TEST_F(WinSettings, NumbersAndExpandableTextsAreReadAsTextsAndAnythingElseIsAFailure) {
    EXPECT_TRUE(saveSetting(settings, section, u"a", u"1"));
    SaveRegValue(HKEY_CURRENT_USER, path, u"number", REG_DWORD, std::uint32_t{4294967295U});
    SaveRegValue(HKEY_CURRENT_USER, path, u"expand", REG_EXPAND_SZ, Text(u"%x% \u0416"));
    SaveRegValue(HKEY_CURRENT_USER, path, u"bytes", REG_BINARY, std::string("1\0", 2));
    EXPECT_EQ(text(u"number"), u"4294967295");
    EXPECT_EQ(text(u"expand"), u"%x% \u0416");
    EXPECT_EQ(settings.get(section, u"bytes").status, IoStatus::Failed);
    const SectionResult all = settings.readSection(section);
    EXPECT_EQ(valueOf(all, u"NUMBER").text, u"4294967295");
    EXPECT_EQ(valueOf(all, u"expand").text, u"%x% \u0416");
    EXPECT_EQ(all.unreadable, (std::vector<Text>{u"bytes"}));
    EXPECT_EQ(all.values.size(), 3U);
}

}  // namespace
