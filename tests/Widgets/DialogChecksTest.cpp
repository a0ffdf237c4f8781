#include <tests/Support/DialogChecks.h>
#include <tests/Support/Printers.h>

#include <QAbstractButton>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <gtest/gtest.h>

// Forms with one fault each, and that the checks see it.

namespace lmx {
namespace {

struct DialogChecks : testing::Test {
    QStringList Faults() { return tests::FaultsOf(Form); }
    template<class Widget, class... Args>
    Widget* Add(const char* name, Args... args) {
        auto* widget = new Widget(args..., &Form);
        widget->setObjectName(QString::fromLatin1(name));
        widget->setAccessibleName(QString::fromLatin1(name));
        Column->addWidget(widget);
        return widget;
    }

    QWidget Form;
    QVBoxLayout* Column = new QVBoxLayout(&Form);
};

TEST_F(DialogChecks, FindNothingInAFormThatIsInOrder) {
    auto* fields = new QFormLayout;
    fields->addRow(QStringLiteral("&Name:"), new QLineEdit(&Form));
    fields->addRow(QStringLiteral("&Place:"), new QLineEdit(&Form));
    Column->addLayout(fields);
    Add<QRadioButton>("one", QStringLiteral("&Horizontal"))->setChecked(true);
    Add<QRadioButton>("two", QStringLiteral("&Vertical"));
    Add<QPushButton>("ok", QStringLiteral("&OK"));
    EXPECT_EQ(Faults(), QStringList());
}

TEST_F(DialogChecks, FindATextThatIsCutOff) {
    Add<QLabel>("label", QStringLiteral("a long text"))->setFixedWidth(20);
    EXPECT_EQ(Faults(), QStringList{"label is cut off"});
}

TEST_F(DialogChecks, FindWhatLiesOutsideOrOnTopOfOthers) {
    auto* one = new QPushButton(QStringLiteral("one"), &Form);
    auto* two = new QPushButton(QStringLiteral("two"), &Form);
    Form.resize(300, 100);
    one->setGeometry(0, 0, 100, 40);
    two->setGeometry(50, 10, 100, 40);
    EXPECT_EQ(Faults(), QStringList{"one and two overlap"});
    two->setGeometry(250, 10, 100, 40);
    EXPECT_EQ(Faults(), QStringList{"two lies outside"});
}

TEST_F(DialogChecks, FindAColumnThatIsNarrowerThanItsTitle) {
    auto* list = Add<QTreeWidget>("list");
    list->setHeaderLabels({QStringLiteral("a long title"), QString()});
    list->setColumnWidth(0, 10);
    EXPECT_EQ(Faults(), QStringList{"list: the title of column 0 is cut off"});
}

TEST_F(DialogChecks, FindAControlWithoutAName) {
    Add<QLineEdit>("edit")->setAccessibleName(QString());
    EXPECT_EQ(Faults(), QStringList{"edit has no name for screen readers"});
}

TEST_F(DialogChecks, FindAControlThatTheTabKeyDoesNotReach) {
    Add<QPlainTextEdit>("memo"); // it takes the key for itself
    Add<QPushButton>("ok", QStringLiteral("OK"));
    EXPECT_EQ(Faults(), QStringList{"the tab key does not reach ok"});
}

TEST_F(DialogChecks, FindATabKeyThatLeadsBack) {
    auto* first = Add<QLineEdit>("first");
    auto* second = Add<QLineEdit>("second");
    auto* third = Add<QLineEdit>("third");
    QWidget::setTabOrder(first, third);
    QWidget::setTabOrder(third, second);
    EXPECT_EQ(Faults(), QStringList{"the tab key leads back from third to second"});
}

TEST_F(DialogChecks, FindAccessKeysThatTwoHave) {
    Add<QPushButton>("one", QStringLiteral("&Open"));
    Add<QPushButton>("two", QStringLiteral("&OK"));
    EXPECT_EQ(Faults(), QStringList{"Alt+O is the key of \"&Open\" and \"&OK\""});
}

TEST_F(DialogChecks, FindAnAccessKeyThatLeadsNowhere) {
    Add<QLabel>("label", QStringLiteral("&Name:"));
    EXPECT_EQ(Faults(), QStringList{"\"&Name:\" leads nowhere"});
}

TEST_F(DialogChecks, LookAtEveryPage) {
    auto* tabs = Add<QTabWidget>("tabs");
    for (const QString& title : {QStringLiteral("first"), QStringLiteral("second")}) {
        auto* page = new QWidget;
        auto* column = new QVBoxLayout(page);
        auto* button = new QPushButton(QStringLiteral("&Add"), page); // the same key on two pages
        button->setObjectName(title);
        column->addWidget(button);
        tabs->addTab(page, title);
    }
    EXPECT_EQ(Faults(), QStringList());
    tabs->widget(1)->findChild<QPushButton*>()->setFixedWidth(5);
    EXPECT_EQ(Faults(), QStringList{"second is cut off"});
}

} // namespace
} // namespace lmx
