#pragma once

#include <QString>

namespace lmx::tests {

/// From now on a Qt warning fails the running test, apart from those that the offscreen platform always gives.
void FailOnQtWarnings();

/// Lets warnings that contain `text` pass until the end of the scope.
class TExpectedQtWarning {
public:
    explicit TExpectedQtWarning(const QString& text);
    ~TExpectedQtWarning();
    TExpectedQtWarning(const TExpectedQtWarning&) = delete;
    TExpectedQtWarning& operator=(const TExpectedQtWarning&) = delete;
};

} // namespace lmx::tests
