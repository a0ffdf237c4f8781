#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QPersistentModelIndex>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>

namespace lmx {

/// A page of the properties dialog: it knows the widget that shows it, the frame, and how what was edited there gets to
/// whatever the page is about. Its frame goes with it.
class LMX_EXPORT TOptionFrame {
public:
    explicit TOptionFrame(const QString& name) : FName(name) {}
    virtual ~TOptionFrame();
    TOptionFrame(const TOptionFrame&) = delete;
    TOptionFrame& operator=(const TOptionFrame&) = delete;

    virtual QWidget* GetFrame() const = 0;
    /// Whether GetFrame makes the frame when it is first asked; the dialog then asks for it when the page is first
    /// selected. Here: no, the dialog asks when it takes the page.
    virtual bool MakesFrameLate() const { return false; }
    /// Applies what was edited. Here: nothing. What it raises is shown by the dialog, which then stays open.
    virtual void Apply() {}

    const QString& GetName() const { return FName; } ///< what the list of pages says
    /// The page's row in the dialog's list; not valid outside of a dialog.
    const QPersistentModelIndex& GetListItem() const { return FListItem; }
    void SetListItem(const QPersistentModelIndex& item) { FListItem = item; }

    /// Frees `frame` with this page, unless somebody else frees it earlier. The dialog says so of the frame of each
    /// page that it takes; a page that may never come into a dialog says it when it makes its frame.
    void TakeFrame(QWidget* frame) { FOwnedFrame = frame; }

private:
    QString FName;
    QPersistentModelIndex FListItem;
    QPointer<QWidget> FOwnedFrame;
};

/// A page whose frame is made when somebody first asks for it, so that a dialog comes up with the frame alone that it
/// shows. The frame goes with the page. One that went earlier is not made again.
class LMX_EXPORT TLateOptionFrame : public TOptionFrame {
public:
    using TOptionFrame::TOptionFrame;
    ~TLateOptionFrame() override;

    QWidget* GetFrame() const final;
    bool MakesFrameLate() const final { return true; }

protected:
    /// A new frame, of what the page was told when it was made. Called once at most.
    virtual std::unique_ptr<QWidget> MakeFrame() const = 0;
    bool IsFrameMade() const { return FIsMade; }

private:
    mutable QPointer<QWidget> FFrame;
    mutable bool FIsMade = false;
};

} // namespace lmx
