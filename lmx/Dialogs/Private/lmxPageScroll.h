#pragma once

#include <QScrollArea>

namespace lmx {

/// Room for a page. It wants to be as large as its page's least size, so that a dialog grows with it; what would be too
/// much for the screen is scrolled.
class TPageScroll final : public QScrollArea {
public:
    explicit TPageScroll(QWidget* page, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QSize Fitted(const QSize& wanted) const;
};

} // namespace lmx
