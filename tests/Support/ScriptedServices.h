#pragma once

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/lmxClipboard.h>
#include <lmx/Widgets/lmxColorChooser.h>
#include <lmx/Widgets/lmxFileDialog.h>
#include <lmx/Widgets/lmxInputBox.h>
#include <lmx/Widgets/lmxMsgBox.h>
#include <lmx/Widgets/lmxResBrowser.h>
#include <lmx/Widgets/lmxServiceSlot.h>

#include <QString>

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

// Modal services that answer by a script, for tests. Each is made before the test's action, put in place for the scope
// of its life, filled with answers, and asked afterwards what was shown. A question without an answer left fails the
// test.

namespace lmx::tests {

/// A service in place of the present one for as long as it lives.
template<class Service, class Script>
class TScripted {
public:
    Script* operator->() const { return FScript.get(); }

private:
    std::shared_ptr<Script> FScript = std::make_shared<Script>();
    TServiceScope<Service> FScope{FScript};
};

/// Takes the next answer; none left fails the test and gives `otherwise`.
template<class Answer>
Answer TakeAnswer(std::deque<Answer>& answers, const QString& question, Answer otherwise) {
    if (answers.empty()) {
        ADD_FAILURE() << "no answer for: " << question.toStdString();
        return otherwise;
    }
    const Answer answer = answers.front();
    answers.pop_front();
    return answer;
}

struct TShownMessage {
    QString Kind; ///< "Error", "Info", "YesNo" or "Message"
    QString Text;
    QString Title;
    QWidget* Parent = nullptr;

    friend bool operator==(const TShownMessage&, const TShownMessage&) = default;
};

inline void PrintTo(const TShownMessage& message, std::ostream* stream) {
    *stream << message.Kind.toStdString() << " [" << message.Title.toStdString() << "] " << message.Text.toStdString();
}

class TMsgBoxScript final : public IMsgBoxService {
public:
    std::vector<TShownMessage> Shown;
    std::deque<bool> Answers; ///< to YesNo

    void Error(const QString& text, const QString& title, QWidget* parent) override {
        Shown.push_back({"Error", text, title, parent});
    }
    void Info(const QString& text, const QString& title, QWidget* parent) override {
        Shown.push_back({"Info", text, title, parent});
    }
    bool YesNo(const QString& text, const QString& title, QWidget* parent) override {
        Shown.push_back({"YesNo", text, title, parent});
        return TakeAnswer(Answers, text, false);
    }
    void ShowMessage(const QString& text) override { Shown.push_back({"Message", text, {}, nullptr}); }
};
using TScriptedMsgBox = TScripted<TMsgBox, TMsgBoxScript>;

struct TAskedInput {
    QString Title;
    QString Prompt;
    QString DefaultText;

    friend bool operator==(const TAskedInput&, const TAskedInput&) = default;
};

class TInputBoxScript final : public IInputBoxService {
public:
    std::vector<TAskedInput> Asked;
    std::deque<std::optional<QString>> Answers; ///< nothing: cancelled
    std::function<void()> WhileOpen;            ///< what goes on meanwhile, if anything

    QString InputBox(const QString& title, const QString& prompt, const QString& defaultText) override {
        Asked.push_back({title, prompt, defaultText});
        if (WhileOpen)
            WhileOpen();
        return TakeAnswer(Answers, prompt, std::optional<QString>()).value_or(defaultText);
    }
};
using TScriptedInputBox = TScripted<TInputBox, TInputBoxScript>;

class TColorChooserScript final : public IColorChooserService {
public:
    std::vector<TColorChooserDialogOptions> Made; ///< options of each chooser
    std::vector<TColor32> Shown;                  ///< colour with which each was run
    std::deque<std::optional<TColor32>> Answers;  ///< nothing: cancelled
    std::function<void()> WhileOpen;              ///< what goes on meanwhile, if anything

    std::shared_ptr<IColorChooser> CreateColorChooser(TColorChooserDialogOptions options) override {
        Made.push_back(options);
        return std::make_shared<TChooser>(*this, options);
    }

private:
    class TChooser final : public IColorChooser {
    public:
        TChooser(TColorChooserScript& script, TColorChooserDialogOptions options)
            : FScript(script),
              FOptions(options) {}
        TColor GetColor() const override { return WinColor(FColor); }
        void SetColor(TColor color) override { FColor = Color32(color); }
        TColor32 GetColor32() const override { return FColor; }
        void SetColor32(TColor32 color) override { FColor = color; }
        bool Execute(QWidget*) override {
            FScript.Shown.push_back(FColor);
            if (FScript.WhileOpen)
                FScript.WhileOpen();
            const auto answer = TakeAnswer(FScript.Answers, "a colour", std::optional<TColor32>());
            if (!answer)
                return false;
            FColor = FOptions.Contains(TColorChooserDialogOption::coColor32) ? *answer : SetAlpha(*answer, 255);
            return true;
        }

    private:
        TColorChooserScript& FScript;
        TColorChooserDialogOptions FOptions;
        TColor32 FColor = clBlack32;
    };
};
using TScriptedColorChooser = TScripted<TColorChooserFactory, TColorChooserScript>;

class TFileDialogScript final : public IFileDialogService {
public:
    std::vector<TFileDialogRequest> Saved;
    std::vector<TFileDialogRequest> Opened;
    std::deque<std::optional<QString>> Answers; ///< nothing: cancelled
    std::function<void()> WhileOpen;            ///< what goes on meanwhile, if anything

    bool Save(const TFileDialogRequest& request, QString& fileName, QWidget*) override {
        Saved.push_back(request);
        return Answer(request, fileName);
    }
    bool Open(const TFileDialogRequest& request, QString& fileName, QWidget*) override {
        Opened.push_back(request);
        return Answer(request, fileName);
    }

private:
    bool Answer(const TFileDialogRequest& request, QString& fileName) {
        const auto answer = TakeAnswer(Answers, request.Filter, std::optional<QString>());
        if (WhileOpen)
            WhileOpen();
        if (answer)
            fileName = *answer;
        return answer.has_value();
    }
};
using TScriptedFileDialog = TScripted<TFileDialog, TFileDialogScript>;

class TClipboardScript final : public IClipboardService {
public:
    QString Text;
    QString GetAsText() const override { return Text; }
    void SetAsText(const QString& text) override {
        Data.clear();
        Text = text;
    }
    std::map<QString, QByteArray> Data; ///< by MIME type
    std::optional<QByteArray> GetData(const QString& mimeType) const override {
        const auto found = Data.find(mimeType);
        return found == Data.end() ? std::nullopt : std::optional(found->second);
    }
    void SetData(const QString& mimeType, const QByteArray& data) override {
        Text.clear();
        Data = {{mimeType, data}};
    }
};
using TScriptedClipboard = TScripted<TClipboard, TClipboardScript>;

class TResBrowserScript final : public IResBrowserService {
public:
    std::vector<std::vector<QString>> Shown;      ///< names of the sources with which each was run
    std::deque<std::optional<TResource>> Answers; ///< nothing: cancelled
    std::function<void()> WhileOpen;              ///< what goes on meanwhile, if anything

    std::shared_ptr<IResBrowser> CreateResBrowser() override { return std::make_shared<TBrowser>(*this); }

private:
    class TBrowser final : public IResBrowser {
    public:
        explicit TBrowser(TResBrowserScript& script) : FScript(script) {}
        void AddSource(const std::shared_ptr<IResBrowserSource>& source) override {
            if (source)
                FNames.push_back(source->GetName());
        }
        bool Execute(QWidget*) override {
            FScript.Shown.push_back(FNames);
            if (FScript.WhileOpen)
                FScript.WhileOpen();
            const auto answer = TakeAnswer(FScript.Answers, "a resource", std::optional<TResource>());
            FResource = answer.value_or(TResource());
            return answer.has_value();
        }
        TResource GetResource() const override { return FResource; }

    private:
        TResBrowserScript& FScript;
        std::vector<QString> FNames;
        TResource FResource;
    };
};
using TScriptedResBrowser = TScripted<TResBrowserFactory, TResBrowserScript>;

} // namespace lmx::tests
