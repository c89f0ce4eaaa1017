// The settings in the real registry: what is written, read and removed there, and what is refused.
#include <gtest/gtest.h>

#include <algorithm>

#include "storage/RegistryStore.h"
#include "storage/Settings.h"
#include "tests/storage/win/TestKey.h"
#include "tests/storage/win/TestLog.h"

namespace {

using namespace std::string_literals;

/// The user's own settings stay: the tests use a section that the program has not.
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
    Text text(const Text& name) { return settingOr(settings, section, name, u"(none)"); }
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
    saveSetting(settings, section, u"Other", u"x");
    EXPECT_EQ(settings.get(section, u"Name").status, IoStatus::Absent);
    EXPECT_TRUE(settings.removeValue(section, u"Name"));
    EXPECT_EQ(log.text(), "(none)");
}

TEST_F(WinSettings, AnEmptyTextIsThere) {
    saveSetting(settings, section, u"Name", u"");
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

TEST_F(WinSettings, AValueOfAnotherTypeReadsAsMissing) {
    saveSetting(settings, section, u"text", u"x");
    setRaw(u"number", REG_DWORD, "\x41\0\0\0"s);
    setRaw(u"bytes", REG_BINARY, std::string(5000, 'x'));
    setRaw(u"path", REG_EXPAND_SZ, "a\0\0\0"s);
    EXPECT_EQ(text(u"number"), u"(none)");
    EXPECT_EQ(text(u"bytes"), u"(none)");
    EXPECT_EQ(text(u"path"), u"(none)");
    EXPECT_EQ(settings.readSection(section).values, (std::vector<KeyText>{{u"text", u"x"}}));
}

TEST_F(WinSettings, ATextWithoutItsEndOrWithTwoIsReadToTheFirst) {
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
    saveSetting(settings, section, u"a", u"1");
    const std::vector<Text> names = settings.sections();
    EXPECT_EQ(std::count(names.begin(), names.end(), section), 1);
}

TEST_F(WinSettings, ANameThatIsNoSectionsReachesNoOtherKey) {
    const TestKey outside;
    outside.create(u"below");
    saveSetting(settings, section, u"a", u"1");
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

TEST_F(WinSettings, EverythingOfTheApplicationIsRemovedAndNothingOfOthers) {
    const Text all = u"Software\\VB and VBA Program Settings";
    if (!settings.sections().empty()) GTEST_SKIP() << "this user has settings of the program, which stay";
    HKEY opened = nullptr;
    const Text other = all + u"\\KardelTest-" + decimal(GetCurrentProcessId());
    RegCreateKeyExW(HKEY_CURRENT_USER, wide(other), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &opened, nullptr);
    const UniqueKey key(opened);
    saveSetting(settings, section, u"a", u"1");
    EXPECT_TRUE(settings.removeAll());
    EXPECT_TRUE(settings.sections().empty());
    std::vector<Text> names = EnumRegKeys(HKEY_CURRENT_USER, all);
    EXPECT_EQ(std::count(names.begin(), names.end(), u"Kardel"), 0);
    EXPECT_EQ(std::count(names.begin(), names.end(), other.substr(all.size() + 1)), 1);
    EXPECT_TRUE(settings.removeAll());
    RegDeleteTreeW(HKEY_CURRENT_USER, wide(other));
}

}  // namespace
