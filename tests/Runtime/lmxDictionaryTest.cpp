#include <lmx/Runtime/lmxDictionary.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

#include <string>

namespace lmx {
namespace {

using tests::MessageOf;

struct Dictionary : testing::Test {
    TDictionary<int, std::string> Names;

    void SetUp() override {
        Names.Add(2, "two");
        Names.Add(1, "one");
    }
};

TEST_F(Dictionary, RefusesAKeyThatIsThereAndKeepsItsValue) {
    EXPECT_EQ(MessageOf<EListError>([this] { Names.Add(2, "zwei"); }), "Duplicates not allowed");
    EXPECT_EQ(Names.GetItem(2), "two");
    EXPECT_EQ(Names.Count(), 2U);
}

TEST_F(Dictionary, ReplacesOrAddsOnRequest) {
    Names.AddOrSetValue(2, "zwei");
    Names.AddOrSetValue(3, "drei");
    EXPECT_EQ(Names.GetItem(2), "zwei");
    EXPECT_EQ(Names.GetItem(3), "drei");
}

TEST_F(Dictionary, RefusesToReadAnAbsentKey) {
    EXPECT_EQ(MessageOf<EListError>([this] { Names.GetItem(7); }), "Item not found");
    EXPECT_FALSE(Names.ContainsKey(7));
    EXPECT_TRUE(Names.ContainsKey(1));
}

TEST_F(Dictionary, TriesAndLeavesTheValueAloneWithoutTheKey) {
    std::string name = "before";
    EXPECT_FALSE(Names.TryGetValue(7, name));
    EXPECT_EQ(name, "before");
    EXPECT_TRUE(Names.TryGetValue(1, name));
    EXPECT_EQ(name, "one");
}

TEST_F(Dictionary, ForgetsKeys) {
    Names.Remove(7);
    EXPECT_EQ(Names.Count(), 2U);
    Names.Remove(2);
    EXPECT_FALSE(Names.ContainsKey(2));
    Names.Clear();
    EXPECT_EQ(Names.Count(), 0U);
}

TEST_F(Dictionary, IsWalkedInTheOrderOfItsKeys) {
    std::string all;
    for (const auto& [key, name] : Names)
        all += std::to_string(key) + name + ' ';
    EXPECT_EQ(all, "1one 2two ");
}

} // namespace
} // namespace lmx
