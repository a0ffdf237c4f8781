#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Dialogs/lmxAddMultipleInfoQueryPointDialog.h>
#include <lmx/Dialogs/lmxLayerPropertiesDialog.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Widgets/lmxDrawnListView.h>
#include <lmx/Widgets/lmxEventGuard.h>
#include <lmx/Widgets/lmxOwnedDialog.h>
#include <tests/Controls/ChaosTables.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QPointer>
#include <QTimer>

namespace lmx::tests {

namespace {

using TCalculator = std::shared_ptr<IBaseColorCalculator>;

std::shared_ptr<IGradientColorCalculator> Gradient() {
    const std::vector<TColorStop> stops = {{0, 0xFF0000FF}, {1, 0xFFFF0000}};
    return TGradientColorCalculatorFactory::GetObject(0.0F, 99.0F, TGradientFactory::GetObject(stops));
}

TCalculator Parts() {
    return TMultipartGradientColorCalculatorFactory::GetObject(0, 99, std::vector{Gradient()});
}

TCalculator Classes() {
    return TColorClassCalculatorFactory::GetObject({TColorClass(QStringLiteral("a"), 0, 50, 0xFF8B4513)});
}

TCalculator Palette() {
    return TBasicPaletteColorCalculatorFactory::GetObject({0, 99}, {{"", 0xFF00FF00U}, {"", 0xFF0000FFU}}, false);
}

// Uses the next dialog after the host was called at "Dialog"; one that does not close then is cancelled.
void UseNext(TChaosScene& s, const std::function<void(QDialog&)>& use) {
    QTimer::singleShot(0, [hooks = s.Hooks, use] {
        GuardEvent(nullptr, [&] { hooks->Call(QStringLiteral("Dialog")); });
        const QPointer<QDialog> dialog(qobject_cast<QDialog*>(QApplication::activeModalWidget()));
        if (dialog)
            use(*dialog);
        if (dialog && dialog->isVisible())
            dialog->reject();
    });
}

void Click(const QWidget& in, const char* name) {
    if (auto* button = in.findChild<QAbstractButton*>(QString::fromLatin1(name)))
        button->click();
}

void ClickAction(QDialog& dialog, const char* name) {
    if (const auto* actions = dialog.findChild<QWidget*>(QStringLiteral("pnMainActions")))
        Click(*actions, name);
}

// Opens the properties of the raster, which has got a calculator, on its colours.
TUse InProperties(TCalculator (*calculator)(), std::function<void(QDialog&)> use) {
    return [calculator, use = std::move(use)](TChaosScene& s) {
        const TBorrowed raster = s.Raster;
        if (raster)
            raster->SetColorCalc(calculator());
        if (!s.View || !raster)
            return;
        TOwnedDialog<TLayerPropertiesDialog> dialog(s.View.get());
        raster->InitPropertiesDialog(dialog.Get());
        dialog->SelectPage(QStringLiteral("Raster display"));
        UseNext(s, use);
        dialog.Execute();
    };
}

TCalculator AnyGradient() {
    return Gradient();
}

// What is clicked opens a dialog of its own, in which the host is called and which is confirmed.
std::function<void(QDialog&)> Opening(TChaosScene* scene, const char* list, const char* button) {
    return [scene, list, button](QDialog& dialog) {
        if (auto* rows = dialog.findChild<TDrawnListView*>(QString::fromLatin1(list)))
            rows->SelectRow(0);
        UseNext(*scene, [](QDialog& inner) { Click(inner, "btnOK"); });
        Click(dialog, button);
    };
}

// As InProperties, with another dialog over it.
TUse InInnerDialog(TCalculator (*calculator)(), const char* list, const char* button) {
    return [=](TChaosScene& s) { InProperties(calculator, Opening(&s, list, button))(s); };
}

// Pastes points into the table of many, by the dialog of the columns.
void PastePoints(TChaosScene& s) {
    if (!s.View)
        return;
    TOwnedDialog<TAddMultipleInfoQueryPointDialog> dialog(s.View.get());
    UseNext(s, [&s](QDialog& many) {
        UseNext(s, [](QDialog& paste) {
            int column = 0;
            for (const char* name : {"cbX", "cbY"})
                if (auto* choice = paste.findChild<QComboBox*>(QString::fromLatin1(name)))
                    choice->setCurrentIndex(++column);
            Click(paste, "btnOK");
        });
        Click(many, "Button4");
    });
    dialog.Execute();
}

void Apply(QDialog& dialog) {
    ClickAction(dialog, "Button3");
}

void Confirm(QDialog& dialog) {
    ClickAction(dialog, "Button1");
}

template<class List>
TArm OnRaster(List& (TBaseMapLayer::*event)()) {
    return [event](TChaosScene& s, const TAction& action) {
        if (s.Raster)
            s.Subscriptions.push_back((s.Raster.Get()->*event)().Add([action](auto&&...) { action(); }));
    };
}

TArm Hook(const char* name) {
    return [name](TChaosScene& s, TAction action) { s.Hooks->Set(QString::fromLatin1(name), std::move(action)); };
}

} // namespace

std::vector<TPlace> ChaosDialogPlaces() {
    using L = TBaseMapLayer;
    return {
        {"Dialog of properties confirmed", Hook("Dialog"), InProperties(Palette, Confirm)},
        {"Dialog of properties applied", Hook("Dialog"), InProperties(AnyGradient, Apply)},
        {"Dialog of a gradient's part", Hook("Dialog"), InInnerDialog(Parts, "lvMultipartGradients", "btnMPEdit")},
        {"Dialog of a new gradient's part", Hook("Dialog"), InInnerDialog(Parts, "lvMultipartGradients", "btnMPAdd")},
        {"Dialog of a colour class", Hook("Dialog"), InInnerDialog(Classes, "lvClasses", "btnEditColorClass")},
        {"Dialog of a palette's colour", Hook("Dialog"), InInnerDialog(Palette, "lvBasicPalette", "edBasicEditBtn")},
        {"Dialog of palettes", Hook("Dialog"), InInnerDialog(Palette, "lvBasicPalette", "btnBasicPalLoad")},
        {"Dialog of pasted columns", Hook("Dialog"), PastePoints},
        {"MsgBox.YesNo of a gradient's part", Hook("MsgBox.YesNo"),
         InInnerDialog(Parts, "lvMultipartGradients", "btnMPDelete")},
        {"ColorChooser.Execute of a stop", Hook("ColorChooser.Execute"),
         InProperties(AnyGradient, [](QDialog& dialog) { Click(dialog, "shpColor"); })},
        {"Raster.OnReadyToDrawChanged of properties", OnRaster(&L::GetOnReadyToDrawChanged),
         InProperties(Palette, Apply)},
        {"Raster.OnLegendComponentChanged of properties", OnRaster(&L::GetOnLegendComponentChanged),
         InProperties(Classes, Confirm)},
        {"Raster.OnInvalidated of properties", OnRaster(&L::GetOnInvalidated), InProperties(Parts, Apply)},
    };
}

} // namespace lmx::tests
