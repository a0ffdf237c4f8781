#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointPasteDialog.h>

#include <lmx/Dialogs/Private/lmxCSVPreview.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace lmx {

namespace {

constexpr int CharactersOfChoice = 16;
constexpr int MostFittedColumns = 50; ///< whose titles are measured
constexpr int MostWidth = 300;
constexpr QSize PreviewSize{480, 200};

class TPreviewView final : public QTableView {
public:
    using QTableView::QTableView;
    QSize sizeHint() const override { return PreviewSize; }
};

} // namespace

TAddMultipleInfoQueryPointPasteDialog::TAddMultipleInfoQueryPointPasteDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Paste"), QStringLiteral("Specify data columns"), parent),
      FX(AddChoice(u"cbX", u"X column")),
      FY(AddChoice(u"cbY", u"Y column")),
      FLabel(AddChoice(u"cbLabel", u"Label column (optional)")),
      FView(new TPreviewView(this)),
      FPreview(new TCSVPreview(FView)),
      FTopRowHeader(new QCheckBox(QStringLiteral("&Treat top row as header"), this)) {
    FView->setObjectName(QStringLiteral("sgView"));
    FView->setAccessibleName(QStringLiteral("Data preview"));
    FView->setModel(FPreview);
    FView->setTabKeyNavigation(false);
    FView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    FView->setWordWrap(false);
    FView->verticalHeader()->hide();
    FView->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    FView->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    FView->horizontalHeader()->setHighlightSections(false);
    FTopRowHeader->setObjectName(QStringLiteral("cbTopRowHeader"));
    FTopRowHeader->setChecked(true);
    connect(FTopRowHeader, &QCheckBox::clicked, this, [this] { GuardEvent(this, [this] { UpdateHeader(); }); });

    auto* label = new QHBoxLayout;
    label->addWidget(FLabel, 1);
    label->addWidget(new QLabel(QStringLiteral("(optional)"), this));
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("&X column:"), FX);
    form->addRow(QStringLiteral("&Y column:"), FY);
    auto* labelTitle = new QLabel(QStringLiteral("&Label column:"), this);
    labelTitle->setBuddy(FLabel);
    form->addRow(labelTitle, label);
    auto* title = new QLabel(QStringLiteral("Data &preview:"), this);
    title->setBuddy(FView);
    GetContent()->addLayout(form);
    GetContent()->addWidget(title);
    GetContent()->addWidget(FView, 1);
    GetContent()->addWidget(FTopRowHeader);
    AddButtons();
    SetOptions({});
}

QComboBox* TAddMultipleInfoQueryPointPasteDialog::AddChoice(const char16_t* objectName,
                                                            const char16_t* accessibleName) {
    auto* choice = new QComboBox(this);
    choice->setObjectName(QString::fromUtf16(objectName));
    choice->setAccessibleName(QString::fromUtf16(accessibleName));
    choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    choice->setMinimumContentsLength(CharactersOfChoice);
    choice->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return choice;
}

void TAddMultipleInfoQueryPointPasteDialog::LoadFromText(const QString& text) {
    LoadFromReader(TCSVReader::FromText(text, GetCSVDelim(text)));
}

void TAddMultipleInfoQueryPointPasteDialog::LoadFromReader(const TCSVReader& reader) {
    FReader = reader;
    UpdateHeader();
    SetOptions(reader.GetColumnNames());
}

void TAddMultipleInfoQueryPointPasteDialog::SetOptions(const QStringList& names) {
    for (QComboBox* choice : {FX, FY, FLabel}) {
        choice->clear();
        choice->addItem(QStringLiteral("-"));
        choice->addItems(names);
        choice->setCurrentIndex(0);
    }
}

// A single row stands among the others, whatever the box says: a header without rows would be all that is seen.
void TAddMultipleInfoQueryPointPasteDialog::UpdateHeader() {
    const bool hasHeader = FTopRowHeader->isChecked() && FReader.GetRowCount() > 1;
    FPreview->Show(FReader, hasHeader);
    QHeaderView& header = *FView->horizontalHeader();
    header.setVisible(hasHeader);
    const int fitted = std::min(FPreview->columnCount(), MostFittedColumns);
    for (int column = 0; hasHeader && column < fitted; ++column)
        header.resizeSection(column,
                             std::clamp(header.sectionSizeHint(column), header.defaultSectionSize(), MostWidth));
}

int TAddMultipleInfoQueryPointPasteDialog::GetItemCount() const {
    const int rows = static_cast<int>(FReader.GetRowCount());
    return std::max(FTopRowHeader->isChecked() ? rows - 1 : rows, 0);
}

void TAddMultipleInfoQueryPointPasteDialog::GetItem(int index, QString& x, QString& y, QString& label) const {
    if (index < 0 || index >= GetItemCount())
        throw EArgumentException(QStringLiteral("Row index is out of range"));
    const auto row = static_cast<std::size_t>(FTopRowHeader->isChecked() ? index + 1 : index);
    const auto cell = [&](int column) {
        return column < 0 ? QString() : FReader.GetCell(row, static_cast<std::size_t>(column)).toString();
    };
    x = cell(GetXColIndex());
    y = cell(GetYColIndex());
    if (GetLabelColIndex() >= 0)
        label = cell(GetLabelColIndex());
}

int TAddMultipleInfoQueryPointPasteDialog::GetXColIndex() const {
    return FX->currentIndex() - 1;
}

int TAddMultipleInfoQueryPointPasteDialog::GetYColIndex() const {
    return FY->currentIndex() - 1;
}

int TAddMultipleInfoQueryPointPasteDialog::GetLabelColIndex() const {
    return FLabel->currentIndex() - 1;
}

// The dialog may go while the message is read.
bool TAddMultipleInfoQueryPointPasteDialog::RequireChoice(QComboBox& choice, const QString& message,
                                                          const QString& title) {
    if (choice.currentIndex() > 0)
        return true;
    const QPointer<QComboBox> box(&choice);
    TMsgBox::Info(message, title, this);
    if (box)
        box->setFocus();
    return false;
}

void TAddMultipleInfoQueryPointPasteDialog::OkClick() {
    if (RequireChoice(*FX, QStringLiteral("Please select a column for X."), QStringLiteral("X")) &&
        RequireChoice(*FY, QStringLiteral("Please select a column for Y."), QStringLiteral("Y")))
        accept();
}

} // namespace lmx
