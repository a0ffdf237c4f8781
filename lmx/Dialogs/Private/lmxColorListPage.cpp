#include <lmx/Dialogs/Private/lmxColorListPage.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/Private/lmxDeviceGrid.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxListKeys.h>

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace lmx {

namespace {

constexpr int ButtonSpacing = 4;
constexpr int TextIndent = 2;

} // namespace

void IColorListRows::Draw(QPainter& canvas, const TListRow& place, int row) const {
    DrawRowGround(canvas, place);
    const std::size_t swatch = place.Cells.size() - 1;
    for (std::size_t column = 0; column < swatch; ++column) {
        const QRect room = place.Cells[column].adjusted(TextIndent, 0, 0, 0);
        canvas.setClipRect(room);
        DrawCellText(canvas, room, GetText(row, static_cast<int>(column)));
    }
    canvas.setClipping(false);
    const QRect& cell = place.Cells[swatch];
    FillRectOnGrid(canvas, QRectF(cell.left(), cell.top() + 1, cell.width() - 2, cell.height() - 2),
                   QColor::fromRgb(Color32(WinColor(GetColor(row)))));
}

TListPage::TListPage(const QString& listObjectName, const QString& listName, QWidget* parent)
    : QWidget(parent),
      FList(new TDrawnListView(this)),
      FColumn(new QVBoxLayout(this)),
      FButtons(new QHBoxLayout),
      FSelectionSubscription(FList->GetOnSelectionChanged().Add([this](TDrawnListView*) { UpdateButtons(); })) {
    FList->setObjectName(listObjectName);
    FList->setAccessibleName(listName);
    FButtons->setSpacing(ButtonSpacing);
    FButtons->addStretch();
}

QPushButton* TListPage::AddCommand(const QString& text, const QString& objectName, TNeeds needs,
                                   std::function<void()> click) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(objectName);
    GuardClick(button, std::move(click));
    if (FCommands.empty())
        FColumn->addLayout(FButtons);
    FButtons->insertWidget(static_cast<int>(FCommands.size()), button);
    FCommands.push_back({button, needs});
    UpdateButtons();
    return button;
}

void TListPage::SetDoubleClickButton(QPushButton* button) {
    FDoubleClickSubscription = FList->GetOnRowDoubleClick().Add([button](TDrawnListView*, int) { button->click(); });
}

void TListPage::SetDeleteButton(QPushButton* button) {
    (new TListKeys(FList))->Add({Qt::Key_Delete}, button);
}

void TListPage::ShowRowsAnew() {
    const std::vector<int> selected = FList->GetSelectedRows();
    FList->RowsReset();
    if (!selected.empty())
        FList->SelectRow(selected.front());
    UpdateButtons();
}

// From the last to the first, as many at once as stand together.
void TListPage::ForgetRows(const std::vector<int>& rows) {
    for (auto end = rows.end(); end != rows.begin();) {
        auto begin = end - 1;
        while (begin != rows.begin() && *(begin - 1) == *begin - 1)
            --begin;
        FList->RowsRemoved(*begin, static_cast<int>(end - begin));
        end = begin;
    }
    UpdateButtons();
}

void TListPage::UpdateButtons() {
    const bool isOne = FList->GetSelectedRow() >= 0;
    const bool isAny = FList->HasSelection();
    for (const TCommand& command : FCommands)
        command.Button->setEnabled(command.Needs == TNeeds::neNothing || isOne ||
                                   (command.Needs == TNeeds::neRows && isAny));
}

} // namespace lmx
