#pragma once

#include <lmx/Runtime/lmxLifetime.h>

namespace lmx {

/// A reference to an object that somebody else owns: it never keeps its target alive and goes nil with it. For objects
/// that have a lifetime (GetLifetime). Whoever tells others and goes on holds one to itself, and asks it:
///
///     const TBorrowed self(this);
///     FOnChanged.Send(this);
///     if (!self)
///         return;
template<class T>
class TBorrowed {
public:
    TBorrowed() = default;
    TBorrowed(T* target) // NOLINT(google-explicit-constructor)
        : FTarget(target),
          FLife(target ? target->GetLifetime().Watch() : TLifeWatch()) {}

    T* Get() const { return FLife.IsOver() ? nullptr : FTarget; } ///< nil if there is none, or none any more
    explicit operator bool() const { return Get() != nullptr; }
    T* operator->() const { return Get(); }

    /// Whether both refer to the same object, living or gone.
    friend bool operator==(const TBorrowed& a, const TBorrowed& b) {
        return a.FTarget == b.FTarget && a.FLife == b.FLife;
    }

private:
    T* FTarget = nullptr;
    TLifeWatch FLife;
};

} // namespace lmx
