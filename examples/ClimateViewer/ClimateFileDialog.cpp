#include "ClimateFileDialog.h"

#include <lmx/Colour/lmxBitmap32RasterRenderer.h>
#include <lmx/Colour/lmxIdrisiImageMapData.h>
#include <lmx/Colour/lmxValueRange.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Runtime/lmxThread.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

#include "OpenRaster.h"

namespace {

constexpr QSize PreviewSize{320, 160};
constexpr int LettersOfTitle = 40;        // of a variable, in capitals too
constexpr std::size_t MostTimes = 20'000; // in the list; the strip steps through all of them

template<class Box>
Box* Named(Box* box, const char* name, const QString& accessibleName) {
    box->setObjectName(QString::fromLatin1(name));
    box->setAccessibleName(accessibleName);
    return box;
}

QString DimensionsOf(const lmx::TClimateVariableInfo& info) {
    QStringList sizes;
    for (const lmx::TClimateDimension& dimension : info.Dimensions)
        sizes += dimension.Name + ' ' + QString::number(dimension.Size);
    return sizes.join(QStringLiteral(" x "));
}

/// The picture small, on the thread that has read it.
QImage SmallPictureOf(const lmx::TRealImage& image) {
    const lmx::TIdrisiImageMapData data(&image, true);
    const lmx::TImageHeader* const header = image.getHeader();
    const auto colors = DefaultColors({header->GetMinValue(), header->GetMaxValue()});
    const auto bitmap = lmx::TBitmap32RasterRendererFactory::GetObject()->Render(&data, &data, 1, colors.get());
    const double scale = std::min(static_cast<double>(PreviewSize.width()) / bitmap->GetWidth(),
                                  static_cast<double>(PreviewSize.height()) / bitmap->GetHeight());
    return bitmap
        ->Stretched(bitmap->GetBounds(), std::max(1, static_cast<int>(bitmap->GetWidth() * scale)),
                    std::max(1, static_cast<int>(bitmap->GetHeight() * scale)))
        .ToQImage();
}

} // namespace

TClimateFileDialog::TClimateFileDialog(QWidget* parent)
    : QDialog(parent),
      FVariables(Named(new QListWidget(this), "Variables", tr("Variables"))),
      FTime(Named(new QComboBox(this), "Time", tr("Time"))),
      FLevel(Named(new QComboBox(this), "Level", tr("Level"))),
      FFileUnits(Named(new QCheckBox(this), "FileUnits", tr("Units as in the file"))),
      FPreview(Named(new QLabel(this), "Preview", tr("Preview"))),
      FNotes(Named(new QLabel(this), "Notes", tr("Notes"))),
      FButtons(new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel, this)) {
    setWindowTitle(tr("Open climate file"));
    FVariables->setMinimumWidth(LettersOfTitle * fontMetrics().averageCharWidth());
    FVariables->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // what is cut off is in the tool tip
    FVariables->setTextElideMode(Qt::ElideMiddle);
    FPreview->setAlignment(Qt::AlignCenter);
    FPreview->setFrameShape(QFrame::StyledPanel);
    FPreview->setMinimumSize(PreviewSize + QSize(2, 2) * FPreview->frameWidth());
    FNotes->setWordWrap(true);
    FFileUnits->setText(tr("&Units as in the file"));
    auto* form = new QFormLayout;
    const auto label = [&](const QString& text, QWidget* field) { form->addRow(text, field); };
    label(tr("&Variable:"), FVariables);
    label(tr("&Time:"), FTime);
    label(tr("&Level:"), FLevel);
    form->addRow(FFileUnits);
    auto* sides = new QHBoxLayout;
    sides->addLayout(form, 1);
    auto* right = new QVBoxLayout;
    right->addWidget(FPreview);
    right->addWidget(ScrolledNotes(), 1);
    sides->addLayout(right);
    auto* all = new QVBoxLayout(this);
    all->addLayout(sides, 1);
    all->addWidget(FButtons);
    connect(FButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(FButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(FVariables, &QListWidget::currentRowChanged, this, [this] { ShowVariable(); });
    connect(FVariables, &QListWidget::itemActivated, this, [this] {
        if (GetSelection())
            accept();
    });
    connect(FTime, &QComboBox::currentIndexChanged, this, [this] { ShowPreview(); });
    connect(FLevel, &QComboBox::currentIndexChanged, this, [this] { ShowPreview(); });
    connect(FFileUnits, &QCheckBox::toggled, this, [this] { ShowPreview(); });
}

// A file may give occasion to many notes.
QWidget* TClimateFileDialog::ScrolledNotes() {
    auto* area = Named(new QScrollArea(this), "ScrolledNotes", tr("Notes"));
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setWidget(FNotes);
    FNotes->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    FNotes->setAutoFillBackground(false);
    area->viewport()->setAutoFillBackground(false);
    setTabOrder(FFileUnits, area);
    return area;
}

TClimateFileDialog::~TClimateFileDialog() {
    if (FReader)
        FReader->WaitFor();
}

void TClimateFileDialog::SetDataset(std::shared_ptr<const lmx::TClimateDataset> dataset) {
    FDataset = std::move(dataset);
    setWindowTitle(tr("Open %1").arg(QFileInfo(FDataset->GetFileName()).fileName()));
    ListVariables();
}

void TClimateFileDialog::ListVariables() {
    int first = -1;
    for (const lmx::TClimateVariableInfo& info : FDataset->GetVariables()) {
        auto* item = new QListWidgetItem(info.GetTitle() == info.Name ? info.Name : info.GetTitle() + ", " + info.Name,
                                         FVariables);
        item->setToolTip(item->text() + QStringLiteral("\n") + DimensionsOf(info));
        if (info.Refusal.isEmpty() && first < 0)
            first = FVariables->row(item);
        if (!info.Refusal.isEmpty())
            item->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
    }
    FVariables->setCurrentRow(std::max(first, 0));
}

const lmx::TClimateVariableInfo* TClimateFileDialog::Current() const {
    const int row = FVariables->currentRow();
    return FDataset && row >= 0 ? &FDataset->GetVariables()[static_cast<std::size_t>(row)] : nullptr;
}

std::optional<lmx::TClimateSelection> TClimateFileDialog::GetSelection() const {
    const lmx::TClimateVariableInfo* const info = Current();
    if (!info || !info->Refusal.isEmpty())
        return std::nullopt;
    lmx::TClimateSelection selection;
    selection.Variable = static_cast<std::size_t>(FVariables->currentRow());
    selection.Time = static_cast<std::size_t>(std::max(FTime->currentIndex(), 0));
    selection.Level = static_cast<std::size_t>(std::max(FLevel->currentIndex(), 0));
    if (FFileUnits->isChecked())
        selection.Units = lmx::TClimateShownUnits::suFile;
    return selection;
}

void TClimateFileDialog::ShowVariable() {
    const lmx::TClimateVariableInfo* const info = Current();
    const bool canShow = info && info->Refusal.isEmpty();
    {
        const QSignalBlocker times(FTime);
        const QSignalBlocker levels(FLevel);
        const QSignalBlocker units(FFileUnits);
        FTime->clear();
        FLevel->clear();
        if (canShow) {
            const lmx::TClimateTimes& steps = FDataset->GetTimes(static_cast<std::size_t>(FVariables->currentRow()));
            for (std::size_t i = 0; i < std::min(steps.GetCount(), MostTimes); ++i)
                FTime->addItem(steps.GetCaption(i));
            for (std::size_t i = 0; i < info->Levels.size(); ++i)
                FLevel->addItem(info->GetLevelCaption(i));
        }
        FTime->setEnabled(FTime->count() > 1);
        FLevel->setEnabled(FLevel->count() > 1);
        FFileUnits->setEnabled(canShow && !info->Conversion.IsIdentity());
        FFileUnits->setToolTip(canShow ? info->Conversion.ToText() : QString());
    }
    QStringList notes;
    if (info) {
        if (!info->Refusal.isEmpty())
            notes += info->Refusal;
        else if (!info->Conversion.ToText().isEmpty())
            notes += tr("Units: %1.").arg(info->Conversion.ToText());
        notes += info->Notes;
    }
    FNotes->setText(notes.join(QStringLiteral("\n\n")));
    FButtons->button(QDialogButtonBox::Open)->setEnabled(canShow);
    ShowPreview();
}

// Read and coloured in the background: a slice may take a while, and the dialog stays quick.
void TClimateFileDialog::ShowPreview() {
    const quint64 request = ++FRequest;
    FPreview->setPixmap({});
    const auto selection = GetSelection();
    FPreview->setText(selection ? tr("Reading...") : QString());
    if (!selection)
        return;
    const auto read = [dataset = FDataset, selection = *selection, request, self = QPointer(this)] {
        QImage picture;
        QString failure;
        try {
            picture = SmallPictureOf(*dataset->Read(selection).Image);
        } catch (const lmx::Exception& problem) {
            failure = problem.Description();
        }
        lmx::TThread::Synchronize([self, request, picture, failure] {
            if (self)
                self->TakePreview(request, picture, failure);
        });
    };
    FReader = lmx::TThread::CreateAnonymousThread(read);
    FReader->Start();
}

void TClimateFileDialog::TakePreview(quint64 request, const QImage& picture, const QString& failure) {
    if (request != FRequest)
        return;
    if (picture.isNull())
        FPreview->setText(failure.isEmpty() ? tr("Nothing to show") : failure);
    else
        FPreview->setPixmap(QPixmap::fromImage(picture));
}
