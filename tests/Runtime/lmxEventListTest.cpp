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

TEST(EventList, ACancelledCallableIsFreedAtOnce) {
    TIntEvents events;
    const auto witness = std::make_shared<int>(0);
    TSubscription subscription = events.Add([witness](int) {});
    EXPECT_EQ(witness.use_count(), 2);
    subscription.Cancel();
    EXPECT_EQ(witness.use_count(), 1);
    EXPECT_EQ(events.Count(), 0);
}

TEST(EventList, ACallableThatCancelsItselfIsFreedAfterItsCall) {
    TIntEvents events;
    const auto witness = std::make_shared<int>(7);
    TSubscription subscription;
    int seen = 0;
    subscription = events.Add([&subscription, &seen, witness](int) {
        subscription.Cancel();
        seen = *witness; // what it holds must still be there
    });
    events.Send(1);
    EXPECT_EQ(seen, 7);
    EXPECT_EQ(witness.use_count(), 1);
}

TEST(EventList, ACallableMayReplaceItself) {
    TIntEvents events;
    std::vector<int> calls;
    TSubscription subscription;
    subscription = events.Add([&](int) {
        calls.push_back(1);
        subscription = events.Add([&calls](int) { calls.push_back(2); });
    });
    events.Send(0);
    events.Send(0);
    EXPECT_EQ(calls, (std::vector<int>{1, 2}));
}

TEST(EventList, WhatGoesNeverOutnumbersWhatIsThere) {
    TIntEvents events;
    TReceiver stays;
    events.Add(&stays, &TReceiver::OnEvent);
    for (int i = 0; i < 1000; ++i) {
        TReceiver goes;
        events.Add(&goes, &TReceiver::OnEvent);
        static_cast<void>(events.Add([](int) {}));
    }
    EXPECT_EQ(events.Count(), 1);
    events.Send(1);
    EXPECT_EQ(stays.Received, std::vector<int>{1});
}

// ---- Subscriptions about one object

struct TSubject {};
using TSubjectEvents = TEventList<int, TSubject*>;

struct TListener : TEventReceiver {
    std::vector<int>* Diary;
    int Name;
    TListener(std::vector<int>* diary, int name) : Diary(diary), Name(name) {}
    void OnNews(int value, TSubject*) { Diary->push_back(10 * Name + value); }
};

struct EventListAbout : testing::Test {
    TSubjectEvents Events;
    TSubject A;
    TSubject B;
    std::vector<int> Diary;
    TListener One{&Diary, 1};
    TListener Two{&Diary, 2};
    TListener Three{&Diary, 3};
};

TEST_F(EventListAbout, HearOfThatObjectOnlyAndInTheOrderOfAll) {
    Events.AddAbout(&A, &One, &TListener::OnNews);
    Events.Add(&Two, &TListener::OnNews);
    Events.AddAbout(&B, &One, &TListener::OnNews);
    Events.AddAbout(&A, &Three, &TListener::OnNews);
    Events.Add(&Three, &TListener::OnNews);
    EXPECT_EQ(Events.Count(), 5);
    Events.Send(5, &A);
    EXPECT_EQ(Diary, (std::vector<int>{15, 25, 35, 35}));
    Diary.clear();
    Events.Send(6, &B);
    EXPECT_EQ(Diary, (std::vector<int>{26, 16, 36}));
    Diary.clear();
    Events.Send(7, nullptr);
    EXPECT_EQ(Diary, (std::vector<int>{27, 37}));
}

TEST_F(EventListAbout, EndWithTheirReceiver) {
    auto goes = std::make_unique<TListener>(&Diary, 4);
    Events.AddAbout(&A, goes.get(), &TListener::OnNews);
    Events.AddAbout(&A, &One, &TListener::OnNews);
    const TSubscription first = Events.Add([&](int, TSubject*) { goes.reset(); });
    Events.Send(1, &A);
    EXPECT_EQ(Diary, (std::vector<int>{41, 11}));
    Diary.clear();
    Events.Send(2, &A);
    EXPECT_EQ(Diary, std::vector<int>{12});
    EXPECT_EQ(Events.Count(), 2);
}

TEST_F(EventListAbout, OfObjectsThatComeAndGoOnlyTheLivingHear) {
    const TSubscription open = Events.Add([&](int, TSubject*) { Diary.push_back(0); });
    Events.AddAbout(&B, &Two, &TListener::OnNews);
    for (int i = 0; i < 100; ++i) { // one after the other about the same address
        TListener goes(&Diary, 4);
        Events.AddAbout(&A, &goes, &TListener::OnNews);
        Events.Send(1, &A);
    }
    EXPECT_EQ(Diary.size(), 200U);
    Events.AddAbout(&A, &One, &TListener::OnNews);
    EXPECT_EQ(Events.Count(), 3);
    Diary.clear();
    Events.Send(2, &A);
    Events.Send(3, &B);
    Events.Send(4, &A);
    EXPECT_EQ(Diary, (std::vector<int>{0, 12, 0, 23, 0, 14}));
}

TEST_F(EventListAbout, SendsWithinSendsHearTheirOwn) {
    Events.AddAbout(&A, &One, &TListener::OnNews);
    const TSubscription nested = Events.Add([&](int value, TSubject*) {
        if (value == 1)
            Events.Send(2, &B);
    });
    Events.AddAbout(&B, &Two, &TListener::OnNews);
    Events.AddAbout(&A, &Three, &TListener::OnNews);
    Events.Send(1, &A);
    EXPECT_EQ(Diary, (std::vector<int>{11, 22, 31}));
}

TEST_F(EventListAbout, WhatJoinsDuringASendWaitsForTheNext) {
    const TSubscription joining = Events.Add([&](int value, TSubject*) {
        if (value == 1)
            Events.AddAbout(&A, &One, &TListener::OnNews);
    });
    Events.AddAbout(&A, &Two, &TListener::OnNews);
    Events.Send(1, &A);
    EXPECT_EQ(Diary, std::vector<int>{21});
    Events.Send(2, &A);
    EXPECT_EQ(Diary, (std::vector<int>{21, 22, 12}));
}

TEST_F(EventListAbout, ASubscriberMayDestroyTheList) {
    auto events = std::make_unique<TSubjectEvents>();
    events->AddAbout(&A, &One, &TListener::OnNews);
    const TSubscription ends = events->Add([&](int, TSubject*) { events.reset(); });
    events->AddAbout(&A, &Two, &TListener::OnNews);
    events->Send(1, &A);
    EXPECT_EQ(events, nullptr);
    EXPECT_EQ(Diary, std::vector<int>{11});
}

// However many there are: the ones that are not concerned are not even looked at.
TEST_F(EventListAbout, OfManyObjectsAreToldOneByOne) {
    constexpr int Many = 50'000;
    std::vector<TSubject> subjects(Many);
    for (TSubject& subject : subjects)
        Events.AddAbout(&subject, &One, &TListener::OnNews);
    for (TSubject& subject : subjects)
        Events.Send(1, &subject);
    EXPECT_EQ(Diary.size(), subjects.size());
}

} // namespace
} // namespace lmx
