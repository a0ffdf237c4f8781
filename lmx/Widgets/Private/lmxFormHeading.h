#pragma once

#include <QLabel>
#include <QString>

namespace lmx {

/// The bar at the top of a dialog that says in large letters what it is about. Texts are shown as they are.
class TFormHeading : public QLabel {
public:
    explicit TFormHeading(const QString& text, QWidget* parent = nullptr);

    QFont HeadingFont() const; ///< the label's own, larger and bold

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace lmx
