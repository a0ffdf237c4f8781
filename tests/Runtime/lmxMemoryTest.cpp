#include <lmx/Runtime/lmxMemory.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace lmx {
namespace {

TEST(Memory, NoMachineHoldsMoreThanItCanAddress) {
    EXPECT_THROW(CheckMemory(std::numeric_limits<std::uint64_t>::max() / 2), EOutOfMemory);
    EXPECT_THROW(CheckMemory(std::uint64_t{1} << 56), EOutOfMemory);
    EXPECT_NO_THROW(CheckMemory(0));
    EXPECT_NO_THROW(CheckMemory(1 << 20));
}

TEST(Memory, WantOfMemoryHasOneException) {
    EXPECT_THROW(OrOutOfMemory([] { throw std::bad_alloc(); }), EOutOfMemory);
    EXPECT_THROW(OrOutOfMemory([] { throw std::bad_array_new_length(); }), EOutOfMemory);
    EXPECT_THROW(OrOutOfMemory([] { return std::vector<int>(std::numeric_limits<std::size_t>::max()); }), EOutOfMemory);
}

TEST(Memory, OtherFailuresPass) {
    EXPECT_THROW(OrOutOfMemory([] { throw EInvalidOp(QStringLiteral("other")); }), EInvalidOp);
    EXPECT_THROW(OrOutOfMemory([] { throw std::out_of_range("other"); }), std::out_of_range);
}

TEST(Memory, WhatIsMadeIsReturned) {
    int number = 1;
    OrOutOfMemory([&]() -> int& { return number; }) = 2;
    EXPECT_EQ(number, 2);
    EXPECT_EQ(OrOutOfMemory([] { return std::string("text"); }), "text");
}

} // namespace
} // namespace lmx
