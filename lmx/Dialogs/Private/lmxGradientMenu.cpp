#include <lmx/Dialogs/Private/lmxGradientMenu.h>

#include <lmx/Colour/lmxColorPack.h>

#include <QPainter>
#include <QPointer>
#include <QProxyStyle>

#include <map>
#include <utility>

namespace lmx {

namespace {

constexpr int SwatchWidth = 96; // at the right end of an entry
constexpr int SwatchMargin = 4;

/// Makes the entries of a menu wide enough for swatches.
class TSwatchStyle final : public QProxyStyle {
public:
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        QSize room = QProxyStyle::sizeFromContents(type, option, size, widget);
        if (type == CT_MenuItem)
            room.rwidth() += SwatchWidth + 2 * SwatchMargin;
        return room;
    }
};

/// One row of pixels, the gradient from left to right.
QImage StripOf(const IGradient& gradient, int width) {
    QImage strip(width, 1, QImage::Format_RGB32);
    for (int x = 0; x < width; ++x)
        strip.setPixel(x, 0, gradient.GetColor((x + 0.5) / width));
    return strip;
}

class TSwatchMenu final : public TWidgetMenu {
public:
    TSwatchMenu(const QString& title, QWidget* parent) : TWidgetMenu(title, parent) {
        auto* room = new TSwatchStyle;
        room->setParent(this);
        setStyle(room);
    }

    void Add(const TColorScale& scale, const TGradientMenu::TChosen& chosen) {
        const auto gradient = scale.CreateGradient();
        FGradients[AddEntry(scale.Name, [gradient, chosen] { chosen(gradient); })] = gradient;
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QMenu::paintEvent(event);
        QPainter canvas(this);
        for (const auto& [entry, gradient] : FGradients) {
            const QRect row = actionGeometry(entry);
            const QRect room(row.right() - SwatchWidth - SwatchMargin, row.top() + SwatchMargin, SwatchWidth,
                             row.height() - 2 * SwatchMargin);
            const int pixels = static_cast<int>(SwatchWidth * devicePixelRatioF());
            canvas.drawImage(room, StripOf(*gradient, pixels));
            canvas.setPen(palette().color(QPalette::Mid));
            canvas.drawRect(room.adjusted(0, 0, -1, -1));
        }
    }

private:
    std::map<QAction*, std::shared_ptr<IGradient>> FGradients;
};

} // namespace

TGradientMenu::TGradientMenu(TChosen chosen, QWidget* parent) : TWidgetMenu(parent), FChosen(std::move(chosen)) {
    connect(this, &QMenu::aboutToShow, this, &TGradientMenu::ListScales, Qt::SingleShotConnection);
}

void TGradientMenu::ListScales() {
    QAction* const first = actions().value(0);
    TSwatchMenu* group = nullptr;
    for (const TColorScale& scale : TColorPack::GetScales()) {
        if (!group || group->title() != scale.Group) {
            group = new TSwatchMenu(scale.Group, this);
            group->setObjectName(scale.Group);
            insertMenu(first, group);
        }
        group->Add(scale, FChosen);
    }
}

} // namespace lmx
