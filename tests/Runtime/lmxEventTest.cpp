#include <lmx/Runtime/lmxEvent.h>

#include <lmx/Runtime/lmxExceptions.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

TEST(Event, CallsItsHandler) {
    int sum = 0;
    const TEvent<int, int> event([&](int a, int b) { sum += 10 * a + b; });
    EXPECT_TRUE(event);
    event(1, 2);
    event(3, 4);
    EXPECT_EQ(sum, 46);
}

TEST(Event, WithoutAHandlerDoesNothing) {
    TEvent<int> event;
    EXPECT_FALSE(event);
    event(1);
    event = nullptr;
    EXPECT_FALSE(event);
    event = std::function<void(int)>();
    EXPECT_FALSE(event);
    event(1);
}

TEST(Event, ItsHandlerMayReplaceItself) {
    TEvent<int> event;
    const auto witness = std::make_shared<int>(7);
    int seen = 0;
    event = [&event, &seen, witness](int value) {
        event = [&seen](int next) { seen = 100 * next; };
        seen = *witness + value; // what it holds must still be there
    };
    event(1);
    EXPECT_EQ(seen, 8);
    event(2);
    EXPECT_EQ(seen, 200);
}

TEST(Event, ItsHandlerMayDestroyTheEvent) {
    auto event = std::make_unique<TEvent<>>();
    const auto witness = std::make_shared<int>(7);
    int seen = 0;
    *event = [&event, &seen, witness] {
        event.reset();
        seen = *witness;
    };
    (*event)();
    EXPECT_EQ(event, nullptr);
    EXPECT_EQ(seen, 7);
}

TEST(Event, WhatItsHandlerRaisesGoesToTheCaller) {
    const TEvent<> event([] { throw EInvalidOperation(QStringLiteral("told")); });
    EXPECT_THROW(event(), EInvalidOperation);
}

} // namespace
} // namespace lmx
