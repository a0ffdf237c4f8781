#include <lmx/Dialogs/Private/lmxColorClassesPage.h>

#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxColorPalette.h>
#include <lmx/Dialogs/Private/lmxPaletteChoice.h>
#include <lmx/Dialogs/lmxAddColorClassDialog.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxClipboardEnvelope.h>
#include <lmx/Widgets/lmxOwnedDialog.h>

#include <QPushButton>
#include <QVBoxLayout>

namespace lmx {

namespace {

enum TColumn { coIndex, coLabel, coRange, coColor };

constexpr const char* ClipboardTag = "CLASSIFIED";

std::vector<const TColorClass*> ClassesOf(const TObjectList<TColorClass>& list) {
    return {list.begin(), list.end()};
}

/// A class for each colour, over equal parts of the range.
std::vector<std::unique_ptr<TColorClass>> ClassesFor(const TColorPalette& palette, const TValueRange& range) {
    std::vector<std::unique_ptr<TColorClass>> classes;
    const auto count = static_cast<double>(palette.size());
    const double step = (range.High - range.Low) / count;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const double low = static_cast<double>(i) * step + range.Low;
        const double high = static_cast<double>(i + 1) * step + range.Low;
        classes.push_back(std::make_unique<TColorClass>(Format(u"%.3f - %.3f", {low, high}), static_cast<float>(low),
                                                        static_cast<float>(high), palette[i]));
    }
    return classes;
}

void Fill(const TAddColorClassDialog& dialog, TColorClass& target) {
    target.SetName(dialog.GetClassLabel());
    target.SetColor(dialog.GetClassColor());
    target.SetMinValue(dialog.GetMin());
    target.SetMaxValue(dialog.GetMax());
}

} // namespace

/// The classes as they were when the list was updated, with the numbers that they had then. A row's class may be gone.
class TColorClassesPage::TRows final : public IColorListRows {
public:
    void SetClasses(const TObjectList<TColorClass>& classes) {
        FRows.clear();
        FRows.reserve(static_cast<std::size_t>(classes.Count()));
        for (TColorClass* colorClass : classes)
            FRows.push_back({static_cast<int>(FRows.size()) + 1, colorClass, colorClass->GetName(),
                             colorClass->GetMinValue(), colorClass->GetMaxValue(), colorClass->GetColor()});
    }
    void Remove(const std::vector<int>& rows) {
        auto next = rows.begin();
        int at = 0;
        std::erase_if(FRows, [&](const TRow&) {
            const bool isRemoved = next != rows.end() && *next == at;
            if (isRemoved)
                ++next;
            ++at;
            return isRemoved;
        });
    }
    TColorClass* GetClass(int row) const { return FRows[static_cast<std::size_t>(row)].Class; }

    int GetCount() const override { return static_cast<int>(FRows.size()); }
    QString GetText(int row, int column) const override {
        const TRow& shown = FRows[static_cast<std::size_t>(row)];
        const TColorClass colorClass(shown.Name, shown.Min, shown.Max, shown.Color);
        switch (column) {
        case coIndex:
            return IntToStr(shown.Number);
        case coLabel:
            return colorClass.GetLabel();
        case coRange:
            return colorClass.GetRange().ToString();
        default:
            return {};
        }
    }
    TColor32 GetColor(int row) const override { return FRows[static_cast<std::size_t>(row)].Color; }

private:
    struct TRow {
        int Number;
        TColorClass* Class;
        QString Name;
        float Min;
        float Max;
        TColor32 Color;
    };

    std::vector<TRow> FRows;
};

TColorClassesPage::TColorClassesPage(QWidget* parent)
    : TListPage(QStringLiteral("lvClasses"), QStringLiteral("Color classes"), parent),
      FRows(std::make_shared<TRows>()) {
    GetList()->SetColumns({{QStringLiteral("Index"), 50},
                           {QStringLiteral("Label"), 160},
                           {QStringLiteral("Range"), 160},
                           {QStringLiteral("Color"), 60}});
    GetList()->SetMultiSelect(true);
    GetList()->SetRows(FRows);
    GetColumn()->addWidget(GetList());
    BuildCommands();
}

void TColorClassesPage::BuildCommands() {
    AddCommand(QStringLiteral("Add..."), QStringLiteral("btnAddColorClass"), TNeeds::neNothing,
               [this] { btnAddColorClassClick(); });
    SetDoubleClickButton(AddCommand(QStringLiteral("&Edit..."), QStringLiteral("btnEditColorClass"), TNeeds::neOneRow,
                                    [this] { btnEditColorClassClick(); }));
    SetDeleteButton(AddCommand(QStringLiteral("&Delete"), QStringLiteral("btnDeleteColorClass"), TNeeds::neRows,
                               [this] { btnDeleteColorClassClick(); }));
    AddCommand(QStringLiteral("&Load..."), QStringLiteral("Button2"), TNeeds::neNothing, [this] { LoadClick(); });
    AddCommand(QStringLiteral("&Copy"), QStringLiteral("btnClassifiedCopy"), TNeeds::neNothing,
               [this] { btnClassifiedCopyClick(); });
    AddCommand(QStringLiteral("&Paste"), QStringLiteral("Button3"), TNeeds::neNothing, [this] { PasteClick(); });
}

void TColorClassesPage::SetColorClasses(const IColorClassCalculator& calculator) {
    if (const auto classes = calculator.GetColorClasses())
        for (const TColorClass* colorClass : classes->GetClasses())
            FColorClasses.Add(std::make_unique<TColorClass>(colorClass));
    UpdateColorClassList();
}

std::shared_ptr<IColorClassCalculator> TColorClassesPage::CreateColorCalc() const {
    return TColorClassCalculatorFactory::GetObject(ClassesOf(FColorClasses));
}

void TColorClassesPage::UpdateColorClassList() {
    FRows->SetClasses(FColorClasses);
    ShowRowsAnew();
}

void TColorClassesPage::btnAddColorClassClick() {
    TOwnedDialog<TAddColorClassDialog> dialog(this); // gone with this page, and then cancelled
    dialog->SetClassColor(clBlack32);
    dialog->SetValueRange(FValueRange);
    if (dialog.Execute() != static_cast<int>(TModalResult::mrOk))
        return;
    auto added = std::make_unique<TColorClass>();
    Fill(*dialog.Get(), *added);
    FColorClasses.Add(std::move(added));
    UpdateColorClassList();
    GetList()->setFocus();
}

void TColorClassesPage::btnEditColorClassClick() {
    const int row = GetList()->GetSelectedRow();
    if (row < 0 || !FColorClasses.Contains(FRows->GetClass(row)))
        return;
    TColorClass* const edited = FRows->GetClass(row);
    TOwnedDialog<TAddColorClassDialog> dialog(this);
    dialog->SetValueRange(FValueRange);
    dialog->SetClassLabel(edited->GetName());
    dialog->SetClassColor(edited->GetColor());
    dialog->SetMin(edited->GetMinValue());
    dialog->SetMax(edited->GetMaxValue());
    if (dialog.Execute() != static_cast<int>(TModalResult::mrOk) || !FColorClasses.Contains(edited))
        return;
    Fill(*dialog.Get(), *edited);
    UpdateColorClassList();
}

// The rows that stay keep their numbers until the list is updated.
void TColorClassesPage::btnDeleteColorClassClick() {
    const std::vector<int> rows = GetList()->GetSelectedRows();
    for (const int row : rows)
        FColorClasses.Remove(FRows->GetClass(row));
    FRows->Remove(rows);
    ForgetRows(rows);
    GetList()->setFocus();
}

// An empty palette leaves no class, and rows that say what there was.
void TColorClassesPage::LoadClick() {
    const QPointer<QWidget> self(this);
    const auto choice = ChoosePalette(FConfig, this);
    if (!choice || !self)
        return;
    if (!choice->IsPalette())
        throw Exception(Format(u"'%s' type not supported", {choice->TypeName}));
    TColorPalette palette;
    palette.Load(choice->FileName);
    FColorClasses.Clear();
    if (palette.empty())
        return;
    for (auto& colorClass : ClassesFor(palette, FValueRange))
        FColorClasses.Add(std::move(colorClass));
    UpdateColorClassList();
}

void TColorClassesPage::btnClassifiedCopyClick() {
    TClipboardEnvelope::SetText(ClipboardTag, SerializeColorClasses(ClassesOf(FColorClasses)));
}

// The classes go before the text is read. What fails in it is told, and the list shows what is left.
void TColorClassesPage::PasteClick() {
    if (!TClipboardEnvelope::Contains(ClipboardTag))
        return;
    FColorClasses.Clear();
    try {
        for (auto& colorClass : DeSerializeColorClasses(TClipboardEnvelope::GetText(ClipboardTag)))
            FColorClasses.Add(std::move(colorClass));
    } catch (...) {
        UpdateColorClassList();
        throw;
    }
    UpdateColorClassList();
}

} // namespace lmx
