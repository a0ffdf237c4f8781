#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>
#include <QStringList>

#include <memory>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace lmx {

/// What a file dialog shows.
struct TFileDialogRequest {
    QString Title;
    QString Filter;              ///< pairs "description|*.ext;*.other", joined by |
    QString DefaultExtension;    ///< added to a name without one when saving; no dot
    QString FileName;            ///< what the dialog begins with: a folder, a file, or nothing
    bool OverwritePrompt = true; ///< whether saving over an existing file is asked about
};

/// Asks the user for the name of a file.
class LMX_EXPORT IFileDialogService {
public:
    virtual ~IFileDialogService() = default;

    /// Name of a file to write. False if the user cancelled; then `fileName` is untouched.
    virtual bool Save(const TFileDialogRequest& request, QString& fileName, QWidget* parent) = 0;
    /// Name of an existing file. False if the user cancelled; then `fileName` is untouched.
    virtual bool Open(const TFileDialogRequest& request, QString& fileName, QWidget* parent) = 0;
};

class LMX_EXPORT TFileDialog {
public:
    /// As IFileDialogService.
    static bool Save(const TFileDialogRequest& request, QString& fileName, QWidget* parent = nullptr);
    static bool Open(const TFileDialogRequest& request, QString& fileName, QWidget* parent = nullptr);

    /// The filter as Qt writes it: "description (*.ext *.other)", one text for each pair. A description without a
    /// pattern takes all files.
    static QStringList NameFilters(const QString& filter);

    /// Replaces the service and gives the previous one back; nil stands for Qt's dialogs.
    static std::shared_ptr<IFileDialogService> SetService(std::shared_ptr<IFileDialogService> service);
};

} // namespace lmx
