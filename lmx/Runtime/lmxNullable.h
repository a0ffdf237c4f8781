#pragma once

#include <lmx/Runtime/lmxExceptions.h>

namespace lmx {

/// A value with a flag that says whether it is there.
template<class T>
class TNullable {
public:
    TNullable() = default;
    TNullable(const T& value) : FValue(value), FHasValue(true) {} // NOLINT(google-explicit-constructor)
    TNullable(const TNullable&) = default;
    TNullable& operator=(const TNullable&) = default;

    bool GetHasValue() const { return FHasValue; }

    /// @throws EInvalidOperation "Nullable type has no value" if there is none.
    const T& GetValue() const {
        if (!FHasValue)
            throw EInvalidOperation(QStringLiteral("Nullable type has no value"));
        return FValue;
    }
    void SetValue(const T& value) {
        FValue = value;
        FHasValue = true;
    }
    void Clear() {
        FValue = T{};
        FHasValue = false;
    }

    friend bool operator==(const TNullable&, const TNullable&) = default;

private:
    T FValue{};
    bool FHasValue = false;
};

} // namespace lmx
