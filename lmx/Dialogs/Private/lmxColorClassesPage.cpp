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

#include <algorithm>
#include <numeric>

namespace lmx {

namespace {

enum TColumn { coIndex, coLabel, coRange, coColor };

constexpr const char* ClipboardTag = "CLASSIFIED";

/// A class for each colour, over equal parts of the range.
std::vector<TColorClass> ClassesFor(const TColorPalette& palette, const TValueRange& range) {
    std::vector<TColorClass> classes;
    const auto count = static_cast<double>(palette.size());
    const double step = (range.High - range.Low) / count;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const double low = static_cast<double>(i) * step + range.Low;
        const double high = static_cast<double>(i + 1) * step + range.Low;
        classes.emplace_back(Format(u"%.3f - %.3f", {low, high}), static_cast<float>(low), static_cast<float>(high),
                             palette[i]);
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
    void SetClasses(const TEntries& classes) {
        FShown = classes;
        FNumbers.clear();
    }
    void Remove(const std::vector<int>& rows) {
        if (FNumbers.empty()) {
            FNumbers.resize(static_cast<std::size_t>(FShown.size()));
            std::iota(FNumbers.begin(), FNumbers.end(), 1);
        }
        for (auto row = rows.rbegin(); row != rows.rend();) { // as many at once as stand together
            const int last = *row;
            int first = last;
            while (++row != rows.rend() && *row == first - 1)
                --first;
            FShown.remove(first, last - first + 1);
            FNumbers.erase(FNumbers.begin() + first, FNumbers.begin() + last + 1);
        }
    }
    int GetSerial(int row) const { return FShown[row].Serial; }

    int GetCount() const override { return static_cast<int>(FShown.size()); }
    QString GetText(int row, int column) const override {
        switch (column) {
        case coIndex:
            return IntToStr(FNumbers.empty() ? row + 1 : FNumbers[static_cast<std::size_t>(row)]);
        case coLabel:
            return FShown[row].Class.GetLabel();
        case coRange:
            return FShown[row].Class.GetRange().ToString();
        default:
            return {};
        }
    }
    TColor32 GetColor(int row) const override { return FShown[row].Class.GetColor(); }

private:
    TEntries FShown;
    std::vector<int> FNumbers; // none: each row's own
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

std::vector<const TColorClass*> TColorClassesPage::ClassesOf(const TEntries& entries) {
    std::vector<const TColorClass*> classes;
    classes.reserve(static_cast<std::size_t>(entries.size()));
    for (const TEntry& entry : entries)
        classes.push_back(&entry.Class);
    return classes;
}

void TColorClassesPage::Append(const TColorClass& colorClass) {
    FColorClasses.append({++FLastSerial, colorClass});
}

qsizetype TColorClassesPage::IndexOf(int serial) const {
    const auto found = std::lower_bound(FColorClasses.cbegin(), FColorClasses.cend(), serial,
                                        [](const TEntry& entry, int wanted) { return entry.Serial < wanted; });
    return found != FColorClasses.cend() && found->Serial == serial ? found - FColorClasses.cbegin() : -1;
}

void TColorClassesPage::SetColorClasses(const IColorClassCalculator& calculator) {
    if (const auto classes = calculator.GetColorClasses()) {
        FColorClasses.reserve(FColorClasses.size() + classes->GetClasses().Count());
        for (const TColorClass* colorClass : classes->GetClasses())
            Append(*colorClass);
    }
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
    TColorClass added;
    Fill(*dialog.Get(), added);
    Append(added);
    UpdateColorClassList();
    GetList()->setFocus();
}

void TColorClassesPage::btnEditColorClassClick() {
    const int row = GetList()->GetSelectedRow();
    if (row < 0 || IndexOf(FRows->GetSerial(row)) < 0)
        return;
    const int serial = FRows->GetSerial(row);
    const TColorClass edited = FColorClasses[IndexOf(serial)].Class;
    TOwnedDialog<TAddColorClassDialog> dialog(this);
    dialog->SetValueRange(FValueRange);
    dialog->SetClassLabel(edited.GetName());
    dialog->SetClassColor(edited.GetColor());
    dialog->SetMin(edited.GetMinValue());
    dialog->SetMax(edited.GetMaxValue());
    if (dialog.Execute() != static_cast<int>(TModalResult::mrOk) || IndexOf(serial) < 0)
        return;
    Fill(*dialog.Get(), FColorClasses[IndexOf(serial)].Class);
    UpdateColorClassList();
}

// The rows that stay keep their numbers until the list is updated.
void TColorClassesPage::btnDeleteColorClassClick() {
    const std::vector<int> rows = GetList()->GetSelectedRows();
    std::vector<int> serials; // rows and serials both ascend
    for (const int row : rows)
        serials.push_back(FRows->GetSerial(row));
    FColorClasses.removeIf(
        [&serials](const TEntry& entry) { return std::binary_search(serials.begin(), serials.end(), entry.Serial); });
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
    FColorClasses.clear();
    if (palette.empty())
        return;
    for (const TColorClass& colorClass : ClassesFor(palette, FValueRange))
        Append(colorClass);
    UpdateColorClassList();
}

void TColorClassesPage::btnClassifiedCopyClick() {
    TClipboardEnvelope::SetText(ClipboardTag, SerializeColorClasses(ClassesOf(FColorClasses)));
}

// The classes go before the text is read. What fails in it is told, and the list shows what is left.
void TColorClassesPage::PasteClick() {
    if (!TClipboardEnvelope::Contains(ClipboardTag))
        return;
    FColorClasses.clear();
    try {
        for (const auto& colorClass : DeSerializeColorClasses(TClipboardEnvelope::GetText(ClipboardTag)))
            Append(*colorClass);
    } catch (...) {
        UpdateColorClassList();
        throw;
    }
    UpdateColorClassList();
}

} // namespace lmx
