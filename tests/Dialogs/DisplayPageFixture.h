#pragma once

#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Dialogs/Private/lmxLazyTab.h>
#include <lmx/Dialogs/lmxLayerPropertiesDisplayFrame.h>
#include <lmx/Layers/lmxLayerManagerConfig.h>
#include <tests/Dialogs/PropertiesDialogFixture.h>

#include <QTabWidget>
#include <QTemporaryDir>

#include <memory>

// What tests of the display page's editors have in common.

namespace lmx::tests {

/// A source by name, which has nothing.
class TNamedPaletteSource final : public IResBrowserSourceProvider {
public:
    explicit TNamedPaletteSource(const QString& name) : FName(name) {}
    std::shared_ptr<IResBrowserSource> GetSource() override { return std::make_shared<TSource>(FName); }

private:
    struct TSource final : IResBrowserSource {
        explicit TSource(const QString& name) : Name(name) {}
        QString GetName() const override { return Name; }
        std::vector<TResource> GetResources() override { return {}; }
        std::vector<TColor32> GetColors(const TResource&) override { return {}; }
        QString Name;
    };

    QString FName;
};

struct TDisplayPageTest : testing::Test {
    TDisplayPageTest() {
        Config->PaletteSources() = {std::make_shared<TNamedPaletteSource>("One"), nullptr,
                                    std::make_shared<TNamedPaletteSource>("Two")};
    }

    void Show(const std::shared_ptr<IBaseColorCalculator>& calculator, const TValueRange& range = {0, 100}) {
        Frame.SetData(range, calculator, 255, Config);
        Frame.resize(640, 480);
        ShowActive(Frame);
    }
    QString ActivePage() { return Find<QTabWidget>(Frame, "Pages").currentWidget()->objectName(); }
    /// A widget of one tab, which is made unless it is there.
    template<class Widget>
    Widget& In(const char* page, const char* name) {
        auto& tab = Find<QWidget>(Frame, page);
        dynamic_cast<TLazyPlace&>(tab).Make();
        return Find<Widget>(tab, name);
    }
    QString WriteFile(const QString& name, const QByteArray& content) {
        const QString path = Folder.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }
    void AnswerBrowser(const QString& fileName, const QString& typeName = QStringLiteral("IdrisiPalFileName")) {
        Browser->Answers.push_back(TResource{"Name", typeName, fileName, ""});
    }

    TScriptedMsgBox Messages;
    TScriptedClipboard Clipboard;
    TScriptedResBrowser Browser;
    QTemporaryDir Folder;
    std::shared_ptr<ILayerManagerConfig> Config = TLayerManagerConfigFactory::GetObject();
    TLayerPropertiesDisplayFrame Frame;
};

/// Waits until what events raised has been shown.
inline void LetMessagesCome() {
    QCoreApplication::processEvents();
}

} // namespace lmx::tests
