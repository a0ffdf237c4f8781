#pragma once

#include <memory>

namespace lmx {

/// Tells whether an object is still there. Copies watch the same object; one that watches nothing says that it is over.
/// Copying is safe on any thread; the answer is for the thread on which the object lives.
class TLifeWatch {
public:
    TLifeWatch() = default;
    explicit TLifeWatch(std::weak_ptr<const void> life) : FLife(std::move(life)) {}

    bool IsOver() const { return FLife.expired(); }

    /// Whether both watch the same object, also after it has gone.
    friend bool operator==(const TLifeWatch& a, const TLifeWatch& b) {
        return !a.FLife.owner_before(b.FLife) && !b.FLife.owner_before(a.FLife);
    }

private:
    std::weak_ptr<const void> FLife;
};

/// Member of an object that tells others in the middle of its work: whoever is told may destroy the object, and the
/// work must notice. A class that has one gives it by GetLifetime, and then TBorrowed refers to its objects. Copies are
/// lifetimes of their own.
class TLifetime {
public:
    TLifetime() : FLife(std::make_shared<char>()) {}
    TLifetime(const TLifetime&) : TLifetime() {}
    TLifetime& operator=(const TLifetime&) { return *this; }

    /// Over when the object is gone, or after End. Allocates nothing.
    TLifeWatch Watch() const { return TLifeWatch(FLife); }
    /// Ends it before the object goes.
    void End() { FLife.reset(); }

private:
    std::shared_ptr<char> FLife;
};

} // namespace lmx
