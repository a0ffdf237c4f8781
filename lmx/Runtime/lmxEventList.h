#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <lmx/Runtime/lmxLifetime.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <memory>
#include <tuple>
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

/// Holds a subscription of a callable, and the callable itself: leaving scope ends the subscription and frees what the
/// callable holds, as soon as no call of it is under way. May outlive the event list.
class LMX_EXPORT TSubscription {
public:
    TSubscription() = default;
    explicit TSubscription(std::shared_ptr<const void> callable) : FCallable(std::move(callable)) {}
    TSubscription(TSubscription&&) noexcept = default;
    TSubscription& operator=(TSubscription&&) noexcept = default;
    ~TSubscription() = default;

    void Cancel() { FCallable.reset(); }
    bool IsActive() const { return FCallable != nullptr; }

private:
    std::shared_ptr<const void> FCallable;
};

/// An ordered list of subscribers of one event. Send calls each in order of subscription, inside its own catch-all:
/// an exception of a subscriber is swallowed and the others still run. There is no duplicate check.
/// Adding, removing, sending again and destroying the list are all safe inside a Send: what was removed is no longer
/// called, what was added is called from the next Send on. Send does not allocate, and a list that nobody subscribes to
/// takes no memory of its own. Main thread only.
template<class... Args>
class TEventList {
public:
    TEventList() = default;
    TEventList(const TEventList&) = delete;
    TEventList& operator=(const TEventList&) = delete;
    ~TEventList() {
        if (FState)
            FState->IsDestroyed = true;
    }

    /// Subscribes a method. `object` must derive from TEventReceiver; it is never called after its destruction.
    template<class Object, class Class>
    void Add(Object* object, void (Class::*method)(Args...)) {
        State().Append(MethodEntry(object, method));
    }

    /// Subscribes a method to the Sends whose last argument is `about`, and to no others: however many objects listen
    /// for themselves, telling of one costs nothing for the rest. The subscription lasts as long as `object`.
    template<class About, class Object, class Class>
    void AddAbout(About* about, Object* object, void (Class::*method)(Args...)) {
        static_assert(std::is_same_v<About*, TLastArgument>, "what the event is about is its last argument");
        State().AppendAbout(about, MethodEntry(object, method));
    }

    /// Takes out the first equal subscription of a method by Add; it is no error if there is none.
    template<class Object, class Class>
    void Remove(Object* object, void (Class::*method)(Args...)) {
        if (FState)
            FState->TakeOut(TMethodKey::Make(static_cast<Class*>(object), method));
    }

    /// Subscribes a callable for as long as the result lives.
    [[nodiscard]] TSubscription Add(std::function<void(Args...)> callable) {
        const auto shared = std::make_shared<const std::function<void(Args...)>>(std::move(callable));
        TEntry entry;
        entry.Callable = shared;
        entry.Life = TLifeWatch(shared);
        State().Append(std::move(entry));
        return TSubscription(shared);
    }

    void Send(Args... args) const {
        SendWhile([] { return true; }, args...);
    }

    /// Sends as long as `condition` holds, which is asked before each call. For news of an object that a subscriber may
    /// destroy or take away: the ones behind it must not be told of it.
    template<class Condition>
    void SendWhile(Condition condition, Args... args) const {
        const std::shared_ptr<TState> state = FState; // survives the list if a subscriber destroys it
        if (!state)
            return;
        TTurns turns(*state, AboutOf(args...));
        while (const TEntry* entry = turns.Next()) {
            if (!condition())
                break;
            try {
                entry->Call(args...);
            } catch (...) {
                // By contract: what a subscriber raises ends with it, and the other subscribers still run.
            }
        }
    }

    /// Number of subscriptions that are there now.
    int Count() const { return FState ? FState->CountLiving() : 0; }

private:
    template<class... All>
    struct TLastOf {
        using Type = void;
    };
    template<class First, class... Others>
    struct TLastOf<First, Others...> {
        using Type = std::tuple_element_t<sizeof...(Others), std::tuple<First, Others...>>;
    };
    using TLastArgument = typename TLastOf<Args...>::Type;

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
        std::weak_ptr<const std::function<void(Args...)>> Callable;
        TLifeWatch Life; // of the receiver or the callable; watches nothing once the entry has been taken out
        std::uint64_t Serial = 0;

        bool IsAlive() const { return !Life.IsOver(); }
        void Call(Args... args) const {
            if (CallMethod)
                CallMethod(Key, args...);
            else if (const auto callable = Callable.lock())
                (*callable)(args...);
        }
    };

    template<class Object, class Class>
    static TEntry MethodEntry(Object* object, void (Class::*method)(Args...)) {
        static_assert(std::is_base_of_v<TEventReceiver, Object>, "receivers of events derive from TEventReceiver");
        TEntry entry;
        entry.Key = TMethodKey::Make(static_cast<Class*>(object), method);
        entry.Life = static_cast<const TEventReceiver*>(object)->GetLifetime().Watch();
        entry.CallMethod = [](const TMethodKey& key, Args... args) {
            void (Class::*bound)(Args...);
            std::memcpy(&bound, key.Method, sizeof bound);
            (static_cast<Class*>(key.Object)->*bound)(args...);
        };
        return entry;
    }

    static const void* AboutOf([[maybe_unused]] const Args&... args) {
        if constexpr (std::is_pointer_v<TLastArgument>)
            return std::get<sizeof...(Args) - 1>(std::tie(args...));
        else
            return nullptr;
    }

    // Entries stay where they are while a Send is under way: then they are only marked, and go when it is over.
    struct TState {
        std::list<TEntry> Open;                    // told of everything, in order of subscription
        std::multimap<const void*, TEntry> Narrow; // told of one object; equal ones in order of subscription
        const void* LastAbout = nullptr;           // what the last Send was about
        std::uint64_t LastSerial = 0;
        std::size_t TidyAt = 16;
        int SendDepth = 0;
        bool HasDead = false; // among the open ones
        bool IsDestroyed = false;

        void Append(TEntry entry) {
            PrepareToGrow();
            entry.Serial = ++LastSerial;
            Open.push_back(std::move(entry));
        }
        void AppendAbout(const void* about, TEntry entry) {
            PrepareToGrow();
            entry.Serial = ++LastSerial;
            Narrow.emplace(about, std::move(entry));
        }
        void TakeOut(const TMethodKey& key) {
            const auto entry = std::find_if(Open.begin(), Open.end(),
                                            [&](const TEntry& each) { return each.IsAlive() && each.Key == key; });
            if (entry == Open.end())
                return;
            if (SendDepth == 0) {
                Open.erase(entry);
            } else {
                entry->Life = {};
                HasDead = true;
            }
        }
        int CountLiving() const {
            const auto isAlive = [](const TEntry& entry) { return entry.IsAlive(); };
            return static_cast<int>(
                std::count_if(Open.begin(), Open.end(), isAlive) +
                std::count_if(Narrow.begin(), Narrow.end(), [&](const auto& each) { return isAlive(each.second); }));
        }

        // A list that is never sent does not grow by what has gone. The next look comes when as many again have joined,
        // so that subscribing takes the same time however many there are.
        void PrepareToGrow() {
            if (SendDepth > 0 || Open.size() + Narrow.size() < TidyAt)
                return;
            Tidy();
            std::erase_if(Narrow, [](const auto& each) { return !each.second.IsAlive(); });
            TidyAt = std::max<std::size_t>(16, 2 * (Open.size() + Narrow.size()));
        }
        void Tidy() {
            std::erase_if(Open, [](const TEntry& entry) { return !entry.IsAlive(); });
            HasDead = false;
        }
        // An object whose going was told is gone by the next news, and its subscriptions with it.
        void Begin(const void* about) {
            if (SendDepth++ > 0 || Narrow.empty())
                return;
            for (auto [each, end] = Narrow.equal_range(std::exchange(LastAbout, about)); each != end;)
                each = each->second.IsAlive() ? std::next(each) : Narrow.erase(each);
        }
    };

    // One Send: gives the living entries that were there when it began, in order of subscription, until the list goes.
    class TTurns {
    public:
        TTurns(TState& state, const void* about) : FState(state), FLastSerial(state.LastSerial) {
            state.Begin(about);
            FOpen = state.Open.begin();
            FNarrow = state.Narrow.equal_range(about);
        }
        TTurns(const TTurns&) = delete;
        TTurns& operator=(const TTurns&) = delete;
        ~TTurns() {
            if (--FState.SendDepth == 0 && FState.HasDead)
                FState.Tidy();
        }

        const TEntry* Next() {
            while (!FState.IsDestroyed) {
                const TEntry* entry = Following();
                if (!entry || entry->IsAlive())
                    return entry;
            }
            return nullptr;
        }

    private:
        const TEntry* Following() {
            const TEntry* open = FOpen == FState.Open.end() ? nullptr : &*FOpen;
            const TEntry* narrow = FNarrow.first == FNarrow.second ? nullptr : &FNarrow.first->second;
            const bool isNarrow = narrow && (!open || narrow->Serial < open->Serial);
            const TEntry* entry = isNarrow ? narrow : open;
            if (!entry || entry->Serial > FLastSerial)
                return nullptr;
            if (isNarrow) {
                ++FNarrow.first;
            } else {
                ++FOpen;
                FState.HasDead = FState.HasDead || !entry->IsAlive();
            }
            return entry;
        }

        using TNarrow = typename std::multimap<const void*, TEntry>::const_iterator;

        TState& FState;
        std::uint64_t FLastSerial;
        typename std::list<TEntry>::const_iterator FOpen;
        std::pair<TNarrow, TNarrow> FNarrow;
    };

    TState& State() {
        if (!FState)
            FState = std::make_shared<TState>();
        return *FState;
    }

    std::shared_ptr<TState> FState; // null until somebody subscribes
};

} // namespace lmx
