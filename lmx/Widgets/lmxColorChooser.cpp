#include <lmx/Widgets/lmxColorChooser.h>

#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Widgets/lmxOwnedDialog.h>
#include <lmx/Widgets/lmxServiceSlot.h>

#include <QColor>
#include <QColorDialog>

namespace lmx {

namespace {

class TQtColorChooser final : public IColorChooser {
public:
    explicit TQtColorChooser(TColorChooserDialogOptions options) : FOptions(options) {}

    TColor GetColor() const override { return WinColor(FColor); }
    void SetColor(TColor color) override { FColor = Color32(color); }
    TColor32 GetColor32() const override { return FColor; }
    void SetColor32(TColor32 color) override { FColor = color; }

    bool Execute(QWidget* parent) override {
        const bool hasAlpha = FOptions.Contains(TColorChooserDialogOption::coColor32);
        TOwnedDialog<QColorDialog> dialog(parent);
        dialog->setOption(QColorDialog::ShowAlphaChannel, hasAlpha);
        dialog->setCurrentColor(QColor::fromRgba(hasAlpha ? FColor : SetAlpha(FColor, 255)));
        if (dialog.Execute() != QDialog::Accepted)
            return false;
        const TColor32 chosen = dialog->selectedColor().rgba();
        FColor = hasAlpha ? chosen : SetAlpha(chosen, 255);
        return true;
    }

private:
    TColorChooserDialogOptions FOptions;
    TColor32 FColor = clBlack32;
};

class TQtColorChooserService final : public IColorChooserService {
public:
    std::shared_ptr<IColorChooser> CreateColorChooser(TColorChooserDialogOptions options) override {
        return std::make_shared<TQtColorChooser>(options);
    }
};

TServiceSlot<IColorChooserService, TQtColorChooserService>& Slot() {
    static TServiceSlot<IColorChooserService, TQtColorChooserService> slot;
    return slot;
}

} // namespace

std::shared_ptr<IColorChooser> TColorChooserFactory::GetObject(TColorChooserDialogOptions options) {
    return Slot().Get()->CreateColorChooser(options);
}

std::shared_ptr<IColorChooserService> TColorChooserFactory::SetService(std::shared_ptr<IColorChooserService> service) {
    return Slot().Replace(std::move(service));
}

} // namespace lmx
