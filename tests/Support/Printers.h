#pragma once

#include <QString>

#include <gtest/gtest.h>

#include <ostream>

// Readable failure messages for the types that tests compare, and one way to test an exception's message whole.

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}
QT_END_NAMESPACE

namespace lmx::tests {

/// Message of the exception of exactly the type `Failure` that `action` raises. Anything else fails the test.
template<class Failure, class Action>
QString MessageOf(Action&& action) {
    try {
        action();
    } catch (const Failure& failure) {
        EXPECT_STREQ(typeid(failure).name(), typeid(Failure).name()) << "a derived kind was raised";
        return failure.Message();
    } catch (const std::exception& other) {
        ADD_FAILURE() << "another exception: " << other.what();
        return {};
    }
    ADD_FAILURE() << "no exception";
    return {};
}

} // namespace lmx::tests
