// The viewer's export of pictures, by its menu, its dialog and the file dialog.

#include "PictureExport.h"

#include "ViewerWindow.h"

#include <lmx/Controls/lmxMapViewControl.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/ScriptedServices.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include "SampleMap.h"

namespace lmx {
namespace {

const QString DataFolder = QStringLiteral(LMX_EXAMPLE_DATA);

class PictureExport : public testing::Test {
protected:
    PictureExport() {
        AddSampleLayers(Window.GetLayerManager(), DataFolder);
        Window.GetLayerManager()->SetTitle(QStringLiteral("Relief and sea"));
        Window.resize(900, 500);
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
        QCoreApplication::processEvents();
        Window.ShowWholeWorld();
    }

    void Export() {
        for (QAction* action : Window.menuBar()->actions().at(0)->menu()->actions())
            if (action->text() == QStringLiteral("Export &picture..."))
                action->trigger();
    }
    static void Press(TPictureDialog& dialog, QDialogButtonBox::StandardButton button) {
        QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
    }
    template<class Widget>
    static Widget* Find(TPictureDialog& dialog, const char* name) {
        return dialog.findChild<Widget*>(QString::fromLatin1(name));
    }

    QTemporaryDir Folder;
    TViewerWindow Window;
};

TEST_F(PictureExport, WritesWhatTheDialogAsksFor) {
    tests::TScriptedFileDialog files;
    files->Answers = {Folder.filePath(QStringLiteral("map.png"))};
    {
        const tests::TModalAnswer<TPictureDialog> answer([&](TPictureDialog& dialog) {
            EXPECT_EQ(Find<QLineEdit>(dialog, "Title")->text(), "Relief and sea");
            EXPECT_EQ(Find<QSpinBox>(dialog, "Width")->value(), Window.GetView()->width());
            EXPECT_EQ(Find<QSpinBox>(dialog, "Height")->value(), Window.GetView()->height());
            QLineEdit* title = Find<QLineEdit>(dialog, "Title");
            title->selectAll();
            QTest::keyClicks(title, QStringLiteral("Sea in January"));
            QTest::keyClicks(Find<QLineEdit>(dialog, "Time"), QStringLiteral("January"));
            Find<QSpinBox>(dialog, "Width")->setValue(700);
            Find<QSpinBox>(dialog, "Height")->setValue(400);
            Find<QDoubleSpinBox>(dialog, "Density")->setValue(1.5);
            Find<QComboBox>(dialog, "Area")->setCurrentIndex(1);
            QTest::keyClick(Find<QCheckBox>(dialog, "Rose"), Qt::Key_Space);
            Press(dialog, QDialogButtonBox::Ok);
        });
        Export();
    }
    const QImage picture(Folder.filePath(QStringLiteral("map.png")));
    EXPECT_EQ(picture.size(), QSize(1050, 600));
    EXPECT_EQ(picture.text(QStringLiteral("Title")), "Sea in January");
    EXPECT_EQ(picture.text(QStringLiteral("Time")), "January");
    EXPECT_EQ(picture.text(QStringLiteral("Extent")), "west -180, south -90, east 180, north 90");
    ASSERT_EQ(files->Saved.size(), 1U);
    EXPECT_EQ(files->Saved[0].Filter, "Pictures (PNG)|*.png|Pages (PDF)|*.pdf");
    EXPECT_EQ(files->Saved[0].DefaultExtension, "png");
}

TEST_F(PictureExport, WritesWhatTheWindowShows) {
    Window.GetView()->GetViewport()->ZoomTo({100, 30, 140, 10});
    const TMapArea visible = Window.GetView()->GetViewport()->GetVisibleMapArea();
    tests::TScriptedFileDialog files;
    files->Answers = {Folder.filePath(QStringLiteral("map.pdf"))};
    {
        const tests::TModalAnswer<TPictureDialog> answer([&](TPictureDialog& dialog) {
            EXPECT_EQ(dialog.GetOptions(visible).Area, visible);
            EXPECT_TRUE(dialog.GetOptions(visible).ShowsLegends);
            EXPECT_FALSE(dialog.GetOptions(visible).ShowsAnnotations);
            Press(dialog, QDialogButtonBox::Ok);
        });
        Export();
    }
    QFile file(Folder.filePath(QStringLiteral("map.pdf")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("Relief and sea"));
}

TEST_F(PictureExport, DoesNothingWhenCancelled) {
    {
        const tests::TModalAnswer<TPictureDialog> answer(
            [&](TPictureDialog& dialog) { Press(dialog, QDialogButtonBox::Cancel); });
        Export();
    }
    tests::TScriptedFileDialog files;
    files->Answers = {std::nullopt};
    const tests::TModalAnswer<TPictureDialog> answer(
        [&](TPictureDialog& dialog) { Press(dialog, QDialogButtonBox::Ok); });
    Export();
    EXPECT_EQ(files->Saved.size(), 1U);
}

TEST_F(PictureExport, TellsWhatFails) {
    tests::TScriptedFileDialog files;
    tests::TScriptedMsgBox messages;
    files->Answers = {Folder.filePath(QStringLiteral("map.bmp"))};
    const tests::TModalAnswer<TPictureDialog> answer(
        [&](TPictureDialog& dialog) { Press(dialog, QDialogButtonBox::Ok); });
    Export();
    QCoreApplication::processEvents();
    ASSERT_EQ(messages->Shown.size(), 1U);
    EXPECT_EQ(messages->Shown[0].Text,
              Folder.filePath(QStringLiteral("map.bmp")) + ": pictures are written as .png or .pdf");
}

} // namespace
} // namespace lmx
