#pragma once

#include <QLabel>

/// A line of plain text that is cut, with an ellipsis, where there is no room for it; then its hint shows the whole.
/// Pale while it is disabled.
class TElidedLabel : public QLabel {
public:
    TElidedLabel(Qt::TextElideMode mode, QWidget* parent) : QLabel(parent), FMode(mode) {}

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::TextElideMode FMode;
};
