#include <lmx/Widgets/lmxResBrowser.h>

#include <lmx/Widgets/Private/lmxResBrowserDialog.h>
#include <lmx/Widgets/lmxOwnedDialog.h>
#include <lmx/Widgets/lmxServiceSlot.h>

namespace lmx {

namespace {

class TDialogResBrowser final : public IResBrowser {
public:
    void AddSource(const std::shared_ptr<IResBrowserSource>& source) override {
        if (source)
            FSources.push_back(source);
    }
    bool Execute(QWidget* parent) override {
        TOwnedDialog<TResBrowserDialog> dialog(parent);
        dialog->SetSources(FSources);
        if (dialog.Execute() != static_cast<int>(TModalResult::mrOk))
            return false;
        FResource = dialog->GetResource();
        return true;
    }
    TResource GetResource() const override { return FResource; }

private:
    std::vector<std::shared_ptr<IResBrowserSource>> FSources;
    TResource FResource;
};

class TDialogResBrowserService final : public IResBrowserService {
public:
    std::shared_ptr<IResBrowser> CreateResBrowser() override { return std::make_shared<TDialogResBrowser>(); }
};

TServiceSlot<IResBrowserService, TDialogResBrowserService>& Slot() {
    static TServiceSlot<IResBrowserService, TDialogResBrowserService> slot;
    return slot;
}

} // namespace

std::shared_ptr<IResBrowser> TResBrowserFactory::GetObject() {
    return Slot().Get()->CreateResBrowser();
}

std::shared_ptr<IResBrowserService> TResBrowserFactory::SetService(std::shared_ptr<IResBrowserService> service) {
    return Slot().Replace(std::move(service));
}

} // namespace lmx
