// The end of a test's name that says which store it is tried with.
#pragma once

#include <gtest/gtest.h>

#include <string>

/// For tests whose parameter says whether the notes are in the registry.
inline std::string storeName(const testing::TestParamInfo<bool>& store) {
    return store.param ? "Registry" : "Files";
}
