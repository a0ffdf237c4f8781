#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxFormHeading.h>
#include <lmx/Widgets/lmxModalDialog.h>

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace lmx {

TModalDialog::TModalDialog(const QString& caption, const QString& heading, QWidget* parent)
    : QDialog(parent),
      FContent(new QVBoxLayout) {
    setWindowTitle(caption);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(new TFormHeading(heading, this));
    FContent->setContentsMargins(12, 12, 12, 12);
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
    row->setContentsMargins(12, 0, 12, 12);
    row->addStretch();
    row->addWidget(ok);
    row->addWidget(cancel);
    layout()->addItem(row);
}

} // namespace lmx
