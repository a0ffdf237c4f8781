#pragma once

#include <lmx/Layers/lmxAttributeData.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Widgets/lmxModalDialog.h>

QT_BEGIN_NAMESPACE
class QComboBox;
class QLineEdit;
QT_END_NAMESPACE

namespace lmx {

/// Asks for the name, the type and the value of an attribute. OK wants a value of the type; any name will do, an empty
/// one included.
class LMX_EXPORT TLayerAttributeDialog : public TModalDialog {
public:
    explicit TLayerAttributeDialog(QWidget* parent = nullptr);

    void SetAttribute(const QString& name, const TAttributeData& attribute);
    void GetAttribute(QString& name, TAttributeData& attribute) const;

protected:
    void OkClick() override;
    void showEvent(QShowEvent* event) override;

private:
    TAttributeDataType GetDataType() const;

    QLineEdit* FName;
    QComboBox* FDataType;
    QLineEdit* FValue;
};

} // namespace lmx
