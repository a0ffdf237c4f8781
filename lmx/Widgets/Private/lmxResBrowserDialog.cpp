#include <lmx/Widgets/Private/lmxResBrowserDialog.h>

#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>

namespace lmx {

namespace {

enum TColumn { coSwatch, coName };

struct TEntry {
    std::shared_ptr<IResBrowserSource> Source;
    TResource Resource;
    std::optional<std::vector<TColor32>> Colors; ///< once they have been seen
};

/// A place to look in: everything, a source, or a folder of one and what lies below it.
struct TFolder {
    QString Name;
    const IResBrowserSource* Source = nullptr; ///< nil: all
    QString Path;                              ///< empty: the whole source

    bool Holds(const TEntry& entry) const {
        if (Source && entry.Source.get() != Source)
            return false;
        const QString& folder = entry.Resource.Folder;
        return Path.isEmpty() || folder == Path || folder.startsWith(Path + u'/');
    }
};

void DrawSwatch(QPainter& canvas, const QRect& room, const std::vector<TColor32>& colors) {
    const double step = static_cast<double>(room.width()) / static_cast<double>(colors.size());
    for (std::size_t i = 0; i < colors.size(); ++i)
        FillRectOnGrid(canvas, QRectF(room.left() + static_cast<double>(i) * step, room.top(), step + 1, room.height()),
                       QColor::fromRgb(colors[i] | 0xFF000000U));
}

} // namespace

class TResBrowserDialog::TFolderRows final : public IListRows {
public:
    void SetFolders(std::vector<TFolder> folders) { FFolders = std::move(folders); }
    const TFolder& Get(int row) const { return FFolders[static_cast<std::size_t>(row)]; }

    int GetCount() const override { return static_cast<int>(FFolders.size()); }
    QString GetText(int row, int) const override {
        const TFolder& folder = Get(row);
        const auto depth = folder.Path.isEmpty() ? qsizetype{0} : folder.Path.count(u'/') + 1;
        return QString((folder.Source ? depth + 1 : 0) * 3, u' ') + folder.Name;
    }

private:
    std::vector<TFolder> FFolders;
};

class TResBrowserDialog::TResourceRows final : public IListRows {
public:
    void Add(TEntry entry) { FEntries.push_back(std::move(entry)); }
    const std::vector<TEntry>& Entries() const { return FEntries; }
    void Show(const TFolder& folder, const QString& search) {
        FShown.clear();
        for (std::size_t i = 0; i < FEntries.size(); ++i)
            if (folder.Holds(FEntries[i]) && FEntries[i].Resource.Name.contains(search, Qt::CaseInsensitive))
                FShown.push_back(i);
    }
    const TResource& Get(int row) const { return EntryOf(row).Resource; }

    int GetCount() const override { return static_cast<int>(FShown.size()); }
    QString GetText(int row, int column) const override { return column == coName ? Get(row).Name : QString(); }
    void Draw(QPainter& canvas, const TListRow& place, int row) const override {
        IListRows::Draw(canvas, place, row);
        const std::vector<TColor32>& colors = ColorsOf(EntryOf(row));
        if (!colors.empty())
            DrawSwatch(canvas, place.Cells[coSwatch].adjusted(2, 2, -2, -2), colors);
    }

private:
    TEntry& EntryOf(int row) const { return FEntries[FShown[static_cast<std::size_t>(row)]]; }
    static const std::vector<TColor32>& ColorsOf(TEntry& entry) {
        if (!entry.Colors) {
            entry.Colors.emplace();
            try {
                entry.Colors = entry.Source->GetColors(entry.Resource);
            } catch (...) {
                // By contract: what cannot be pictured can still be chosen, and then tells what is wrong with it.
            }
        }
        return *entry.Colors;
    }

    mutable std::vector<TEntry> FEntries;
    std::vector<std::size_t> FShown;
};

TResBrowserDialog::TResBrowserDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Resources"), QStringLiteral("Choose a resource"), parent),
      FFolders(std::make_shared<TFolderRows>()),
      FResources(std::make_shared<TResourceRows>()),
      FSearch(new QLineEdit(this)),
      FFolderList(new TDrawnListView(this)),
      FResourceList(new TDrawnListView(this)),
      FNotes(new QLabel(this)) {
    FSearch->setObjectName(QStringLiteral("edSearch"));
    FSearch->setClearButtonEnabled(true);
    FFolderList->setObjectName(QStringLiteral("lvFolders"));
    FFolderList->setAccessibleName(QStringLiteral("Folders"));
    FFolderList->SetColumns({{QStringLiteral("Folder"), 100, true}});
    FFolderList->SetRows(FFolders);
    FResourceList->setObjectName(QStringLiteral("lvResources"));
    FResourceList->setAccessibleName(QStringLiteral("Resources"));
    FResourceList->SetColumns({{QStringLiteral("Colors"), 160}, {QStringLiteral("Name"), 160, true}});
    FResourceList->SetRows(FResources);

    auto* label = new QLabel(QStringLiteral("&Search:"), this);
    label->setBuddy(FSearch);
    auto* search = new QHBoxLayout;
    search->addWidget(label);
    search->addWidget(FSearch, 1);
    auto* lists = new QHBoxLayout;
    lists->addWidget(FFolderList, 1);
    lists->addWidget(FResourceList, 2);
    GetContent()->addLayout(search);
    FNotes->setObjectName(QStringLiteral("lbNotes"));
    FNotes->setTextFormat(Qt::PlainText);
    FNotes->setWordWrap(true);
    FNotes->hide();
    GetContent()->addLayout(lists, 1);
    GetContent()->addWidget(FNotes);
    AddButtons();
    FOk = findChild<QPushButton*>(QStringLiteral("btnOK"));

    connect(FSearch, &QLineEdit::textChanged, this, [this] { Filter(); });
    FSubscriptions.push_back(FFolderList->GetOnSelectionChanged().Add([this](TDrawnListView*) { Filter(); }));
    FSubscriptions.push_back(FResourceList->GetOnSelectionChanged().Add([this](TDrawnListView*) { UpdateButtons(); }));
    FSubscriptions.push_back(FResourceList->GetOnRowDoubleClick().Add([this](TDrawnListView*, int) { FOk->click(); }));
    resize(620, 460);
}

void TResBrowserDialog::SetSources(const std::vector<std::shared_ptr<IResBrowserSource>>& sources) {
    std::vector<TFolder> folders{{QStringLiteral("All"), nullptr, QString()}};
    QStringList notes;
    const QPointer<TResBrowserDialog> self(this); // a source may take its time, and the dialog's owner may go
    const std::shared_ptr<TResourceRows> resources = FResources;
    for (const auto& source : sources)
        GuardEvent(self, [&] {
            folders.push_back({source->GetName(), source.get(), QString()});
            std::vector<QString> paths;
            for (const TResource& resource : source->GetResources()) {
                resources->Add({source, resource, std::nullopt});
                for (qsizetype end = resource.Folder.size(); end > 0; end = resource.Folder.lastIndexOf(u'/', end - 1))
                    paths.push_back(resource.Folder.left(end));
            }
            std::sort(paths.begin(), paths.end());
            paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
            for (const QString& path : paths)
                folders.push_back({path.section(u'/', -1), source.get(), path});
            notes += source->GetNotes();
        });
    if (!self)
        return;
    FFolders->SetFolders(std::move(folders));
    FFolderList->RowsReset();
    FFolderList->SelectRow(0);
    ShowNotes(notes);
    Filter();
}

// Of many notes the first few are read here, and the others when the mouse rests on them.
void TResBrowserDialog::ShowNotes(const QStringList& notes) {
    constexpr int mostLines = 3;
    QStringList lines = notes.first(std::min<qsizetype>(notes.size(), mostLines));
    if (notes.size() > mostLines)
        lines.append(QStringLiteral("... and ") + IntToStr(static_cast<int>(notes.size()) - mostLines) +
                     QStringLiteral(" more"));
    FNotes->setText(lines.join(u'\n'));
    FNotes->setToolTip(notes.size() > mostLines ? notes.join(u'\n') : QString());
    FNotes->setVisible(!notes.isEmpty());
}

TResource TResBrowserDialog::GetResource() const {
    const int row = FResourceList->GetSelectedRow();
    return row < 0 ? TResource() : FResources->Get(row);
}

// A search that leaves something selects the first of it.
void TResBrowserDialog::Filter() {
    const int folder = FFolderList->GetSelectedRow();
    FResources->Show(folder < 0 ? TFolder() : FFolders->Get(folder), FSearch->text().trimmed());
    FResourceList->RowsReset();
    FResourceList->SelectRow(0);
    UpdateButtons();
}

void TResBrowserDialog::UpdateButtons() {
    FOk->setEnabled(FResourceList->GetSelectedRow() >= 0);
}

} // namespace lmx
