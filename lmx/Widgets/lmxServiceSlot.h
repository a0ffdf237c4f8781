#pragma once

#include <memory>
#include <utility>

namespace lmx {

/// Holds the present implementation of a service: one that a host or a test has brought, or else a `Default`, which is
/// made on first use. Main thread only.
template<class Interface, class Default>
class TServiceSlot {
public:
    /// Counted, so that a service may be replaced while it answers.
    std::shared_ptr<Interface> Get() {
        if (!FService)
            FService = std::make_shared<Default>();
        return FService;
    }

    /// Puts `service` in the place of the present one, which is given back; nil stands for the default.
    std::shared_ptr<Interface> Replace(std::shared_ptr<Interface> service) {
        return std::exchange(FService, std::move(service));
    }

private:
    std::shared_ptr<Interface> FService;
};

/// Another implementation of a service until the end of the scope. `Service` is the class that callers use, for example
/// TMsgBox; it has a SetService operation.
template<class Service>
class TServiceScope {
public:
    template<class Interface>
    explicit TServiceScope(std::shared_ptr<Interface> service) : FPrevious(Service::SetService(std::move(service))) {}
    ~TServiceScope() { Service::SetService(std::move(FPrevious)); }
    TServiceScope(const TServiceScope&) = delete;
    TServiceScope& operator=(const TServiceScope&) = delete;

private:
    decltype(Service::SetService(nullptr)) FPrevious;
};

} // namespace lmx
