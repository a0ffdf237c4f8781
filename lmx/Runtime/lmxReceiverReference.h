#pragma once

#include <lmx/Runtime/lmxEventList.h>

#include <memory>

namespace lmx {

/// A borrowed pointer to an event receiver: it never keeps its target alive and goes nil with it, or when the target
/// stops receiving. Main thread only.
template<class T>
class TReceiverReference {
public:
    TReceiverReference() = default;
    TReceiverReference(T* target) // NOLINT(google-explicit-constructor)
        : FTarget(target),
          FLife(target ? target->GetLivenessToken() : std::weak_ptr<const void>()) {}

    T* Get() const { return FLife.expired() ? nullptr : FTarget; } ///< nil if there is none, or none any more

private:
    T* FTarget = nullptr;
    std::weak_ptr<const void> FLife;
};

} // namespace lmx
