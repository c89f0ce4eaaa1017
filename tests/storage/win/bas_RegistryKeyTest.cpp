#include "storage/bas_RegistryKey.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/storage/win/TestKey.h"
#include "tests/storage/win/TestLog.h"

namespace {

using namespace std::string_literals;

struct RegistryKey : testing::Test {
    TestKey key;
    TestLog log;

    std::int16_t save(const Text& name, DWORD type, const RegData& value) {
        return SaveRegValue(HKEY_CURRENT_USER, key.path, name, type, value);
    }
};

TEST_F(RegistryKey, EachTypeIsReadBackAsItWasGiven) {
    key.create();
    EXPECT_EQ(save(u"none", REG_NONE, {}), 0);
    EXPECT_EQ(key.raw(u"none"), std::pair(0, ""s));
    EXPECT_EQ(save(u"text", REG_SZ, Text(u"\u00e8\u0416")), 0);
    EXPECT_EQ(key.raw(u"text"), std::pair(1, "\xE8\0\x16\x04\0\0"s));
    EXPECT_EQ(save(u"path", REG_EXPAND_SZ, Text(u"%a%")), 0);
    EXPECT_EQ(key.raw(u"path"), std::pair(2, "%\0a\0%\0\0\0"s));
    EXPECT_EQ(save(u"bytes", REG_BINARY, "\x01\0\xFF"s), 0);
    EXPECT_EQ(key.raw(u"bytes"), std::pair(3, "\x01\0\xFF"s));
    EXPECT_EQ(save(u"number", REG_DWORD, std::uint32_t{0x12345678}), 0);
    EXPECT_EQ(key.raw(u"number"), std::pair(4, "\x78\x56\x34\x12"s));
    EXPECT_EQ(save(u"list", REG_MULTI_SZ, std::vector<Text>{u"ab", u"c"}), 0);
    EXPECT_EQ(key.raw(u"list"), std::pair(7, "a\0b\0\0\0c\0\0\0\0\0"s));
    EXPECT_EQ(log.text(), "(none)");
}

TEST_F(RegistryKey, AMissingKeyIsCreatedWithOneLineInTheLog) {
    EXPECT_EQ(save(u"name", REG_SZ, Text(u"value")), 0);
    EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, key.path, u"name"), u"value");
    EXPECT_EQ(log.lines(), 1);
    EXPECT_TRUE(log.has("\t(Call SaveRegValue)\t[ Trying to open the Registry key ''Software\\KardelTest-"));
    EXPECT_TRUE(log.has("'' failure.; Err=2 ]\r\n"));
}

TEST_F(RegistryKey, AKeyThatCannotBeCreatedIsReported) {
    EXPECT_NE(SaveRegValue(nullptr, key.path, u"name", REG_SZ, Text(u"x")), 0);
    EXPECT_EQ(log.lines(), 2);
    EXPECT_TRUE(log.has("[ Trying to create the Registry key ''Software\\KardelTest-"));
}

TEST_F(RegistryKey, AnotherTypeOrDataThatDoesNotFitIsRefused) {
    key.create();
    EXPECT_NE(save(u"name", REG_QWORD, std::uint32_t{1}), 0);
    EXPECT_NE(save(u"name", 99, Text(u"x")), 0);
    EXPECT_NE(save(u"name", REG_SZ, std::uint32_t{1}), 0);
    EXPECT_NE(save(u"name", REG_DWORD, Text(u"x")), 0);
    EXPECT_EQ(key.raw(u"name").first, -1);
    EXPECT_EQ(log.lines(), 4);
    EXPECT_TRUE(log.has("[ Trying to save the Registry value ''name'' failure.; Err=87 ]"));
}

TEST_F(RegistryKey, PathsAreJoinedByOneBackslash) {
    key.create(u"below");
    EXPECT_EQ(SaveRegValue(HKEY_CURRENT_USER, key.path + u"\\\\below\\", u"name", REG_SZ, Text(u"x")), 0);
    EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, u"\\" + key.path + u"\\below", u"name"), u"x");
    EXPECT_EQ(log.text(), "(none)");
}

TEST_F(RegistryKey, WhatIsMissingOrNoTextReadsAsNothing) {
    EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, key.path, u"name"), std::nullopt);
    key.create();
    EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, key.path, u"name"), std::nullopt);
    save(u"name", REG_DWORD, std::uint32_t{65});
    EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, key.path, u"name"), std::nullopt);
    EXPECT_EQ(log.text(), "(none)");
}

TEST_F(RegistryKey, TextsOfEveryLengthAreReadWhole) {
    key.create();
    for (const std::size_t length : {0U, 1U, 62U, 63U, 64U, 65U, 66U, 1000U, 50000U}) {
        const Text text(length, u'\u00e8');
        save(u"name", REG_SZ, text);
        EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, key.path, u"name"), text) << length;
    }
}

TEST_F(RegistryKey, ATextIsReadToItsFirstZeroOrToItsEnd) {
    key.setRaw(u"open", REG_SZ, "a\0b\0"s);
    key.setRaw(u"odd", REG_SZ, "a\0b"s);
    key.setRaw(u"two", REG_SZ, "a\0\0\0b\0\0\0"s);
    key.setRaw(u"empty", REG_SZ, "");
    EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, key.path, u"open"), u"ab");
    EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, key.path, u"odd"), u"a");
    EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, key.path, u"two"), u"a");
    EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, key.path, u"empty"), u"");
}

TEST_F(RegistryKey, AllDirectSubKeysAreListed) {
    EXPECT_EQ(EnumRegKeys(HKEY_CURRENT_USER, key.path).code, ERROR_FILE_NOT_FOUND);
    key.create(u"one\\deeper");
    key.create(u"two");
    key.create(Text(255, u'n'));
    std::vector<Text> names = EnumRegKeys(HKEY_CURRENT_USER, key.path).names;
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<Text>{Text(255, u'n'), u"one", u"two"}));
}

}  // namespace
