#include <lmx/Widgets/lmxModalDialog.h>

#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/lmxEventGuard.h>

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace lmx {

namespace {

constexpr int Margin = 12;
constexpr int Spacing = 8;

} // namespace

TModalDialog::TModalDialog(const QString& caption, const QString& heading, QWidget* parent)
    : QDialog(parent),
      FContent(new QVBoxLayout) {
    setWindowTitle(caption);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(new TFormHeading(heading, this));
    FContent->setContentsMargins(Margin, Margin, Margin, Margin);
    FContent->setSpacing(Spacing);
    column->addLayout(FContent);
}

TModalResult TModalDialog::ShowModal() {
    return static_cast<TModalResult>(exec());
}

void TModalDialog::AddButtons() {
    auto* ok = new QPushButton(QStringLiteral("&OK"), this);
    ok->setObjectName(QStringLiteral("btnOK"));
    ok->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cancel->setObjectName(QStringLiteral("btnCancel"));
    cancel->setAutoDefault(false);
    GuardClick(ok, [this] { OkClick(); });
    GuardClick(cancel, [this] { reject(); });

    auto* row = new QHBoxLayout;
    row->setContentsMargins(Margin, 0, Margin, Margin);
    row->setSpacing(Spacing);
    row->addStretch();
    row->addWidget(ok);
    row->addWidget(cancel);
    static_cast<QBoxLayout*>(layout())->addLayout(row);
}

} // namespace lmx
