#include <lmx/Dialogs/lmxLayerPropertiesImageHeaderFrame.h>

#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/lmxDrawnListView.h>

#include <QVBoxLayout>

#include <span>
#include <utility>
#include <vector>

namespace lmx {

namespace {

constexpr int NameColumn = 0;

/// The name of a code; the code in digits if it has none.
template<class Code>
QString NameOf(Code code, std::span<const QStringView> names) {
    const auto index = static_cast<std::size_t>(code);
    return index < names.size() ? names[index].toString() : IntToStr(static_cast<std::int64_t>(code));
}

void AddHeader(TLayerPropertiesImageHeaderFrame& frame, const TImageHeader& header) {
    frame.AddValue(QStringLiteral("Min X"), header.GetMinX());
    frame.AddValue(QStringLiteral("Max X"), header.GetMaxX());
    frame.AddValue(QStringLiteral("Min Y"), header.GetMinY());
    frame.AddValue(QStringLiteral("Max Y"), header.GetMaxY());
    frame.AddValue(QStringLiteral("Width"), header.GetWidth());
    frame.AddValue(QStringLiteral("Height"), header.GetHeight());
    frame.AddValue(QStringLiteral("Min Value"), header.GetMinValue());
    frame.AddValue(QStringLiteral("Max Value"), header.GetMaxValue());
    frame.AddValue(QStringLiteral("Resolution X"), header.GetResolutionX());
    frame.AddValue(QStringLiteral("Resolution Y"), header.GetResolutionY());
    frame.AddValue(QStringLiteral("Ref Units"), header.GetRefUnits());
    frame.AddValue(QStringLiteral("Value Units"), header.GetValueUnits());
    frame.AddValue(QStringLiteral("Flag Def"), header.GetFlagDef());
    frame.AddValue(QStringLiteral("Data Type"), NameOf(header.GetDataType(), DataTypeNames));
    frame.AddValue(QStringLiteral("File Type"), NameOf(header.GetFileType(), FileTypeNames));
    frame.AddValue(QStringLiteral("Unit Distance"), header.GetUnitDistance());
    frame.AddValue(QStringLiteral("Flag Value"), header.GetFlagValue());
    frame.AddValue(QStringLiteral("Flag"), BoolToWord(header.GetFlag()));
    frame.AddValue(QStringLiteral("Lineage"), header.GetLineage());
    frame.AddValue(QStringLiteral("Completeness"), header.GetCompleteness());
    frame.AddValue(QStringLiteral("Consistency"), header.GetConsistency());
}

} // namespace

class TLayerPropertiesImageHeaderFrame::TValueRows final : public IListRows {
public:
    void Add(const QString& name, const QString& value) { FValues.emplace_back(name, value); }
    int GetCount() const override { return static_cast<int>(FValues.size()); }
    QString GetText(int row, int column) const override {
        const auto& [name, value] = FValues[static_cast<std::size_t>(row)];
        return column == NameColumn ? name : value;
    }

private:
    std::vector<std::pair<QString, QString>> FValues;
};

TLayerPropertiesImageHeaderFrame::TLayerPropertiesImageHeaderFrame(QWidget* parent)
    : QWidget(parent),
      FRows(std::make_shared<TValueRows>()),
      FValueList(new TDrawnListView(this)) {
    FValueList->setObjectName(QStringLiteral("lvValueList"));
    FValueList->setAccessibleName(QStringLiteral("Image header"));
    FValueList->SetColumns({{QStringLiteral("Property"), 150}, {QStringLiteral("Value"), 100, true}});
    FValueList->SetRows(FRows);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(FValueList);
}

void TLayerPropertiesImageHeaderFrame::AddValue(const QString& name, const QString& value) {
    FRows->Add(name, value);
    FValueList->RowsInserted(FRows->GetCount() - 1);
}

void TLayerPropertiesImageHeaderFrame::AddValue(const QString& name, std::int32_t value) {
    AddValue(name, IntToStr(value));
}

void TLayerPropertiesImageHeaderFrame::AddValue(const QString& name, float value) {
    AddValue(name, Format(u"%.4f", {value}));
}

TLayerPropertiesImageHeaderOptionFrame::TLayerPropertiesImageHeaderOptionFrame(const TImageHeader& header)
    : TLateOptionFrame(QStringLiteral("Image header")),
      FHeader(std::make_shared<TImageHeader>(header)) {}

std::unique_ptr<QWidget> TLayerPropertiesImageHeaderOptionFrame::MakeFrame() const {
    auto frame = std::make_unique<TLayerPropertiesImageHeaderFrame>();
    AddHeader(*frame, *FHeader);
    return frame;
}

} // namespace lmx
