#pragma once

#include <lmx/Runtime/lmxAnchors.h>
#include <lmx/Runtime/lmxEvent.h>
#include <lmx/Runtime/lmxExport.h>

#include <QAbstractButton>
#include <QWidget>

#include <array>

namespace lmx {

/// Shows a thing inside its parent, and to which of the parent's four edges it is tied: by a bar if it is, by a dotted
/// line if it is not. A click and the space bar turn an edge over; the arrow keys lead from edge to edge.
class LMX_EXPORT TAnchorEditor : public QWidget {
public:
    explicit TAnchorEditor(QWidget* parent = nullptr);

    TAnchors GetAnchors() const;       ///< left and top at first
    void SetAnchors(TAnchors anchors); ///< nobody is told
    /// The button of an edge: checked if the edge is an anchor.
    QAbstractButton* GetEdge(TAnchorKind edge) const;

    /// The user has turned an edge over. The handler may destroy the editor.
    void SetOnChanged(TEvent<TAnchorEditor*> event) { FOnChanged = std::move(event); }

    QSize sizeHint() const override { return {100, 100}; }
    QSize minimumSizeHint() const override { return {40, 40}; }

protected:
    bool eventFilter(QObject* sender, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QRect Inside() const; ///< where the thing stands

    std::array<QAbstractButton*, 4> FEdges; ///< in the order of TAnchorKind
    TEvent<TAnchorEditor*> FOnChanged;
};

} // namespace lmx
