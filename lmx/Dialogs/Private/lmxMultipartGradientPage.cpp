#include <lmx/Dialogs/Private/lmxMultipartGradientPage.h>

#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Dialogs/lmxAddMPGradientDialog.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Widgets/lmxMsgBox.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace lmx {

namespace {

void Fill(const TAddMPGradientDialog& dialog, TMPGradItem& item) {
    const float min = dialog.GetMin();
    const float max = dialog.GetMax();
    item.Min = min;
    item.Max = max;
    item.Stops = dialog.GetStops();
}

} // namespace

class TMultipartGradientPage::TRows final : public IListRows {
public:
    void SetItems(const TObjectList<TMPGradItem>& items) { FItems.assign(items.begin(), items.end()); }
    void Remove(int row) { FItems.erase(FItems.begin() + row); }
    TMPGradItem* GetItem(int row) const { return FItems[static_cast<std::size_t>(row)]; }

    int GetCount() const override { return static_cast<int>(FItems.size()); }
    QString GetText(int row, int) const override {
        const TMPGradItem& item = *GetItem(row);
        return Format(u"%.3f to %.3f", {item.Min, item.Max});
    }

private:
    std::vector<TMPGradItem*> FItems;
};

TMultipartGradientPage::TMultipartGradientPage(QWidget* parent)
    : TListPage(QStringLiteral("lvMultipartGradients"), QStringLiteral("Gradients"), parent),
      FRows(std::make_shared<TRows>()),
      FFullRange(new QLabel(this)) {
    FFullRange->setObjectName(QStringLiteral("lbFullRange"));
    GetList()->SetColumns({{QStringLiteral("Range"), 150}});
    GetList()->SetRows(FRows);
    GetColumn()->addWidget(new QLabel(QStringLiteral("Specify one or more gradients for the range of values:"), this));
    GetColumn()->addWidget(FFullRange);
    GetColumn()->addWidget(new QLabel(QStringLiteral("Gradients:"), this));
    GetColumn()->addWidget(GetList());
    AddCommand(QStringLiteral("&Add..."), QStringLiteral("btnMPAdd"), TNeeds::neNothing, [this] { btnMPAddClick(); });
    SetDoubleClickButton(AddCommand(QStringLiteral("&Edit..."), QStringLiteral("btnMPEdit"), TNeeds::neOneRow,
                                    [this] { btnMPEditClick(); }));
    SetDeleteButton(AddCommand(QStringLiteral("&Delete"), QStringLiteral("btnMPDelete"), TNeeds::neOneRow,
                               [this] { btnMPDeleteClick(); }));
}

// The list goes later than the items that its rows show.
TMultipartGradientPage::~TMultipartGradientPage() {
    GetList()->SetRows(nullptr);
}

void TMultipartGradientPage::SetValueRange(const TValueRange& range) {
    FValueRange = range;
    FFullRange->setText(Format(u"Full range: %.3f - %.3f", {range.Low, range.High}));
}

void TMultipartGradientPage::SetMultipartGradient(const IMultipartGradientColorCalculator& calculator) {
    for (const auto& part : calculator.GetGradients()) {
        if (!part)
            continue;
        auto item = std::make_unique<TMPGradItem>();
        item->Min = part->GetMinVal();
        item->Max = part->GetMaxVal();
        if (const auto gradient = part->GetGradient())
            item->Stops.assign(gradient->GetColorStops().begin(), gradient->GetColorStops().end());
        FMPGradItems.Add(std::move(item));
    }
    UpdateMPGradientList();
}

std::shared_ptr<IMultipartGradientColorCalculator> TMultipartGradientPage::CreateColorCalc() const {
    auto calculator = TMultipartGradientColorCalculatorFactory::GetObject(static_cast<float>(FValueRange.Low),
                                                                          static_cast<float>(FValueRange.High));
    for (const TMPGradItem* item : FMPGradItems)
        calculator->GetGradients().push_back(
            TGradientColorCalculatorFactory::GetObject(item->Min, item->Max, TGradientFactory::GetObject(item->Stops)));
    return calculator;
}

void TMultipartGradientPage::UpdateMPGradientList() {
    FRows->SetItems(FMPGradItems);
    ShowRowsAnew();
}

void TMultipartGradientPage::btnMPAddClick() {
    TOwnedDialog<TAddMPGradientDialog> dialog(this); // gone with this page, and then cancelled
    dialog->SetValueRange(FValueRange);
    if (dialog.Execute() != static_cast<int>(TModalResult::mrOk))
        return;
    auto item = std::make_unique<TMPGradItem>();
    Fill(*dialog.Get(), *item);
    FMPGradItems.Add(std::move(item));
    UpdateMPGradientList();
}

void TMultipartGradientPage::btnMPEditClick() {
    const int row = GetList()->GetSelectedRow();
    if (row < 0)
        return;
    TMPGradItem* const edited = FRows->GetItem(row);
    TOwnedDialog<TAddMPGradientDialog> dialog(this);
    dialog->SetValueRange(FValueRange);
    dialog->SetData(*edited);
    if (dialog.Execute() != static_cast<int>(TModalResult::mrOk) || !FMPGradItems.Contains(edited))
        return;
    Fill(*dialog.Get(), *edited);
    UpdateMPGradientList();
}

void TMultipartGradientPage::btnMPDeleteClick() {
    const QPersistentModelIndex row = GetList()->MarkRow(GetList()->GetSelectedRow());
    const QPointer<QWidget> self(this);
    if (!row.isValid() || !TMsgBox::YesNo(QStringLiteral("Delete gradient?"), QStringLiteral("Gradient"), this) ||
        !self || !row.isValid())
        return;
    const int deleted = row.row();
    TMPGradItem* const item = FRows->GetItem(deleted);
    FRows->Remove(deleted);
    ForgetRows({deleted});
    FMPGradItems.Remove(item);
}

} // namespace lmx
