#include <lmx/Runtime/lmxText.h>
#include <lmx/Widgets/lmxFileDialog.h>
#include <tests/Support/ModalAnswer.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ScriptedServices.h>

#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>

namespace lmx {
namespace {

using tests::TModalAnswer;

struct FileDialog : testing::Test {
    QTemporaryDir Folder;
    TFileDialogRequest Request;

    void SetUp() override {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        Request = {"Export", "ArcInfo grid|*.asc", "asc", Folder.path(), true};
    }
    void TearDown() override { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false); }

    static void Type(QFileDialog& dialog, const QString& name) {
        dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
    }
};

TEST_F(FileDialog, SavesWithTheDefaultExtension) {
    const TModalAnswer<QFileDialog> answer([this](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Export");
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(dialog.nameFilters(), QStringList{"ArcInfo grid (*.asc)"});
        EXPECT_FALSE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
        Type(dialog, Folder.filePath(QStringLiteral("rain")));
        static_cast<QDialog&>(dialog).accept();
    });
    QString fileName;
    EXPECT_TRUE(TFileDialog::Save(Request, fileName));
    EXPECT_EQ(fileName, Folder.filePath(QStringLiteral("rain.asc")));
}

TEST_F(FileDialog, SavesOverAFileUnaskedIfWished) {
    Request.OverwritePrompt = false;
    Request.FileName = Folder.filePath(QStringLiteral("rain.asc"));
    WriteFile(Request.FileName, "x");
    const TModalAnswer<QFileDialog> answer([](QFileDialog& dialog) { static_cast<QDialog&>(dialog).accept(); });
    QString fileName;
    EXPECT_TRUE(TFileDialog::Save(Request, fileName));
    EXPECT_EQ(fileName, Request.FileName);
}

TEST_F(FileDialog, OpensAnExistingFile) {
    WriteFile(Folder.filePath(QStringLiteral("rain.asc")), "x");
    const TModalAnswer<QFileDialog> answer([this](QFileDialog& dialog) {
        EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
        Type(dialog, Folder.filePath(QStringLiteral("rain.asc")));
        static_cast<QDialog&>(dialog).accept();
    });
    QString fileName;
    EXPECT_TRUE(TFileDialog::Open(Request, fileName));
    EXPECT_EQ(fileName, Folder.filePath(QStringLiteral("rain.asc")));
}

TEST_F(FileDialog, LeavesTheNameWhenCancelled) {
    const TModalAnswer<QFileDialog> answer([](QFileDialog& dialog) { dialog.reject(); });
    QString fileName = QStringLiteral("before");
    EXPECT_FALSE(TFileDialog::Save(Request, fileName));
    EXPECT_EQ(fileName, "before");
}

TEST(FileDialogFilters, AreWrittenInQtsWay) {
    EXPECT_EQ(TFileDialog::NameFilters("Grid|*.asc;*.txt|All files|*.*"),
              (QStringList{"Grid (*.asc *.txt)", "All files (*.*)"}));
    EXPECT_EQ(TFileDialog::NameFilters("Anything"), QStringList{"Anything (*)"});
    EXPECT_EQ(TFileDialog::NameFilters(""), QStringList());
}

TEST(FileDialogScript, AnswersInPlaceOfTheDialog) {
    const tests::TScriptedFileDialog script;
    script->Answers = {"a.asc", std::nullopt};
    QString fileName;
    EXPECT_TRUE(TFileDialog::Save({"Export", "Grid|*.asc", "asc", {}, true}, fileName));
    EXPECT_EQ(fileName, "a.asc");
    EXPECT_FALSE(TFileDialog::Open({}, fileName));
    EXPECT_EQ(fileName, "a.asc");
    ASSERT_EQ(script->Saved.size(), 1U);
    EXPECT_EQ(script->Saved[0].Filter, "Grid|*.asc");
    EXPECT_EQ(script->Opened.size(), 1U);
}

} // namespace
} // namespace lmx
