#pragma once

#include <memory>

namespace lmx {

/// Member of an object that raises events in the middle of its work: whoever is told may destroy the object, and the
/// work must notice. Copies are lifetimes of their own.
class TLifetime {
public:
    TLifetime() : FToken(std::make_shared<char>()) {}
    TLifetime(const TLifetime&) : TLifetime() {}
    TLifetime& operator=(const TLifetime&) { return *this; }

    /// Expires with the object. Watching allocates nothing.
    std::weak_ptr<const void> Watch() const { return FToken; }

private:
    std::shared_ptr<char> FToken;
};

} // namespace lmx
