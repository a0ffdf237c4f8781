#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <lmx/Runtime/lmxLifetime.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <deque>
#include <functional>
#include <memory>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace lmx {

/// Base of every object whose methods are subscribed to events. Once it is destroyed, or has called StopReceiving,
/// no event list calls it again.
class TEventReceiver {
public:
    TEventReceiver() = default;
    TEventReceiver(const TEventReceiver&) = default;
    TEventReceiver& operator=(const TEventReceiver&) = default;

    /// Over with the receiver, or when it stops receiving.
    const TLifetime& GetLifetime() const { return FLifetime; }

protected:
    ~TEventReceiver() = default;

    /// Ends all calls to this object. A destructor whose own work may raise events calls this first.
    void StopReceiving() { FLifetime.End(); }

private:
    TLifetime FLifetime;
};

/// Holds a subscription of a callable; leaving scope ends it. May outlive the event list.
class LMX_EXPORT TSubscription {
public:
    TSubscription() = default;
    explicit TSubscription(std::shared_ptr<bool> active) : FActive(std::move(active)) {}
    TSubscription(TSubscription&& other) noexcept = default;
    TSubscription& operator=(TSubscription&& other) noexcept {
        if (this != &other) {
            Cancel();
            FActive = std::move(other.FActive);
        }
        return *this;
    }
    ~TSubscription() { Cancel(); }

    void Cancel() {
        if (FActive)
            *FActive = false;
        FActive.reset();
    }
    bool IsActive() const { return FActive != nullptr; }

private:
    std::shared_ptr<bool> FActive;
};

/// An ordered list of subscribers of one event. Send calls each in order of subscription, inside its own catch-all:
/// an exception of a subscriber is swallowed and the others still run. There is no duplicate check.
/// Adding, removing, sending again and destroying the list are all safe inside a Send: what was removed is no longer
/// called, what was added is called from the next Send on. Send does not allocate. Main thread only.
template<class... Args>
class TEventList {
public:
    TEventList() : FState(std::make_shared<TState>()) {}
    TEventList(const TEventList&) = delete;
    TEventList& operator=(const TEventList&) = delete;
    ~TEventList() { FState->Destroyed = true; }

    /// Subscribes a method. `object` must derive from TEventReceiver; it is never called after its destruction.
    template<class Object, class Class>
    void Add(Object* object, void (Class::*method)(Args...)) {
        static_assert(std::is_base_of_v<TEventReceiver, Object>, "receivers of events derive from TEventReceiver");
        TEntry entry;
        entry.Key = TMethodKey::Make(static_cast<Class*>(object), method);
        entry.Receiver = static_cast<const TEventReceiver*>(object)->GetLifetime().Watch();
        entry.CallMethod = [](const TMethodKey& key, Args... args) {
            void (Class::*bound)(Args...);
            std::memcpy(&bound, key.Method, sizeof bound);
            (static_cast<Class*>(key.Object)->*bound)(args...);
        };
        FState->Append(std::move(entry));
    }

    /// Takes out the first equal subscription; it is no error if there is none.
    template<class Object, class Class>
    void Remove(Object* object, void (Class::*method)(Args...)) {
        const TMethodKey key = TMethodKey::Make(static_cast<Class*>(object), method);
        for (TEntry& entry : FState->Entries) {
            if (entry.IsAlive() && entry.CallMethod && entry.Key == key) {
                FState->TakeOut(entry);
                break;
            }
        }
    }

    /// Subscribes a callable for as long as the result lives.
    [[nodiscard]] TSubscription Add(std::function<void(Args...)> callable) {
        TEntry entry;
        entry.Active = std::make_shared<bool>(true);
        entry.Callable = std::move(callable);
        TSubscription subscription(entry.Active);
        FState->Append(std::move(entry));
        return subscription;
    }

    void Send(Args... args) const {
        SendWhile([] { return true; }, args...);
    }

    /// Sends as long as `condition` holds, which is asked before each call. For news of an object that a subscriber may
    /// destroy: the ones behind it must not be told of it.
    template<class Condition>
    void SendWhile(Condition condition, Args... args) const {
        const std::shared_ptr<TState> state = FState; // survives the list if a subscriber destroys it
        ++state->SendDepth;
        const std::size_t count = state->Entries.size();
        for (std::size_t i = 0; i < count && !state->Destroyed; ++i) {
            const TEntry& entry = state->Entries[i]; // a deque: stays in place while others are appended
            if (!entry.IsAlive())
                continue;
            if (!condition())
                break;
            try {
                if (entry.CallMethod)
                    entry.CallMethod(entry.Key, args...);
                else
                    entry.Callable(args...);
            } catch (...) {
                // By contract: what a subscriber raises ends with it, and the other subscribers still run.
            }
        }
        --state->SendDepth;
        state->Tidy();
    }

    /// Number of subscriptions that a Send would call now.
    int Count() const {
        int count = 0;
        for (const TEntry& entry : FState->Entries)
            count += entry.IsAlive() ? 1 : 0;
        return count;
    }

private:
    /// A bound method, comparable without knowing its class.
    struct TMethodKey {
        void* Object = nullptr;
        const std::type_info* Type = nullptr;
        unsigned char Method[2 * sizeof(void*)] = {};

        template<class Class>
        static TMethodKey Make(Class* object, void (Class::*method)(Args...)) {
            static_assert(sizeof method <= sizeof Method);
            TMethodKey key;
            key.Object = object;
            key.Type = &typeid(method);
            std::memcpy(key.Method, &method, sizeof method);
            return key;
        }
        friend bool operator==(const TMethodKey& a, const TMethodKey& b) {
            return a.Object == b.Object && a.Type && b.Type && *a.Type == *b.Type &&
                   std::memcmp(a.Method, b.Method, sizeof a.Method) == 0;
        }
    };

    struct TEntry {
        TMethodKey Key;
        void (*CallMethod)(const TMethodKey&, Args...) = nullptr; // null: a callable
        TLifeWatch Receiver;
        std::function<void(Args...)> Callable;
        std::shared_ptr<bool> Active;
        bool Removed = false;

        bool IsAlive() const { return !Removed && (CallMethod ? !Receiver.IsOver() : *Active); }
    };

    struct TState {
        std::deque<TEntry> Entries;
        std::size_t TidyAt = 16;
        int SendDepth = 0;
        bool Destroyed = false;

        void Append(TEntry entry) {
            if (Entries.size() >= TidyAt)
                Tidy(); // a list that is never sent does not grow by what has gone
            Entries.push_back(std::move(entry));
        }

        // At either end an entry leaves at once; in between it leaves with the next tidying.
        void TakeOut(TEntry& entry) {
            entry.Removed = true;
            while (SendDepth == 0 && !Entries.empty() && Entries.front().Removed)
                Entries.pop_front();
            while (SendDepth == 0 && !Entries.empty() && Entries.back().Removed)
                Entries.pop_back();
        }

        // Dead entries leave when no Send is under way. They are destroyed outside the list, since what a callable
        // holds may come back here when it goes. The next look at all of them comes when as many again have joined,
        // so that subscribing takes the same time however many there are.
        void Tidy() {
            if (SendDepth > 0)
                return;
            std::deque<TEntry> dead;
            if (!std::all_of(Entries.begin(), Entries.end(), [](const TEntry& e) { return e.IsAlive(); })) {
                std::deque<TEntry> living;
                for (TEntry& entry : Entries)
                    (entry.IsAlive() ? living : dead).push_back(std::move(entry));
                Entries.swap(living);
            }
            TidyAt = std::max<std::size_t>(16, 2 * Entries.size());
        }
    };

    std::shared_ptr<TState> FState;
};

} // namespace lmx
