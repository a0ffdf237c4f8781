#pragma once

#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QMetaObject>
#include <QWidget>

#include <cstdint>
#include <functional>

namespace lmx {

enum class TMouseButton { mbLeft, mbRight, mbMiddle };

/// How drawing on the buffer outside a paint reaches the screen. Stored for callers; painting goes by Invalidate alone.
enum class TRepaintMode { rmFull, rmDirect, rmOptimizer };

/// A widget that shows a bitmap. All sizes and positions are device pixels: on a screen of ratio 1.5 a widget of 100
/// units has a buffer of 150 pixels, so that pictures stay sharp and pixels stay whole.
///
/// Invalidate marks the buffer as out of date and asks for a paint; any number of calls before it give one paint. The
/// paint calls DoPaintBuffer if the buffer is out of date, and copies it to the screen, alpha ignored. Uncovering a
/// part of the window only copies.
///
/// Handlers and DoPaintBuffer may raise: the text is shown in an error box after the event, and the program goes on.
/// A paint that failed is not tried again before the next Invalidate. They may destroy the widget, too, unless somebody
/// above them on the stack needs it: whoever calls show, resize, repaint, grab or setFocus keeps it until that returns.
/// A paint of the buffer inside a paint of the buffer does nothing.
class LMX_EXPORT TPaintBox32 : public QWidget {
public:
    explicit TPaintBox32(QWidget* parent = nullptr);
    ~TPaintBox32() override;

    TBitmap32& GetBuffer() { return FBuffer; }
    const TBitmap32& GetBuffer() const { return FBuffer; }
    bool IsBufferValid() const { return FBufferValid; }

    virtual void Invalidate();

    /// Pixels that the buffer has beyond the widget on each side; 0 at first, 4096 at most; negative values count as 0.
    std::int32_t GetBufferOversize() const { return FBufferOversize; }
    void SetBufferOversize(std::int32_t pixels);

    TRepaintMode GetRepaintMode() const { return FRepaintMode; }
    void SetRepaintMode(TRepaintMode mode) { FRepaintMode = mode; }

    /// Device pixels in one unit of the widget's coordinates.
    virtual double GetDeviceRatio() const { return devicePixelRatioF(); }
    /// Size of the widget in device pixels, halves up. A hidden widget answers at once, also before its buffer follows.
    TSize GetDeviceSize() const;
    std::int32_t GetDeviceWidth() const { return GetDeviceSize().cx; }
    std::int32_t GetDeviceHeight() const { return GetDeviceSize().cy; }
    /// The device pixel under a position in the widget's coordinates.
    TPoint ToDevicePoint(QPointF position) const;

    QSize sizeHint() const override { return {192, 192}; }

protected:
    /// Draws the buffer. Overrides call this at their end: it marks the buffer as up to date.
    virtual void DoPaintBuffer() { FBufferValid = true; }
    /// Called when the size in device pixels or the ratio has changed, before the next paint at the latest. Gives the
    /// buffer the size of the widget, at least 1 x 1, and the ratio, and marks it as out of date.
    virtual void Resize();

    /// Handlers of the mouse, in device pixels; all of them do nothing here. The second press of a double click is a
    /// MouseDown, and moves arrive whether a button is down or not.
    virtual void MouseDown(TMouseButton, TPoint) {}
    virtual void MouseMove(TPoint) {}
    virtual void MouseUp(TMouseButton, TPoint) {}
    /// Handlers of keys, by Qt::Key. A held key gives many KeyDown and one KeyUp.
    virtual void KeyDown(int) {}
    virtual void KeyUp(int) {}
    /// The keyboard focus came or went, also for a popup or another window.
    virtual void DoEnter() {}
    virtual void DoExit() {}

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool Guard(const std::function<void()>& action);
    void PaintAhead();
    bool PaintBuffer(); ///< false: the widget is gone
    void FollowSize();
    void WatchScreen();

    TBitmap32 FBuffer;
    bool FBufferValid = false;
    bool FPaintsAhead = false;      ///< an event that paints the buffer is under way
    bool FIsPainting = false;       ///< the buffer is being painted
    bool FResizedMeanwhile = false; ///< since the last paint of the buffer began
    std::int32_t FBufferOversize = 0;
    TRepaintMode FRepaintMode = TRepaintMode::rmFull;
    TSize FFollowedSize; ///< device size and ratio of the last Resize
    double FFollowedRatio = 0;
    QMetaObject::Connection FScreenConnection;
};

} // namespace lmx
