#pragma once

#include <lmx/Coordinates/wskMappingTypes.h>

#include <QLineEdit>
#include <QWidget>

namespace lmx {

/// A text to be read and copied, in a field that is as wide as the text.
class TReadOnlyEdit final : public QLineEdit {
public:
    TReadOnlyEdit(const QString& text, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
};

/// The four edges of an area about a cross of two thin lines.
class TBoundsPanel final : public QWidget {
public:
    TBoundsPanel(const TMapArea& area, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// Keeps its panel in the middle from left to right, at the panel's own size.
class TBoundsContainerPanel final : public QWidget {
public:
    TBoundsContainerPanel(const TMapArea& area, QWidget* parent);

    QSize sizeHint() const override { return FPanel->sizeHint(); }
    QSize minimumSizeHint() const override { return FPanel->minimumSizeHint(); }

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void PlacePanel();

    TBoundsPanel* FPanel;
};

} // namespace lmx
