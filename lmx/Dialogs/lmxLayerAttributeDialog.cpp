#include <lmx/Dialogs/lmxLayerAttributeDialog.h>

#include <lmx/Dialogs/Private/lmxAttributeTypeNames.h>
#include <lmx/Dialogs/Private/lmxScreenPlace.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QShowEvent>
#include <QVBoxLayout>

namespace lmx {

TLayerAttributeDialog::TLayerAttributeDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Attribute"), QStringLiteral("Layer attribute"), parent),
      FName(new QLineEdit(this)),
      FDataType(new QComboBox(this)),
      FValue(new QLineEdit(this)) {
    FName->setObjectName(QStringLiteral("edName"));
    FDataType->setObjectName(QStringLiteral("cbDataType"));
    FValue->setObjectName(QStringLiteral("edVal"));
    for (const QStringView name : AttributeTypeNames)
        FDataType->addItem(name.toString());
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(QStringLiteral("Name: "), FName);
    form->addRow(QStringLiteral("Data type:"), FDataType);
    form->addRow(QStringLiteral("Value:"), FValue);
    FName->setMinimumWidth(220);
    GetContent()->addLayout(form);
    AddButtons(QStringLiteral("Button1"), QStringLiteral("Button2"));
    layout()->setSizeConstraint(QLayout::SetFixedSize);
}

void TLayerAttributeDialog::SetAttribute(const QString& name, const TAttributeData& attribute) {
    FName->setText(name);
    FDataType->setCurrentIndex(static_cast<int>(attribute.DataType));
    FValue->setText(attribute.Value);
}

void TLayerAttributeDialog::GetAttribute(QString& name, TAttributeData& attribute) const {
    name = FName->text();
    attribute = TAttributeData(GetDataType(), FValue->text());
}

TAttributeDataType TLayerAttributeDialog::GetDataType() const {
    return static_cast<TAttributeDataType>(FDataType->currentIndex());
}

void TLayerAttributeDialog::OkClick() {
    if (TAttributeData::CheckData(GetDataType(), FValue->text()))
        accept();
    else
        TMsgBox::Error(QStringLiteral("The specified value is not compatible with the specified data type."),
                       QStringLiteral("Data type"), this);
}

// It comes back with what was typed, and then again it is the name that is asked for first.
void TLayerAttributeDialog::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        CentreOnScreen(*this);
        FName->setFocus(Qt::TabFocusReason);
    }
    TModalDialog::showEvent(event);
}

} // namespace lmx
