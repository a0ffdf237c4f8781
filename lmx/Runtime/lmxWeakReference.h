#pragma once

#include <memory>

namespace lmx {

/// An uncounted reference to a counted interface: it never keeps its target alive and goes nil with it.
template<class T>
class TWeakReference {
public:
    TWeakReference() = default;
    TWeakReference(const std::shared_ptr<T>& target) : FTarget(target) {} // NOLINT(google-explicit-constructor)

    std::shared_ptr<T> Get() const { return FTarget.lock(); } ///< a counted copy, or nil
    bool IsSet() const { return !FTarget.expired(); }
    void Set(const std::shared_ptr<T>& target) { FTarget = target; }
    void Clear() { FTarget.reset(); }

private:
    std::weak_ptr<T> FTarget;
};

} // namespace lmx
