#pragma once

#include <QLabel>

/// A line of plain text that is cut, with an ellipsis, where there is no room for it; then its hint shows the whole.
class TElidedLabel : public QLabel {
public:
    explicit TElidedLabel(QWidget* parent) : QLabel(parent) {}

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};
