#include <lmx/Runtime/lmxReceiverReference.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

struct TReceiver : TEventReceiver {
    using TEventReceiver::StopReceiving;
};

TEST(ReceiverReference, BeginsNil) {
    EXPECT_EQ(TReceiverReference<TReceiver>().Get(), nullptr);
    EXPECT_EQ(TReceiverReference<TReceiver>(nullptr).Get(), nullptr);
}

TEST(ReceiverReference, GoesNilWithItsTarget) {
    auto receiver = std::make_unique<TReceiver>();
    const TReceiverReference<TReceiver> reference(receiver.get());
    const TReceiverReference<TReceiver> copy = reference;
    EXPECT_EQ(reference.Get(), receiver.get());
    receiver.reset();
    EXPECT_EQ(reference.Get(), nullptr);
    EXPECT_EQ(copy.Get(), nullptr);
}

TEST(ReceiverReference, GoesNilWhenItsTargetStopsReceiving) {
    TReceiver receiver;
    const TReceiverReference<TReceiver> reference(&receiver);
    receiver.StopReceiving();
    EXPECT_EQ(reference.Get(), nullptr);
}

TEST(ReceiverReference, MayBeReplaced) {
    TReceiver first;
    TReceiver second;
    TReceiverReference<TReceiver> reference(&first);
    reference = &second;
    EXPECT_EQ(reference.Get(), &second);
    reference = nullptr;
    EXPECT_EQ(reference.Get(), nullptr);
}

} // namespace
} // namespace lmx
