#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>

#include <lmx/Dialogs/Private/lmxPageScroll.h>
#include <lmx/Dialogs/Private/lmxScreenPlace.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxMsgBox.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QResizeEvent>
#include <QShowEvent>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>

namespace lmx {

namespace {

constexpr QSize ClientSize(721, 702);
constexpr int PageListWidth = 161;
constexpr int Margin = 12;

/// What a page says about edits that it cannot apply; nothing if all is well.
std::optional<QString> ProblemOf(TOptionFrame& page) {
    try {
        page.Apply();
        return std::nullopt;
    } catch (const Exception& failure) {
        return failure.Message();
    } catch (const std::exception& failure) {
        return QString::fromLocal8Bit(failure.what());
    }
}

/// The last widget of a window to which the tab key comes; nil if there is none.
QWidget* LastTabStop(const QWidget& window) {
    for (QWidget* at = window.previousInFocusChain(); at && at != &window; at = at->previousInFocusChain())
        if ((at->focusPolicy() & Qt::TabFocus) != 0)
            return at;
    return nullptr;
}

} // namespace

class TLayerPropertiesDialog::TPageRows final : public IListRows {
public:
    explicit TPageRows(const TObjectList<TOptionFrame>& pages) : FPages(pages) {}
    int GetCount() const override { return FPages.Count(); }
    QString GetText(int row, int) const override { return FPages[row]->GetName(); }

private:
    const TObjectList<TOptionFrame>& FPages;
};

TLayerPropertiesDialog::TLayerPropertiesDialog(QWidget* parent)
    : TModalDialog(QStringLiteral("Layer"), QStringLiteral("Layer properties and settings"), parent),
      FPages(new TDrawnListView(this)),
      FSplitter(new QSplitter(this)),
      FPageTitle(new QLabel(this)),
      FHost(new QWidget(this)) {
    findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly)->setObjectName(QStringLiteral("FormHeading1"));
    BuildPages();
    BuildButtons();
    resize(ClientSize.boundedTo(RoomOnScreen(*this).size()));
}

// The list goes with the other widgets, later than the pages that its rows show.
TLayerPropertiesDialog::~TLayerPropertiesDialog() {
    FLifetime.End();
    FPages->SetRows(nullptr);
}

void TLayerPropertiesDialog::BuildPages() {
    FPages->setObjectName(QStringLiteral("lvPages"));
    FPages->setAccessibleName(QStringLiteral("Pages"));
    FPages->SetColumns({{QStringLiteral("Page"), PageListWidth, true}});
    FPages->setHeaderHidden(true);
    FPages->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    FPages->SetRows(std::make_shared<TPageRows>(FOptionFrames));
    FSelectionSubscription =
        FPages->GetOnSelectionChanged().Add([this](TDrawnListView*) { lvPagesSelectionChanged(); });

    FPageTitle->setObjectName(QStringLiteral("lbPageTitle"));
    FPageTitle->setTextFormat(Qt::PlainText);
    QFont bold = FPageTitle->font();
    bold.setBold(true);
    FPageTitle->setFont(bold);
    FPageTitle->hide();
    FHost->setObjectName(QStringLiteral("pnHost"));
    auto* pages = new QVBoxLayout(FHost);
    pages->setContentsMargins(0, 0, 0, 0);

    auto* right = new QWidget(FSplitter);
    auto* column = new QVBoxLayout(right);
    column->setContentsMargins(Margin / 2, Margin, 0, 0);
    column->addWidget(FPageTitle);
    column->addWidget(new TPageScroll(FHost), 1);

    FSplitter->setObjectName(QStringLiteral("Splitter1"));
    FSplitter->setChildrenCollapsible(false);
    FSplitter->addWidget(FPages);
    FSplitter->addWidget(right);
    FSplitter->setStretchFactor(0, 0);
    FSplitter->setStretchFactor(1, 1);
    FSplitter->setSizes({PageListWidth, ClientSize.width() - 2 * Margin - PageListWidth});

    auto* container = new QWidget(this);
    container->setObjectName(QStringLiteral("pnMainContainer"));
    auto* all = new QHBoxLayout(container);
    all->setContentsMargins(Margin, 0, Margin, Margin);
    all->addWidget(FSplitter);
    GetContent()->setContentsMargins(0, 0, 0, 0);
    GetContent()->addWidget(container);
    static_cast<QVBoxLayout*>(layout())->setStretchFactor(GetContent(), 1);
}

void TLayerPropertiesDialog::BuildButtons() {
    QHBoxLayout* row = AddButtons(QStringLiteral("Button1"), QStringLiteral("Button2"));
    row->parentWidget()->setObjectName(QStringLiteral("pnMainActions"));
    auto* apply = new QPushButton(QStringLiteral("&Apply"), this);
    apply->setObjectName(QStringLiteral("Button3"));
    GuardClick(apply, [this] { ApplyChanges(); });
    row->addWidget(apply);
    for (const QString& name : {QStringLiteral("Button1"), QStringLiteral("Button2"), QStringLiteral("Button3")})
        FButtons.push_back(findChild<QPushButton*>(name));
}

void TLayerPropertiesDialog::AddOptionFrame(std::unique_ptr<TOptionFrame> optionFrame) {
    if (!optionFrame)
        throw EArgumentException(QStringLiteral("OptionFrame is null"));
    if (optionFrame->GetName().isEmpty())
        throw EArgumentException(QStringLiteral("OptionFrame Name is empty"));
    if (!optionFrame->MakesFrameLate()) {
        QWidget* frame = optionFrame->GetFrame();
        if (!frame)
            throw EArgumentException(QStringLiteral("OptionFrame.Frame is null"));
        optionFrame->TakeFrame(frame);
    }
    const int row = FOptionFrames.Count();
    TOptionFrame* page = FOptionFrames.Add(std::move(optionFrame));
    FPages->RowsInserted(row);
    page->SetListItem(FPages->MarkRow(row));
    WidenPageList();
}

bool TLayerPropertiesDialog::SelectPage(const QString& name) {
    for (int row = 0; row < FOptionFrames.Count(); ++row)
        if (FOptionFrames[row]->GetName() == name) {
            FPages->SelectRow(row);
            return true;
        }
    return false;
}

void TLayerPropertiesDialog::WidenPageList() {
    int widest = 0;
    for (const TOptionFrame* page : FOptionFrames)
        widest = std::max(widest, FPages->fontMetrics().horizontalAdvance(page->GetName()));
    FPages->setMinimumWidth(widest + 2 * Margin);
}

void TLayerPropertiesDialog::lvPagesSelectionChanged() {
    const int row = FPages->GetSelectedRow();
    TOptionFrame* const selected = row < 0 ? nullptr : FOptionFrames[row];
    if (selected == FSelected)
        return;
    if (FSelected)
        lvPagesSelectItem(*FSelected, false);
    FSelected = selected;
    if (FSelected)
        lvPagesSelectItem(*FSelected, true);
}

void TLayerPropertiesDialog::lvPagesSelectItem(TOptionFrame& page, bool isSelected) {
    QWidget* const frame = page.GetFrame();
    if (!isSelected) {
        if (frame)
            frame->hide();
        FPageTitle->hide();
        return;
    }
    if (frame && frame->parentWidget() != FHost)
        AddToHost(frame);
    FPageTitle->setText(page.GetName());
    FPageTitle->show();
    if (!frame)
        return;
    frame->show();
    frame->raise();
}

// The tab key leads from the list through the page to the buttons, which were there before the page.
void TLayerPropertiesDialog::AddToHost(QWidget* frame) {
    FHost->layout()->addWidget(frame);
    QWidget* last = LastTabStop(*this);
    if (!last || !frame->isAncestorOf(last))
        return;
    for (QPushButton* button : FButtons) {
        setTabOrder(last, button);
        last = button;
    }
}

bool TLayerPropertiesDialog::ApplyChanges() {
    const TBorrowed self(this); // a page tells a layer, and that may be the end of everything
    std::optional<QString> problem;
    FOptionFrames.ForEach([&problem](TOptionFrame* page) {
        problem = ProblemOf(*page);
        return !problem;
    });
    if (problem)
        TMsgBox::Error(QStringLiteral("Error applying changes: ") + *problem, QStringLiteral("Error"), self.Get());
    return self && !problem;
}

void TLayerPropertiesDialog::OkClick() {
    if (ApplyChanges())
        accept();
}

// A user who makes it larger knows where; a page does not.
void TLayerPropertiesDialog::resizeEvent(QResizeEvent* event) {
    TModalDialog::resizeEvent(event);
    if (!event->spontaneous() && isVisible())
        KeepOnScreen(*this);
}

void TLayerPropertiesDialog::changeEvent(QEvent* event) {
    TModalDialog::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        WidenPageList();
}

void TLayerPropertiesDialog::showEvent(QShowEvent* event) {
    if (!event->spontaneous() && !FSelected)
        FPages->SelectRow(0);
    if (!event->spontaneous())
        CentreOnScreen(*this);
    TModalDialog::showEvent(event);
}

} // namespace lmx
