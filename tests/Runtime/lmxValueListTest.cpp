#include <lmx/Runtime/lmxValueList.h>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace lmx {
namespace {

using TList = TValueList<int>;
using TVector = std::vector<int>;

TEST(ValueList, ReadsLikeAVector) {
    const TList list = {3, 4, 5};
    EXPECT_EQ(list.size(), 3U);
    EXPECT_FALSE(list.empty());
    EXPECT_EQ(list[1], 4);
    EXPECT_EQ(list.at(2), 5);
    EXPECT_THROW(list.at(3), std::out_of_range);
    EXPECT_EQ(list.front(), 3);
    EXPECT_EQ(list.back(), 5);
    EXPECT_EQ(list.data(), &list[0]);
    EXPECT_EQ(TVector(list.begin(), list.end()), (TVector{3, 4, 5}));
    EXPECT_EQ(std::span<const int>(list).size(), 3U);
    const TVector& values = list;
    EXPECT_EQ(values, (TVector{3, 4, 5}));
    EXPECT_TRUE(TList().empty());
}

TEST(ValueList, IsMadeOfASpan) {
    const TVector values = {1, 2};
    EXPECT_EQ(TList(std::span<const int>(values)), values);
}

TEST(ValueList, EqualsByItsValues) {
    TList list = {1};
    list.Set(0, 2);
    EXPECT_EQ(list, TList({2}));
    EXPECT_NE(list, TList({1}));
    EXPECT_EQ(list, TVector{2});
    EXPECT_NE(list, TVector());
}

struct TChangeRow {
    const char* Name;
    std::function<void(TList&)> Change;
    TVector Values; ///< of 1, 2, 3
};

class ChangeOfAValueList : public testing::TestWithParam<TChangeRow> {};

TEST_P(ChangeOfAValueList, IsCounted) {
    TList list = {1, 2, 3};
    const std::uint64_t count = list.GetChangeCount();
    EXPECT_EQ(list.GetChangeCount(), count);
    GetParam().Change(list);
    EXPECT_GT(list.GetChangeCount(), count);
    EXPECT_EQ(list, GetParam().Values);
}

INSTANTIATE_TEST_SUITE_P(
    Changes, ChangeOfAValueList,
    testing::Values(TChangeRow{"Set", [](TList& list) { list.Set(1, 7); }, {1, 7, 3}},
                    TChangeRow{"PushBack", [](TList& list) { list.push_back(4); }, {1, 2, 3, 4}},
                    TChangeRow{"PushBackOfItsOwn", [](TList& list) { list.push_back(list[0]); }, {1, 2, 3, 1}},
                    TChangeRow{"PopBack", [](TList& list) { list.pop_back(); }, {1, 2}},
                    TChangeRow{"Insert", [](TList& list) { list.insert(list.begin(), 9); }, {9, 1, 2, 3}},
                    TChangeRow{"Erase", [](TList& list) { list.erase(list.begin() + 1); }, {1, 3}},
                    TChangeRow{"EraseMany", [](TList& list) { list.erase(list.begin(), list.begin() + 2); }, {3}},
                    TChangeRow{"Clear", [](TList& list) { list.clear(); }, {}},
                    TChangeRow{"AssignValues",
                               [](TList& list) {
                                   list = {8, 9};
                               },
                               {8, 9}},
                    TChangeRow{"AssignAVector", [](TList& list) { list = TVector{8}; }, {8}},
                    TChangeRow{"AssignAList", [](TList& list) { list = TList({5}); }, {5}}),
    [](const auto& row) { return row.param.Name; });

TEST(ValueList, CountsBothSidesOfASwap) {
    TList a = {1};
    TList b = {2};
    const std::uint64_t countOfA = a.GetChangeCount();
    const std::uint64_t countOfB = b.GetChangeCount();
    std::swap(a, b);
    EXPECT_EQ(a, TVector{2});
    EXPECT_EQ(b, TVector{1});
    EXPECT_GT(a.GetChangeCount(), countOfA);
    EXPECT_GT(b.GetChangeCount(), countOfB);
}

} // namespace
} // namespace lmx
