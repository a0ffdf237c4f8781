#include <lmx/Dialogs/Private/lmxBasicPalettePage.h>

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorPalette.h>
#include <lmx/Dialogs/Private/lmxPaletteChoice.h>
#include <lmx/Dialogs/lmxAddBasicPaletteColorDialog.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Widgets/lmxClipboardEnvelope.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace lmx {

namespace {

enum TColumn { coIndex, coLabel, coColor };

constexpr const char* ClipboardTag = "COLORKEY";

/// Band `i` of `count` equal ones.
TValueRange BandOf(const TValueRange& range, int i, int count) {
    const double step = (range.High - range.Low) / count;
    const double low = i * step + range.Low;
    return {low, low + step};
}

} // namespace

/// The items of the key. A row's label depends on how many there are, and on the choice for no data.
class TBasicPalettePage::TRows final : public IColorListRows {
public:
    explicit TRows(std::shared_ptr<IColorKey> key) : FKey(std::move(key)) {}

    void SetBands(const TValueRange& range, bool isFirstNoData) {
        FRange = range;
        FIsFirstNoData = isFirstNoData;
    }

    int GetCount() const override { return static_cast<int>(FKey->GetColors().size()); }
    QString GetText(int row, int column) const override {
        switch (column) {
        case coIndex:
            return IntToStr(row + 1);
        case coLabel:
            return LabelOf(row);
        default:
            return {};
        }
    }
    TColor32 GetColor(int row) const override { return Item(row).Color; }

private:
    const TColorKeyItem& Item(int row) const { return FKey->GetColors()[static_cast<std::size_t>(row)]; }
    QString LabelOf(int row) const {
        const QString& name = Item(row).Name;
        if (!Trim(name).isEmpty())
            return name;
        if (!FIsFirstNoData)
            return BandOf(FRange, row, GetCount()).ToString();
        return row == 0 ? QStringLiteral("NODATA") : BandOf(FRange, row - 1, GetCount() - 1).ToString();
    }

    std::shared_ptr<IColorKey> FKey;
    TValueRange FRange;
    bool FIsFirstNoData = false;
};

TBasicPalettePage::TBasicPalettePage(QWidget* parent)
    : TListPage(QStringLiteral("lvBasicPalette"), QStringLiteral("Basic palette"), parent),
      FRows(std::make_shared<TRows>(FColorKey)) {
    GetList()->SetColumns(
        {{QStringLiteral("Index"), 50}, {QStringLiteral("Label"), 160}, {QStringLiteral("Color"), 60}});
    GetList()->SetMultiSelect(true);
    GetList()->SetRows(FRows);
    GetColumn()->addWidget(GetList());
    BuildCommands();
    BuildNoData();
}

void TBasicPalettePage::BuildCommands() {
    AddCommand(QStringLiteral("Add..."), QStringLiteral("Button8"), TNeeds::neNothing, [this] { AddClick(); });
    SetDoubleClickButton(AddCommand(QStringLiteral("&Edit..."), QStringLiteral("edBasicEditBtn"), TNeeds::neOneRow,
                                    [this] { edBasicEditBtnClick(); }));
    SetDeleteButton(
        AddCommand(QStringLiteral("Delete"), QStringLiteral("Button1"), TNeeds::neRows, [this] { DeleteClick(); }));
    AddCommand(QStringLiteral("&Load..."), QStringLiteral("btnBasicPalLoad"), TNeeds::neNothing,
               [this] { btnBasicPalLoadClick(); });
    AddCommand(QStringLiteral("&Copy"), QStringLiteral("btnBasicPalCopy"), TNeeds::neNothing,
               [this] { btnBasicPalCopyClick(); });
    AddCommand(QStringLiteral("&Paste"), QStringLiteral("btnBasicPalPaste"), TNeeds::neNothing,
               [this] { btnBasicPalPasteClick(); });
}

void TBasicPalettePage::BuildNoData() {
    FFirstColorNoData = new QRadioButton(QStringLiteral("Use first color for NODATA cells"), this);
    FTransparentNoData = new QRadioButton(QStringLiteral("Use transparency for NODATA cells"), this);
    FFirstColorNoData->setObjectName(QStringLiteral("rbFirstColorNoData"));
    FTransparentNoData->setObjectName(QStringLiteral("rbTransparentNoData"));
    FTransparentNoData->setChecked(true);
    connect(FFirstColorNoData, &QRadioButton::toggled, this, [this] { UpdateBasicPaletteList(); });
    auto* choices = new QGridLayout;
    choices->addWidget(new QLabel(QStringLiteral("NODATA: "), this), 0, 0);
    choices->addWidget(FFirstColorNoData, 0, 1);
    choices->addWidget(FTransparentNoData, 1, 1);
    choices->setColumnStretch(1, 1);
    GetColumn()->addLayout(choices);
}

void TBasicPalettePage::SetBasicPalette(const IBasicPaletteColorCalculator& calculator) {
    if (const auto key = calculator.GetColorKey()) {
        const std::vector<TColorKeyItem>& items = key->GetColors();
        std::vector<TColorKeyItem>& colors = FColorKey->GetColors();
        colors.insert(colors.end(), items.begin(), items.end());
    }
    (calculator.GetReserveFirstColorForNoData() ? FFirstColorNoData : FTransparentNoData)->setChecked(true);
    UpdateBasicPaletteList();
}

std::shared_ptr<IBasicPaletteColorCalculator> TBasicPalettePage::CreateColorCalc() const {
    return TBasicPaletteColorCalculatorFactory::GetObject(FValueRange, FColorKey->GetColors(),
                                                          FFirstColorNoData->isChecked());
}

void TBasicPalettePage::UpdateBasicPaletteList() {
    FRows->SetBands(FValueRange, FFirstColorNoData->isChecked());
    ShowRowsAnew();
}

void TBasicPalettePage::AddClick() {
    TOwnedDialog<TAddBasicPaletteColorDialog> dialog(this); // gone with this page, and then cancelled
    dialog->SetPalColor(clBlack32);
    if (dialog.Execute() != static_cast<int>(TModalResult::mrOk))
        return;
    FColorKey->GetColors().emplace_back(dialog->GetPalLabel(), dialog->GetPalColor());
    UpdateBasicPaletteList();
    GetList()->setFocus();
}

void TBasicPalettePage::edBasicEditBtnClick() {
    const int row = GetList()->GetSelectedRow();
    if (row < 0)
        return;
    const auto index = static_cast<std::size_t>(row);
    const TColorKeyItem edited = FColorKey->GetColors()[index];
    TOwnedDialog<TAddBasicPaletteColorDialog> dialog(this);
    dialog->SetPalLabel(edited.Name);
    dialog->SetPalColor(edited.Color);
    if (dialog.Execute() != static_cast<int>(TModalResult::mrOk) || index >= FColorKey->GetColors().size())
        return;
    FColorKey->GetColors()[index] = TColorKeyItem(dialog->GetPalLabel(), dialog->GetPalColor());
    UpdateBasicPaletteList();
}

void TBasicPalettePage::DeleteClick() {
    const std::vector<int> rows = GetList()->GetSelectedRows();
    auto next = rows.begin();
    int at = 0;
    std::erase_if(FColorKey->GetColors(), [&](const TColorKeyItem&) {
        const bool isRemoved = next != rows.end() && *next == at;
        if (isRemoved)
            ++next;
        ++at;
        return isRemoved;
    });
    ForgetRows(rows);
    UpdateBasicPaletteList();
}

void TBasicPalettePage::btnBasicPalLoadClick() {
    const QPointer<QWidget> self(this);
    const auto choice = ChoosePalette(FConfig, this);
    if (!choice || !self || !choice->IsPalette())
        return;
    TColorPalette palette;
    palette.Load(choice->FileName);
    FColorKey->GetColors().clear();
    for (const TColor32 color : palette)
        FColorKey->GetColors().emplace_back(QString(), color);
    UpdateBasicPaletteList();
}

void TBasicPalettePage::btnBasicPalCopyClick() {
    TClipboardEnvelope::SetText(ClipboardTag, FColorKey->Serialize());
}

// The key goes before the text is read. What fails in it is told, and the list shows what could be read.
void TBasicPalettePage::btnBasicPalPasteClick() {
    if (!TClipboardEnvelope::Contains(ClipboardTag))
        return;
    try {
        FColorKey->DeSerialize(TClipboardEnvelope::GetText(ClipboardTag));
    } catch (...) {
        UpdateBasicPaletteList();
        throw;
    }
    UpdateBasicPaletteList();
}

} // namespace lmx
