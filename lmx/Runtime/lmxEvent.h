#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace lmx {

/// An event with one subscriber. A call holds a share of the handler until it has returned: the handler may replace
/// itself, and destroy the event and its owner. What the handler raises goes to the caller. Main thread only.
template<class... Args>
class TEvent {
public:
    TEvent() = default;
    /// Anything that can be called with the arguments; an empty function, or nil, is no handler.
    template<class Handler>
    requires std::is_constructible_v<std::function<void(Args...)>, Handler>
    TEvent(Handler&& handler) { // NOLINT(google-explicit-constructor)
        std::function<void(Args...)> function(std::forward<Handler>(handler));
        if (function)
            FHandler = std::make_shared<const std::function<void(Args...)>>(std::move(function));
    }
    TEvent(const TEvent&) = default;
    TEvent(TEvent&&) noexcept = default;
    TEvent& operator=(const TEvent&) = default;
    TEvent& operator=(TEvent&&) noexcept = default;
    ~TEvent() = default;

    explicit operator bool() const { return FHandler != nullptr; }

    /// Calls the handler, if there is one. Allocates nothing.
    void operator()(Args... args) const {
        if (const auto handler = FHandler)
            (*handler)(args...);
    }

private:
    std::shared_ptr<const std::function<void(Args...)>> FHandler;
};

} // namespace lmx
