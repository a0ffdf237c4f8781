#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/Private/lmxFormHeading.h>
#include <lmx/Widgets/Private/lmxResBrowserDialog.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxResBrowser.h>
#include <tests/Support/DialogChecks.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>
#include <tests/Support/WidgetPictures.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace lmx {
namespace {

using tests::TModalAnswer;

/// Palettes of two folders, of which one lies in the other.
class TTestSource final : public IResBrowserSource {
public:
    explicit TTestSource(const QString& name) : FName(name) {}
    QString GetName() const override { return FName; }
    std::vector<TResource> GetResources() override {
        if (Raises)
            throw Exception(QStringLiteral("cannot be read"));
        if (Looks)
            Looks();
        return {{"Plain", "IdrisiPalFileName", FName + "/plain.pal", ""},
                {"Rain", "IdrisiPalFileName", FName + "/rain.pal", "Climate"},
                {"Snow", "Other", FName + "/snow.txt", "Climate/Winter"}};
    }
    std::vector<TColor32> GetColors(const TResource& resource) override {
        ++Asked;
        if (resource.Name == QStringLiteral("Snow"))
            throw Exception(QStringLiteral("no picture"));
        return {0xFFFF0000U, 0x800000FFU};
    }

    QStringList GetNotes() const override { return Notes; }

    QStringList Notes;
    bool Raises = false;
    std::function<void()> Looks; ///< what happens while it is asked
    int Asked = 0;

private:
    QString FName;
};

struct ResBrowser : testing::Test {
    using TAnswer = TModalAnswer<TResBrowserDialog>;

    ResBrowser() {
        Browser->AddSource(First);
        Browser->AddSource(nullptr);
        Browser->AddSource(Second);
    }
    static TDrawnListView& Folders(TResBrowserDialog& dialog) {
        return *dialog.findChild<TDrawnListView*>(QStringLiteral("lvFolders"));
    }
    static TDrawnListView& Resources(TResBrowserDialog& dialog) {
        return *dialog.findChild<TDrawnListView*>(QStringLiteral("lvResources"));
    }
    static QStringList Names(TDrawnListView& list, int column) {
        QStringList names;
        for (int row = 0; row < list.GetRowCount(); ++row)
            names.append(list.model()->index(row, column).data().toString());
        return names;
    }
    static void Press(TResBrowserDialog& dialog, const char* button) {
        QTest::mouseClick(dialog.findChild<QPushButton*>(QString::fromLatin1(button)), Qt::LeftButton);
    }

    std::shared_ptr<TTestSource> First = std::make_shared<TTestSource>(QStringLiteral("First"));
    std::shared_ptr<TTestSource> Second = std::make_shared<TTestSource>(QStringLiteral("Second"));
    std::shared_ptr<IResBrowser> Browser = TResBrowserFactory::GetObject();
};

TEST_F(ResBrowser, GivesWhatIsChosen) {
    {
        const TAnswer answer([](auto& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Resources");
            EXPECT_EQ(dialog.template findChild<TFormHeading*>()->text(), "Choose a resource");
            EXPECT_EQ(Names(Folders(dialog), 0), (QStringList{"All", "   First", "      Climate", "         Winter",
                                                              "   Second", "      Climate", "         Winter"}));
            EXPECT_EQ(Names(Resources(dialog), 1), (QStringList{"Plain", "Rain", "Snow", "Plain", "Rain", "Snow"}));
            Resources(dialog).SelectRow(4);
            Press(dialog, "btnOK");
        });
        EXPECT_TRUE(Browser->Execute());
    }
    EXPECT_EQ(Browser->GetResource(), (TResource{"Rain", "IdrisiPalFileName", "Second/rain.pal", "Climate"}));
    {
        const TAnswer answer([](auto& dialog) { dialog.reject(); });
        EXPECT_FALSE(Browser->Execute());
    }
    EXPECT_EQ(Browser->GetResource().Name, "Rain");
}

TEST_F(ResBrowser, LooksIntoFolders) {
    const TAnswer answer([](auto& dialog) {
        Folders(dialog).SelectRow(2);
        EXPECT_EQ(Names(Resources(dialog), 1), (QStringList{"Rain", "Snow"}));
        Folders(dialog).SelectRow(4);
        EXPECT_EQ(Names(Resources(dialog), 1), (QStringList{"Plain", "Rain", "Snow"}));
        EXPECT_EQ(dialog.GetResource().FileName, "Second/plain.pal");
        dialog.reject();
    });
    Browser->Execute();
}

TEST_F(ResBrowser, SearchesNames) {
    const TAnswer answer([](auto& dialog) {
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QTest::keyClicks(dialog.focusWidget(), QStringLiteral("RAI")); // the search has the keyboard
        EXPECT_EQ(Names(Resources(dialog), 1), (QStringList{"Rain", "Rain"}));
        QTest::keyClicks(dialog.focusWidget(), QStringLiteral("x"));
        EXPECT_EQ(Resources(dialog).GetRowCount(), 0);
        EXPECT_FALSE(dialog.template findChild<QPushButton*>(QStringLiteral("btnOK"))->isEnabled());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Backspace);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    });
    EXPECT_TRUE(Browser->Execute());
    EXPECT_EQ(Browser->GetResource().FileName, "First/rain.pal");
}

TEST_F(ResBrowser, TakesADoubleClick) {
    const TAnswer answer([](auto& dialog) {
        TDrawnListView& list = Resources(dialog);
        const QPoint at(10, list.RowRect(1).center().y());
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at);
    });
    EXPECT_TRUE(Browser->Execute());
    EXPECT_EQ(Browser->GetResource().Name, "Rain");
}

TEST_F(ResBrowser, PicturesWhatIsSeenOnce) {
    TResBrowserDialog dialog;
    dialog.SetSources({First});
    tests::ShowActive(dialog);
    TDrawnListView& list = Resources(dialog);
    const QImage picture = tests::PictureOf(*list.viewport());
    tests::PictureOf(*list.viewport());
    const QRect row = list.RowRect(1);
    EXPECT_EQ(picture.pixel(20, row.center().y()), 0xFFFF0000U);
    EXPECT_EQ(picture.pixel(list.columnWidth(0) - 20, row.center().y()), 0xFF0000FFU) << "opaque";
    EXPECT_EQ(First->Asked, 3);
}

TEST_F(ResBrowser, TellsOfASourceThatFails) {
    const tests::TScriptedMsgBox messages;
    First->Raises = true;
    {
        const TAnswer answer([](auto& dialog) {
            EXPECT_EQ(Names(Resources(dialog), 1), (QStringList{"Plain", "Rain", "Snow"}));
            dialog.reject();
        });
        Browser->Execute();
    }
    ASSERT_EQ(messages->Shown.size(), 1U);
    EXPECT_EQ(messages->Shown[0].Text, "cannot be read");
}

TEST_F(ResBrowser, ShowsWhatTheSourcesNote) {
    {
        TResBrowserDialog dialog;
        dialog.SetSources({First});
        EXPECT_TRUE(dialog.findChild<QLabel*>("lbNotes")->isHidden());
    }
    First->Notes = {"one is damaged", "two <b>is</b> damaged"};
    Second->Notes = {"three"};
    TResBrowserDialog dialog;
    dialog.SetSources({First, Second});
    auto* notes = dialog.findChild<QLabel*>("lbNotes");
    EXPECT_FALSE(notes->isHidden());
    EXPECT_EQ(notes->text(), "one is damaged\ntwo <b>is</b> damaged\nthree");
    EXPECT_EQ(notes->textFormat(), Qt::PlainText);
    Second->Notes.append("four");
    TResBrowserDialog more;
    more.SetSources({First, Second});
    notes = more.findChild<QLabel*>("lbNotes");
    EXPECT_EQ(notes->text(), "one is damaged\ntwo <b>is</b> damaged\nthree\n... and 1 more");
    EXPECT_TRUE(notes->toolTip().contains("four"));
}

TEST_F(ResBrowser, IsReplacedForAScope) {
    const tests::TScriptedResBrowser script;
    script->Answers = {TResource{"One", "Type", "one.pal", ""}, std::nullopt};
    const auto browser = TResBrowserFactory::GetObject();
    browser->AddSource(First);
    EXPECT_TRUE(browser->Execute());
    EXPECT_EQ(browser->GetResource().FileName, "one.pal");
    EXPECT_FALSE(browser->Execute());
    EXPECT_EQ(script->Shown[0], std::vector<QString>{"First"});
}

TEST_F(ResBrowser, IsReadAndOperatedAtEveryFontSize) {
    tests::CheckForm([this] {
        auto dialog = std::make_unique<TResBrowserDialog>();
        dialog->SetSources({First, Second});
        return dialog;
    });
}

TEST_F(ResBrowser, IsCancelledIfItsOwnerGoesWhileASourceLooks) {
    auto window = std::make_unique<QWidget>();
    First->Looks = [&window] { window.reset(); };
    EXPECT_FALSE(Browser->Execute(window.get()));
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(Browser->GetResource().Name, QString());
}

} // namespace
} // namespace lmx
