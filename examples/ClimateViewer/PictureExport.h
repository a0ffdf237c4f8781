#pragma once

#include <lmx/Pictures/lmxMapPicture.h>

#include <QDialog>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLineEdit;
class QSpinBox;

namespace lmx {
class TMapViewControl;
} // namespace lmx

/// Asks what a picture of the map shall be.
class TPictureDialog : public QDialog {
public:
    explicit TPictureDialog(QWidget* parent = nullptr);

    /// The size that it begins with, in units to the eye, the title, and the time of the data.
    void Begin(lmx::TSize size, const QString& title, const QString& time);
    /// What has been chosen; `visible` is what the window shows.
    lmx::TMapPictureOptions GetOptions(const lmx::TMapArea& visible) const;

private:
    QLineEdit* FTitle;
    QLineEdit* FTime;
    QSpinBox* FWidth;
    QSpinBox* FHeight;
    QDoubleSpinBox* FDensity;
    QComboBox* FArea;
    QCheckBox* FLegends;
    QCheckBox* FScale;
    QCheckBox* FRose;
    QCheckBox* FAnnotations;
};

/// Asks for a picture and a file, and writes the map of the view there, as PNG or PDF. `time` is that of the data. What
/// fails is shown in an error box, and what was in the file stays.
void ExportPicture(lmx::TMapViewControl& view, const QString& time, QWidget* window);

/// Writes the whole world of the view with title, legends, scale and time, for print.
/// @throws lmx::Exception if it cannot be written; what was in the file stays.
void SaveSheet(lmx::TMapViewControl& view, const QString& title, const QString& time, const QString& fileName);
