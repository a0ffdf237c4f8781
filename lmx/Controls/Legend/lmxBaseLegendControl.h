#pragma once

#include <lmx/Runtime/lmxExport.h>

#include <QString>
#include <QWidget>

namespace lmx {

/// Root of the legend controls that layers hand out. Its object name is the class name, "_" and the decimal form of its
/// address, so that several legends in one form never clash.
class LMX_EXPORT TBaseLegendControl : public QWidget {
public:
    /// `className` is the name of the concrete class.
    explicit TBaseLegendControl(QWidget* parent, const QString& className = QStringLiteral("TBaseLegendControl"));

    /// Height in logical pixels that the control would like. Here: 0.
    virtual int GetSuggestedHeight() const;
};

} // namespace lmx
