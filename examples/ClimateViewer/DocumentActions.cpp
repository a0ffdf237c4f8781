#include "DocumentActions.h"

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxFileDialog.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QFileInfo>
#include <QMenu>
#include <QSettings>
#include <QWidget>

#include "FileKinds.h"

namespace {

constexpr int MostRecent = 8;
const QString RecentKey = QStringLiteral("recentDocuments");

QSettings Settings() {
    return QSettings(QStringLiteral("lmx"), QStringLiteral("ClimateViewer"));
}

QString Lines(const QString& heading, const QStringList& lines, const QString& end = {}) {
    return (QStringList(heading) + lines + QStringList(end)).join('\n').trimmed();
}

} // namespace

TDocumentActions::TDocumentActions(lmx::TMapViewControl* view, QWidget* window, std::function<void()> opened)
    : QObject(window),
      FDocument(view),
      FWindow(window),
      FProgram(window->windowTitle()),
      FOpened(std::move(opened)),
      FRecent(new QMenu(tr("Open &recent"), window)) {
    connect(FRecent, &QMenu::aboutToShow, this, [this] { FillRecent(); });
}

void TDocumentActions::AddTo(QMenu& menu) {
    menu.addAction(tr("&New"), QKeySequence::New, this, [this] { New(); });
    menu.addAction(tr("Open &map..."), QKeySequence("Ctrl+Shift+O"), this, [this] { AskAndOpen(); });
    menu.addMenu(FRecent);
    menu.addAction(tr("&Save"), QKeySequence::Save, this, [this] { Save(); });
    menu.addAction(tr("Save &as..."), QKeySequence("Ctrl+Shift+S"), this, [this] { SaveAs(); });
    QAction* embed = menu.addAction(tr("&Embed data in documents"));
    embed->setCheckable(true);
    connect(embed, &QAction::toggled, this, [this](bool embeds) { FDocument.SetEmbedsData(embeds); });
}

bool TDocumentActions::MayDiscard() {
    return !FDocument.IsChanged() || lmx::TMsgBox::YesNo(tr("The map has changes that are not saved. Discard them?"),
                                                         tr("Unsaved changes"), FWindow);
}

void TDocumentActions::New() {
    if (!MayDiscard())
        return;
    FDocument.New();
    ShowName();
    FOpened();
}

void TDocumentActions::AskAndOpen() {
    lmx::TFileDialogRequest request;
    request.Title = tr("Open map");
    request.Filter = DocumentsFilter();
    QString fileName;
    if (lmx::TFileDialog::Open(request, fileName, FWindow))
        Open(fileName);
}

void TDocumentActions::Open(const QString& fileName) {
    if (!MayDiscard())
        return;
    lmx::GuardEvent(FWindow, [&] {
        const QStringList lost = FDocument.Open(fileName);
        Remember(fileName);
        ShowName();
        FOpened();
        if (!lost.isEmpty())
            lmx::TMsgBox::Info(Lines(tr("Not everything could be read:"), lost), tr("Open map"), FWindow);
    });
}

void TDocumentActions::Save() {
    if (FDocument.GetFileName().isEmpty())
        SaveAs();
    else
        SaveTo(FDocument.GetFileName());
}

void TDocumentActions::SaveAs() {
    lmx::TFileDialogRequest request;
    request.Title = tr("Save map");
    request.Filter = DocumentsFilter();
    request.DefaultExtension = DocumentSuffix.mid(1);
    QString fileName;
    if (lmx::TFileDialog::Save(request, fileName, FWindow))
        SaveTo(fileName);
}

void TDocumentActions::SaveTo(const QString& fileName) {
    lmx::GuardEvent(FWindow, [&] {
        const QStringList problems = FDocument.ProblemsOfSaving();
        const QString question = Lines(tr("Not everything can be kept:"), problems, tr("Save all the same?"));
        if (!problems.isEmpty() && !lmx::TMsgBox::YesNo(question, tr("Save map"), FWindow))
            return;
        FDocument.Save(fileName);
        Remember(fileName);
        ShowName();
    });
}

void TDocumentActions::FillRecent() {
    FRecent->clear();
    for (const QString& fileName : Settings().value(RecentKey).toStringList())
        if (QFileInfo::exists(fileName))
            FRecent->addAction(fileName, this, [this, fileName] { Open(fileName); });
    if (FRecent->isEmpty())
        FRecent->addAction(tr("None"))->setEnabled(false);
}

void TDocumentActions::Remember(const QString& fileName) {
    QSettings settings = Settings();
    QStringList names = settings.value(RecentKey).toStringList();
    const QString name = QFileInfo(fileName).absoluteFilePath();
    names.removeAll(name);
    names.prepend(name);
    settings.setValue(RecentKey, names.mid(0, MostRecent));
}

void TDocumentActions::ShowName() {
    const QString name = QFileInfo(FDocument.GetFileName()).fileName();
    FWindow->setWindowTitle(name.isEmpty() ? FProgram : name + " - " + FProgram);
}
