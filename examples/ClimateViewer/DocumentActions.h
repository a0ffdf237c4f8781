#pragma once

#include <QAction>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>

#include "MapDocument.h"

QT_BEGIN_NAMESPACE
class QMenu;
class QWidget;
QT_END_NAMESPACE

/// What a user does with documents: makes, opens and saves them, and is asked before anything is lost.
class TDocumentActions : public QObject {
public:
    /// `opened` is called when the view has another map.
    TDocumentActions(lmx::TMapViewControl* view, QWidget* window, std::function<void()> opened);

    TMapDocument& GetDocument() { return FDocument; }
    /// Puts the commands into a menu.
    void AddTo(QMenu& menu);

    /// What fails is shown in an error box, and what did not arrive in another one.
    void Open(const QString& fileName);
    /// False if the map has changes that the user wants to keep.
    bool MayDiscard();

private:
    void New();
    void AskAndOpen();
    void Save();
    void SaveAs();
    void SaveTo(const QString& fileName);
    void FillRecent();
    void Remember(const QString& fileName);
    void ShowName();

    TMapDocument FDocument;
    QWidget* FWindow;
    QString FProgram; ///< title of a window without a document
    std::function<void()> FOpened;
    QMenu* FRecent;
};
