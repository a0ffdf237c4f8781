#include <lmx/Widgets/lmxFileDialog.h>

#include <lmx/Runtime/lmxText.h>
#include <lmx/Widgets/lmxOwnedDialog.h>
#include <lmx/Widgets/lmxServiceSlot.h>

#include <QFileDialog>
#include <QFileInfo>

namespace lmx {

namespace {

class TQtFileDialogService final : public IFileDialogService {
public:
    bool Save(const TFileDialogRequest& request, QString& fileName, QWidget* parent) override {
        TOwnedDialog<QFileDialog> dialog(parent);
        dialog->setAcceptMode(QFileDialog::AcceptSave);
        dialog->setFileMode(QFileDialog::AnyFile);
        dialog->setDefaultSuffix(request.DefaultExtension);
        dialog->setOption(QFileDialog::DontConfirmOverwrite, !request.OverwritePrompt);
        return Run(dialog, request, fileName);
    }
    bool Open(const TFileDialogRequest& request, QString& fileName, QWidget* parent) override {
        TOwnedDialog<QFileDialog> dialog(parent);
        dialog->setAcceptMode(QFileDialog::AcceptOpen);
        dialog->setFileMode(QFileDialog::ExistingFile);
        return Run(dialog, request, fileName);
    }

private:
    static bool Run(TOwnedDialog<QFileDialog>& dialog, const TFileDialogRequest& request, QString& fileName) {
        if (!request.Title.isEmpty())
            dialog->setWindowTitle(request.Title);
        if (const QStringList filters = TFileDialog::NameFilters(request.Filter); !filters.isEmpty())
            dialog->setNameFilters(filters);
        if (QFileInfo(request.FileName).isDir())
            dialog->setDirectory(request.FileName);
        else if (!request.FileName.isEmpty())
            dialog->selectFile(request.FileName);
        if (dialog.Execute() != QDialog::Accepted || dialog->selectedFiles().isEmpty())
            return false;
        fileName = dialog->selectedFiles().front();
        return true;
    }
};

TServiceSlot<IFileDialogService, TQtFileDialogService>& Slot() {
    static TServiceSlot<IFileDialogService, TQtFileDialogService> slot;
    return slot;
}

} // namespace

bool TFileDialog::Save(const TFileDialogRequest& request, QString& fileName, QWidget* parent) {
    return Slot().Get()->Save(request, fileName, parent);
}

bool TFileDialog::Open(const TFileDialogRequest& request, QString& fileName, QWidget* parent) {
    return Slot().Get()->Open(request, fileName, parent);
}

QStringList TFileDialog::NameFilters(const QString& filter) {
    const QStringList pieces = Split(filter, u'|');
    QStringList filters;
    for (qsizetype i = 0; i < pieces.size(); i += 2) {
        QString pattern = i + 1 < pieces.size() ? pieces[i + 1] : QString();
        pattern = pattern.isEmpty() ? QStringLiteral("*") : pattern.replace(u';', u' ');
        filters += pieces[i] + QStringLiteral(" (") + pattern + u')';
    }
    return filters;
}

std::shared_ptr<IFileDialogService> TFileDialog::SetService(std::shared_ptr<IFileDialogService> service) {
    return Slot().Replace(std::move(service));
}

} // namespace lmx
