#include <lmx/Runtime/Private/lmxMemory.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace lmx {
namespace {

using tests::MessageOf;

constexpr std::uint64_t MoreThanAddresses = std::uint64_t{1} << 60;

TEST(Memory, IsThereOrIsMissing) {
    EXPECT_NO_THROW(NeedMemory(0));
    EXPECT_NO_THROW(NeedMemory(1024 * 1024));
    EXPECT_EQ(MessageOf<EOutOfMemory>([] { NeedMemory(MoreThanAddresses); }), "Out of memory");
    EXPECT_THROW(NeedMemory(std::numeric_limits<std::uint64_t>::max()), EOutOfMemory);
    EXPECT_THROW(NeedMemory(std::uint64_t{1} << 56), EOutOfMemory) << "more than any machine has";
}

TEST(Memory, OfManyValuesDoesNotWrapAround) {
    EXPECT_NO_THROW(NeedMemoryFor<double>(1000));
    EXPECT_THROW(NeedMemoryFor<double>(MoreThanAddresses / 8), EOutOfMemory);
    EXPECT_THROW(NeedMemoryFor<double>((std::uint64_t{1} << 61) + 1), EOutOfMemory) << "8 bytes, if it wrapped";
}

TEST(Memory, AnActionPassesItsResultAndItsFailures) {
    EXPECT_EQ(WithinMemory([] { return 7; }), 7);
    EXPECT_EQ(WithinMemory("a.rst", [] { return 7; }), 7);
    EXPECT_EQ(MessageOf<EInvalidOp>([] { WithinMemory([] { throw EInvalidOp("other"); }); }), "other");
    EXPECT_EQ(MessageOf<EInvalidOp>([] { WithinMemory("a.rst", [] { throw EInvalidOp("other"); }); }), "other");
}

TEST(Memory, WhatTheStandardLibraryRaisesGetsOurName) {
    EXPECT_THROW(WithinMemory([] { throw std::bad_alloc(); }), EOutOfMemory);
    EXPECT_THROW(WithinMemory([] { std::vector<double>().reserve(std::numeric_limits<std::size_t>::max()); }),
                 EOutOfMemory);
    for (const auto& action :
         {+[] { throw std::bad_alloc(); }, +[] { throw std::length_error("vector"); }, +[] { throw EOutOfMemory(); }})
        EXPECT_EQ(MessageOf<EFileException>([&] { WithinMemory("a.rst", action); }), "a.rst: does not fit into memory");
}

TEST(Memory, LargePagesChangeNoByte) {
    std::vector<char> bytes(9 << 20, 'x');
    PreferLargePages(bytes.data() + 1, bytes.size() - 2);
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), 'x'), 9 << 20);
    PreferLargePages(bytes.data(), 100);
    PreferLargePages(nullptr, 0);
}

} // namespace
} // namespace lmx
