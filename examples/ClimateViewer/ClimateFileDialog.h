#pragma once

#include <lmx/DataSources/lmxClimateDataset.h>

#include <QDialog>

#include <memory>
#include <optional>

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QLabel;
class QListWidget;

namespace lmx {
class TThread;
} // namespace lmx

/// Asks which variable of a climate file is shown, at which time and level, with a small picture of it. What cannot be
/// shown is listed with the reason.
class TClimateFileDialog : public QDialog {
public:
    explicit TClimateFileDialog(QWidget* parent);
    ~TClimateFileDialog() override; // waits for the preview that is being read

    /// Shows a file: its first variable that can be shown is selected.
    void SetDataset(std::shared_ptr<const lmx::TClimateDataset> dataset);
    /// Nothing while no variable is selected that can be shown.
    std::optional<lmx::TClimateSelection> GetSelection() const;

private:
    QWidget* ScrolledNotes();
    void ListVariables();
    void ShowVariable();
    void ShowPreview();
    void TakePreview(quint64 request, const QImage& picture, const QString& caption);
    const lmx::TClimateVariableInfo* Current() const;

    std::shared_ptr<const lmx::TClimateDataset> FDataset;
    QListWidget* FVariables;
    QComboBox* FTime;
    QComboBox* FLevel;
    QCheckBox* FFileUnits;
    QLabel* FPreview;
    QLabel* FNotes;
    QDialogButtonBox* FButtons;
    quint64 FRequest = 0; // of the newest preview
    std::shared_ptr<lmx::TThread> FReader;
};
