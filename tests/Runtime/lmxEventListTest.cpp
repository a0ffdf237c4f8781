#include <lmx/Runtime/lmxEventList.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <vector>

namespace lmx {
namespace {

using TIntEvents = TEventList<int>;

struct TReceiver : TEventReceiver {
    std::vector<int> Received;
    void OnEvent(int value) { Received.push_back(value); }
    void OnOther(int value) { Received.push_back(-value); }
    void OnFailing(int) { throw std::runtime_error("swallowed"); }
    void Stop() { StopReceiving(); }
};

TEST(EventList, CallsSubscribersInOrder) {
    TIntEvents events;
    TReceiver receiver;
    events.Add(&receiver, &TReceiver::OnEvent);
    events.Add(&receiver, &TReceiver::OnOther);
    events.Send(3);
    EXPECT_EQ(receiver.Received, (std::vector<int>{3, -3}));
}

TEST(EventList, DeliversTwiceWhatWasAddedTwiceAndRemovesTheFirstEqual) {
    TIntEvents events;
    TReceiver receiver;
    events.Add(&receiver, &TReceiver::OnEvent);
    events.Add(&receiver, &TReceiver::OnOther);
    events.Add(&receiver, &TReceiver::OnEvent);
    events.Remove(&receiver, &TReceiver::OnEvent);
    events.Send(1);
    EXPECT_EQ(receiver.Received, (std::vector<int>{-1, 1}));
}

TEST(EventList, RemovingWhatIsNotThereIsNoError) {
    TIntEvents events;
    TReceiver receiver;
    events.Remove(&receiver, &TReceiver::OnEvent);
    EXPECT_EQ(events.Count(), 0);
}

TEST(EventList, AnExceptionEndsWithItsSubscriber) {
    TIntEvents events;
    TReceiver receiver;
    events.Add(&receiver, &TReceiver::OnFailing);
    events.Add(&receiver, &TReceiver::OnEvent);
    events.Send(7);
    EXPECT_EQ(receiver.Received, std::vector<int>{7});
}

TEST(EventList, ADestroyedReceiverIsDropped) {
    TIntEvents events;
    auto receiver = std::make_unique<TReceiver>();
    events.Add(receiver.get(), &TReceiver::OnEvent);
    receiver.reset();
    EXPECT_EQ(events.Count(), 0);
    events.Send(1);
}

TEST(EventList, AReceiverThatStoppedReceivingIsNotCalled) {
    TIntEvents events;
    TReceiver receiver;
    events.Add(&receiver, &TReceiver::OnEvent);
    receiver.Stop();
    events.Send(1);
    EXPECT_TRUE(receiver.Received.empty());
}

TEST(EventList, ASubscriptionEndsWithItsHolder) {
    TIntEvents events;
    int sum = 0;
    {
        const TSubscription subscription = events.Add([&sum](int value) { sum += value; });
        events.Send(5);
    }
    events.Send(6);
    EXPECT_EQ(sum, 5);
}

TEST(EventList, ASubscriptionMayOutliveItsList) {
    auto events = std::make_unique<TIntEvents>();
    TSubscription subscription = events->Add([](int) {});
    events.reset();
    EXPECT_TRUE(subscription.IsActive());
    subscription.Cancel();
    EXPECT_FALSE(subscription.IsActive());
}

TEST(EventList, WhatASendRemovesIsNoLongerCalled) {
    TIntEvents events;
    TReceiver receiver;
    const TSubscription subscription = events.Add([&](int) { events.Remove(&receiver, &TReceiver::OnEvent); });
    events.Add(&receiver, &TReceiver::OnEvent);
    events.Send(1);
    EXPECT_TRUE(receiver.Received.empty());
}

TEST(EventList, WhatASendAddsIsCalledFromTheNextSendOn) {
    TIntEvents events;
    TReceiver receiver;
    bool added = false;
    const TSubscription subscription = events.Add([&](int) {
        if (!added)
            events.Add(&receiver, &TReceiver::OnEvent);
        added = true;
    });
    events.Send(1);
    EXPECT_TRUE(receiver.Received.empty());
    events.Send(2);
    EXPECT_EQ(receiver.Received, std::vector<int>{2});
}

TEST(EventList, ANestedSendCallsWhatWasAddedBeforeIt) {
    TIntEvents events;
    TReceiver receiver;
    const TSubscription subscription = events.Add([&](int value) {
        if (value != 1)
            return;
        events.Add(&receiver, &TReceiver::OnEvent);
        events.Send(2);
    });
    events.Send(1);
    EXPECT_EQ(receiver.Received, std::vector<int>{2});
}

TEST(EventList, ASubscriberMayDestroyTheList) {
    auto events = std::make_unique<TIntEvents>();
    TReceiver receiver;
    const TSubscription subscription = events->Add([&](int) { events.reset(); });
    events->Add(&receiver, &TReceiver::OnEvent);
    events->Send(1);
    EXPECT_EQ(events, nullptr);
    EXPECT_TRUE(receiver.Received.empty());
}

TEST(EventList, ASubscriberMayDestroyAnotherReceiver) {
    TIntEvents events;
    auto victim = std::make_unique<TReceiver>();
    const TSubscription subscription = events.Add([&](int) { victim.reset(); });
    events.Add(victim.get(), &TReceiver::OnEvent);
    events.Send(1);
    events.Send(2);
    EXPECT_EQ(events.Count(), 1);
}

TEST(EventList, ASendUnderAConditionEndsWithIt) {
    TIntEvents events;
    int calls = 0;
    bool goesOn = true;
    const TSubscription first = events.Add([&](int) { ++calls; });
    const TSubscription second = events.Add([&](int) {
        ++calls;
        goesOn = false;
    });
    const TSubscription third = events.Add([&](int) { ++calls; });
    events.SendWhile([&] { return goesOn; }, 1);
    EXPECT_EQ(calls, 2);
    events.SendWhile([&] { return goesOn; }, 2);
    EXPECT_EQ(calls, 2);
    events.Send(3);
    EXPECT_EQ(calls, 5) << "the list is in order after a send that ended early";
}

TEST(EventList, ACopyOfAReceiverIsAReceiverOfItsOwn) {
    TIntEvents events;
    auto original = std::make_unique<TReceiver>();
    const TReceiver copy(*original);
    events.Add(original.get(), &TReceiver::OnEvent);
    original.reset();
    events.Send(1);
    EXPECT_TRUE(copy.Received.empty());
}

TEST(EventList, ACallableMayCancelItself) {
    TIntEvents events;
    TSubscription subscription;
    int calls = 0;
    subscription = events.Add([&](int) {
        ++calls;
        subscription.Cancel();
    });
    events.Send(1);
    events.Send(2);
    EXPECT_EQ(calls, 1);
}

TEST(EventList, AddingDropsWhatHasGone) {
    TIntEvents events;
    const auto witness = std::make_shared<int>(0);
    {
        const TSubscription subscription = events.Add([witness](int) {});
    }
    EXPECT_EQ(witness.use_count(), 2) << "held until the list is touched";
    TReceiver receiver;
    events.Add(&receiver, &TReceiver::OnEvent);
    EXPECT_EQ(witness.use_count(), 1);
    EXPECT_EQ(events.Count(), 1);
}

} // namespace
} // namespace lmx
