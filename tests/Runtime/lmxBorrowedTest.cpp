#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEventList.h>

#include <gtest/gtest.h>

#include <memory>

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

} // namespace
} // namespace lmx
