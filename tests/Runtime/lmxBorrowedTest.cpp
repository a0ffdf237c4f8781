#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>

#include <gtest/gtest.h>

#include <memory>
#include <new>

namespace lmx {
namespace {

struct TReceiver : TEventReceiver {
    using TEventReceiver::StopReceiving;
};

TEST(Borrowed, BeginsNil) {
    EXPECT_EQ(TBorrowed<TReceiver>().Get(), nullptr);
    EXPECT_EQ(TBorrowed<TReceiver>(nullptr).Get(), nullptr);
}

TEST(Borrowed, GoesNilWithItsTarget) {
    auto receiver = std::make_unique<TReceiver>();
    const TBorrowed<TReceiver> reference(receiver.get());
    const TBorrowed<TReceiver> copy = reference;
    EXPECT_EQ(reference.Get(), receiver.get());
    receiver.reset();
    EXPECT_EQ(reference.Get(), nullptr);
    EXPECT_EQ(copy.Get(), nullptr);
}

TEST(Borrowed, GoesNilWhenItsTargetStopsReceiving) {
    TReceiver receiver;
    const TBorrowed<TReceiver> reference(&receiver);
    receiver.StopReceiving();
    EXPECT_EQ(reference.Get(), nullptr);
}

TEST(Borrowed, MayBeReplaced) {
    TReceiver first;
    TReceiver second;
    TBorrowed<TReceiver> reference(&first);
    reference = &second;
    EXPECT_EQ(reference.Get(), &second);
    reference = nullptr;
    EXPECT_EQ(reference.Get(), nullptr);
}

TEST(Borrowed, TellsAGoneTargetFromNoneAndFromWhatStandsInItsPlace) {
    alignas(TReceiver) unsigned char place[sizeof(TReceiver)];
    auto* receiver = new (place) TReceiver;
    const TBorrowed<TReceiver> reference(receiver);
    EXPECT_EQ(reference, TBorrowed<TReceiver>(receiver));
    receiver->~TReceiver();
    EXPECT_FALSE(reference == TBorrowed<TReceiver>());
    EXPECT_EQ(reference, TBorrowed<TReceiver>(reference));
    receiver = new (place) TReceiver;
    EXPECT_FALSE(reference == TBorrowed<TReceiver>(receiver));
    EXPECT_FALSE(reference);
    receiver->~TReceiver();
}

} // namespace
} // namespace lmx
