#pragma once

#include <lmx/Graphics/lmxGradientSource.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxEvent.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxLifetime.h>
#include <lmx/Runtime/lmxSet.h>
#include <lmx/Widgets/lmxGradientStops.h>

#include <QWidget>

#include <memory>
#include <optional>

namespace lmx {

class TGradientEditor;
class TGradientEditorPicture;

/// What a gradient editor shows and takes.
enum class TGradientEditorOption {
    geoShowLabels,    ///< the places of the stops are written below them
    geoValueRange,    ///< labels and an axis tell values; without it the labels tell per cent
    geoShowGrabbers,  ///< stops have handles; without it nothing can be selected by the mouse
    geoAddOnDblClick, ///< a double click beside the handles adds a stop
};
using TGradientEditorOptions = TSet<TGradientEditorOption>;

/// A stop of an editor. It is a name and no more: once the stop or the editor is gone, it is not valid, gives zeros and
/// changes nothing.
class LMX_EXPORT TGrabber {
public:
    TGrabber() = default; ///< of nothing
    TGrabber(TGradientEditor* editor, TGradientStops::TId id);

    bool IsValid() const;
    TGradientStops::TId GetId() const { return FId; }
    double GetLocation() const;
    void SetLocation(double location); ///< the nearest place from 0 to 1; NaN does nothing
    double GetValue() const;           ///< in the editor's range
    void SetValue(double value);       ///< as SetLocation; a range of one value does nothing
    TColor32 GetColor() const;
    void SetColor(TColor32 color);

    friend bool operator==(const TGrabber& a, const TGrabber& b) { return a.FId == b.FId; }

private:
    TBorrowed<TGradientEditor> FEditor;
    TGradientStops::TId FId = TGradientStops::None;
};

/// Lets the user edit a gradient over a range of values: a bar of its colours, with a handle for each stop.
///
/// The mouse drags a handle, and drags it away to delete it; a double click adds a stop, and on a handle asks for its
/// colour. The arrow keys move the selected stop by 1 %, with Shift by 0.1 %, Home and End to the ends; the tab key
/// leads from stop to stop and behind the last on to the next control; Insert adds a stop, Delete deletes one, the
/// space bar asks for a colour. The keys of undoing and redoing take changes back; Escape takes back a drag.
///
/// Handlers of events may destroy the editor. Main thread only.
class LMX_EXPORT TGradientEditor : public QWidget, public IGradientSource {
public:
    explicit TGradientEditor(QWidget* parent = nullptr);
    ~TGradientEditor() override;

    // --- The gradient ----------------------------------------------------------------------------------------------

    std::shared_ptr<IGradient> GetGradient() const override; ///< a new one with the stops in the order of the list
    /// Takes the stops of a gradient, wherever they are; none is selected.
    /// @throws EExArgumentNilException if it is nil.
    void SetGradient(const std::shared_ptr<IGradient>& gradient);
    double GetLowValue() const override { return FLow; }   ///< 0 at first
    double GetHighValue() const override { return FHigh; } ///< 1 at first
    /// The values at both ends of the bar; the low one may be above the high one. Nobody is told.
    void SetValueRange(double low, double high);

    TGrabber Add(TColor32 color, double location); ///< behind the others of the list, anywhere; not selected
    void Clear();
    int GetCount() const { return static_cast<int>(FStops.Count()); }

    // --- Selection -------------------------------------------------------------------------------------------------

    TGrabber GetSelected() const; ///< not valid if none is
    void Select(const TGrabber& grabber);
    void SelectPrevGrabber(); ///< the first one if none is selected, and none before the first; so below
    void SelectNextGrabber();
    void DeleteSelected(); ///< and selects its neighbour

    bool CanUndo() const { return FStops.CanUndo(); }
    void Undo();
    void Redo();
    void ForgetChanges(); ///< those until now are neither taken back nor made again

    // --- How it works ----------------------------------------------------------------------------------------------

    const TGradientEditorOptions& GetOptions() const { return FOptions; } ///< all at first
    void SetOptions(const TGradientEditorOptions& options);

    /// Another stop is selected, or none.
    void SetOnSelectionChanged(TEvent<TGradientEditor*> event) { FOnSelectionChanged = std::move(event); }
    /// Stops have changed, by the user or by a call: this one, or several, with a grabber that is not valid.
    void SetOnChanged(TEvent<TGradientEditor*, TGrabber> event) { FOnChanged = std::move(event); }
    /// Gives the colour of a stop that the user adds; before the call it is the gradient's at that place.
    void SetOnQueryColor(TEvent<TGradientEditor*, TColor32&> event) { FOnQueryColor = std::move(event); }
    /// Gives the selected stop another colour, for a user who asks for one. Without it the colour chooser is shown.
    void SetOnQueryGrabberColor(TEvent<TGradientEditor*, TColor32&> event) { FOnQueryGrabberColor = std::move(event); }

    const TGradientStops& GetStops() const { return FStops; }
    QRect GrabberRect(const TGrabber& grabber) const; ///< of the handle, in logical pixels; empty for none
    QRect BarRect() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    const TLifetime& GetLifetime() const { return FLifetime; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    friend class TGrabber;
    struct TDrag {
        TGradientStops::TId Id;
        double Offset; ///< of the mouse from the handle's tip
        QPointF Start; ///< where the button went down
        bool IsMoving = false;
        bool IsAway = false; ///< and the stop deleted for the time being
    };

    template<class Work>
    void Change(const TGradientStops::TId& id, Work&& work);
    TGradientStops::TId StopAt(QPointF place) const;
    void Move(double by);
    void DragTo(QPointF place);
    void AddAt(double location);
    void AddBesideSelected();
    void AskForColor();
    void EndDrag(bool keep);
    bool HandleKey(const QKeyEvent& event);
    double ValueAt(double location) const;

    TGradientStops FStops;
    double FLow = 0;
    double FHigh = 1;
    TGradientEditorOptions FOptions{TGradientEditorOption::geoShowLabels, TGradientEditorOption::geoValueRange,
                                    TGradientEditorOption::geoShowGrabbers, TGradientEditorOption::geoAddOnDblClick};
    std::optional<TDrag> FDrag;
    std::unique_ptr<TGradientEditorPicture> FPicture;
    TEvent<TGradientEditor*> FOnSelectionChanged;
    TEvent<TGradientEditor*, TGrabber> FOnChanged;
    TEvent<TGradientEditor*, TColor32&> FOnQueryColor;
    TEvent<TGradientEditor*, TColor32&> FOnQueryGrabberColor;
    TLifetime FLifetime; // the last member: it ends before the others go
};

} // namespace lmx
