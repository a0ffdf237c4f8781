#include <lmx/Dialogs/lmxLayerPropertiesAttributesFrame.h>

#include <lmx/Dialogs/Private/lmxAttributeTypeNames.h>
#include <lmx/Dialogs/lmxLayerAttributeDialog.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxListKeys.h>
#include <lmx/Widgets/lmxMsgBox.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace lmx {

namespace {

enum TColumn { coProperty, coType, coValue };

} // namespace

class TLayerPropertiesAttributesFrame::TAttributeRows final : public IListRows {
public:
    void SetAttributes(const TAttributes& attributes) {
        FAttributes.clear();
        for (const auto& attribute : attributes)
            FAttributes.push_back(attribute);
    }

    int GetCount() const override { return static_cast<int>(FAttributes.size()); }
    QString GetText(int row, int column) const override {
        const auto& [name, attribute] = FAttributes[static_cast<std::size_t>(row)];
        switch (column) {
        case coProperty:
            return name;
        case coType:
            return AttributeTypeNames[static_cast<std::size_t>(attribute.DataType)].toString();
        default:
            return attribute.Value;
        }
    }
    const QString& GetName(int row) const { return FAttributes[static_cast<std::size_t>(row)].first; }
    int IndexOf(const QString& name) const {
        const auto found = std::find_if(FAttributes.begin(), FAttributes.end(),
                                        [&name](const auto& attribute) { return attribute.first == name; });
        return found == FAttributes.end() ? -1 : static_cast<int>(found - FAttributes.begin());
    }

private:
    std::vector<TAttributes::value_type> FAttributes;
};

TLayerPropertiesAttributesFrame::TLayerPropertiesAttributesFrame(QWidget* parent)
    : QWidget(parent),
      FRows(std::make_shared<TAttributeRows>()),
      FList(new TDrawnListView(this)),
      FAdd(AddButton(QStringLiteral("A&dd..."), QStringLiteral("btnAdd"),
                     &TLayerPropertiesAttributesFrame::btnAddClick)),
      FEdit(AddButton(QStringLiteral("&Edit..."), QStringLiteral("btnEdit"),
                      &TLayerPropertiesAttributesFrame::btnEditClick)),
      FDelete(AddButton(QStringLiteral("De&lete"), QStringLiteral("btnDelete"),
                        &TLayerPropertiesAttributesFrame::btnDeleteClick)),
      FSelectionSubscription(FList->GetOnSelectionChanged().Add([this](TDrawnListView*) { UpdateButtons(); })),
      FDoubleClickSubscription(FList->GetOnRowDoubleClick().Add([this](TDrawnListView*, int) { FEdit->click(); })) {
    FList->setObjectName(QStringLiteral("lvAttrListView"));
    FList->setAccessibleName(QStringLiteral("Layer attributes"));
    FList->SetColumns(
        {{QStringLiteral("Property"), 150}, {QStringLiteral("Type"), 100}, {QStringLiteral("Value"), 100, true}});
    FList->SetRows(FRows);
    auto* keys = new TListKeys(FList);
    keys->Add({Qt::Key_Insert}, FAdd);
    keys->Add({Qt::Key_Delete}, FDelete);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(FAdd);
    buttons->addWidget(FEdit);
    buttons->addWidget(FDelete);
    buttons->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(FList);
    column->addLayout(buttons);
    UpdateButtons();
}

QPushButton* TLayerPropertiesAttributesFrame::AddButton(const QString& text, const QString& name,
                                                        void (TLayerPropertiesAttributesFrame::*click)()) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    GuardClick(button, [this, click] { (this->*click)(); });
    return button;
}

void TLayerPropertiesAttributesFrame::SetWorking(const TAttributes& attributes) {
    FWorking = attributes;
    UpdateList();
}

void TLayerPropertiesAttributesFrame::UpdateList() {
    FRows->SetAttributes(FWorking);
    FList->RowsReset();
    UpdateButtons();
}

QString TLayerPropertiesAttributesFrame::GetSelectedName() const {
    const int row = FList->GetSelectedRow();
    return row < 0 ? QString() : FRows->GetName(row);
}

void TLayerPropertiesAttributesFrame::SelectName(const QString& name) {
    FList->SelectRow(FRows->IndexOf(name));
}

void TLayerPropertiesAttributesFrame::UpdateButtons() {
    const bool isSelected = FList->HasSelection();
    FEdit->setEnabled(isSelected);
    FDelete->setEnabled(isSelected);
}

// Asks again, with what was typed, until the name is free or the user gives up.
void TLayerPropertiesAttributesFrame::EnterAttribute(const QString& name, const TAttributeData& attribute,
                                                     const TNameTest& isFree, const TTake& take) {
    TOwnedDialog<TLayerAttributeDialog> dialog(this); // so it is gone once this frame is
    dialog->SetAttribute(name, attribute);
    while (dialog.Execute() == static_cast<int>(TModalResult::mrOk)) {
        QString newName;
        TAttributeData newData;
        dialog->GetAttribute(newName, newData);
        if (isFree(newName)) {
            take(newName, newData);
            return;
        }
        TMsgBox::Info(QStringLiteral("Please specify an attribute name that does not already exist."),
                      QStringLiteral("Attribute"), this);
        if (!dialog.Get())
            return;
    }
}

void TLayerPropertiesAttributesFrame::btnAddClick() {
    const auto isFree = [this](const QString& name) { return FWorking.count(name) == 0; };
    EnterAttribute(QStringLiteral("Name"), TAttributeData::Empty(), isFree,
                   [this](const QString& name, const TAttributeData& attribute) {
                       FWorking.emplace(name, attribute);
                       UpdateList();
                       SelectName(name);
                   });
}

void TLayerPropertiesAttributesFrame::btnEditClick() {
    if (!FList->HasSelection())
        return;
    const QString oldName = GetSelectedName();
    const auto isFree = [&](const QString& name) { return name == oldName || FWorking.count(name) == 0; };
    EnterAttribute(oldName, FWorking[oldName], isFree, [&](const QString& name, const TAttributeData& attribute) {
        FWorking.erase(oldName);
        FWorking.emplace(name, attribute);
        UpdateList();
        SelectName(name);
    });
}

void TLayerPropertiesAttributesFrame::btnDeleteClick() {
    if (!FList->HasSelection())
        return;
    const QString name = GetSelectedName();
    const QPointer<QWidget> self(this);
    if (!TMsgBox::YesNo(QStringLiteral("Delete attribute?"), QStringLiteral("Delete"), this) || !self)
        return;
    FWorking.erase(name);
    UpdateList();
}

TLayerPropertiesAttributesOptionFrame::TLayerPropertiesAttributesOptionFrame(TAttributes* source,
                                                                             const TLifeWatch& owner)
    : TLateOptionFrame(QStringLiteral("Layer attributes")),
      FSource(source),
      FOwner(owner) {
    if (!source)
        throw EExArgumentNilException(QStringLiteral("TLayerPropertiesAttributesOptionFrame.Create"),
                                      QStringLiteral("Source"));
    FBefore = *source;
}

TLayerPropertiesAttributesOptionFrame::TLayerPropertiesAttributesOptionFrame(TAttributes* source)
    : TLayerPropertiesAttributesOptionFrame(source, TLifeWatch()) {
    FOwner = FOwnLifetime.Watch();
}

std::unique_ptr<QWidget> TLayerPropertiesAttributesOptionFrame::MakeFrame() const {
    auto frame = std::make_unique<TLayerPropertiesAttributesFrame>();
    frame->SetWorking(FBefore);
    return frame;
}

void TLayerPropertiesAttributesOptionFrame::Apply() {
    if (FOwner.IsOver())
        return;
    if (!IsFrameMade())
        *FSource = FBefore;
    else if (const auto* frame = static_cast<TLayerPropertiesAttributesFrame*>(GetFrame()))
        *FSource = frame->GetWorking();
}

} // namespace lmx
