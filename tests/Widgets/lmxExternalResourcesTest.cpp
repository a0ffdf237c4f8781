#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Widgets/lmxExternalResources.h>
#include <lmx/Widgets/lmxServiceSlot.h>
#include <tests/Support/Printers.h>
#include <tests/Support/WidgetPictures.h>

#include <gtest/gtest.h>

#include <set>

namespace lmx {
namespace {

using tests::MessageOf;

struct TNameRow {
    const char* Name;
    int Side;
};

void PrintTo(const TNameRow& row, std::ostream* stream) {
    *stream << row.Name;
}

struct DefaultImages : testing::TestWithParam<TNameRow> {
    const QString Name = QString::fromLatin1(GetParam().Name);
};

TEST_P(DefaultImages, HaveOneSizeAtEveryRatio) {
    const QSize size(GetParam().Side, GetParam().Side);
    EXPECT_EQ(TExternalResources::GetImageSize(Name), size);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const QImage image = TExternalResources::GetImage(Name, ratio, Qt::black);
        EXPECT_EQ(image.size(), size * ratio);
        EXPECT_EQ(image.devicePixelRatioF(), ratio);
    }
}

TEST_P(DefaultImages, AreDrawnInTheInkInsideTheirBounds) {
    const QImage image = TExternalResources::GetImage(Name, 2, QColor(200, 100, 50));
    const QRect inner = image.rect().adjusted(1, 1, -1, -1);
    int drawn = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            drawn += pixel == 0xFFC86432U;
            EXPECT_TRUE(pixel == 0xFFC86432U || qAlpha(pixel) < 255) << x << ',' << y;
            EXPECT_TRUE(pixel == 0U || inner.contains(x, y)) << x << ',' << y;
        }
    }
    EXPECT_GT(drawn, image.width() * image.height() / 20);
    EXPECT_LT(drawn, image.width() * image.height() / 2);
}

INSTANTIATE_TEST_SUITE_P(Names, DefaultImages,
                         testing::Values(TNameRow{"MapWindowFactory.AddLayer", 24},
                                         TNameRow{"MapWindowFactory.DeleteLayer", 24},
                                         TNameRow{"MapWindowFactory.Edit", 24}, TNameRow{"MapWindowFactory.Copy", 24},
                                         TNameRow{"MapWindowFactory.ExploreShape", 24},
                                         TNameRow{"MapWindowFactory.Tools.None", 16}));

TEST(ExternalResources, HaveAPictureOfItsOwnForEachName) {
    std::set<std::vector<std::string>> pictures;
    for (const char* name : {"AddLayer", "DeleteLayer", "Edit", "Copy", "ExploreShape", "Tools.None"})
        pictures.insert(tests::Cover(TExternalResources::GetImage(
            QStringLiteral("MapWindowFactory.") + QString::fromLatin1(name), 1, Qt::black)));
    EXPECT_EQ(pictures.size(), 6U);
}

TEST(ExternalResources, RefuseANameThatNobodyHas) {
    EXPECT_EQ(MessageOf<EArgumentException>([] { TExternalResources::GetImage("MapWindowFactory.Fly", 1, Qt::black); }),
              "There is no image \"MapWindowFactory.Fly\"");
    EXPECT_EQ(MessageOf<EArgumentException>([] { TExternalResources::GetImageSize(""); }), "There is no image \"\"");
    EXPECT_EQ(MessageOf<EArgumentException>([] { TExternalResources::GetImageSize("mapwindowfactory.edit"); }),
              "There is no image \"mapwindowfactory.edit\"");
}

/// Has one image of 10 x 6 logical pixels.
class THostImages final : public IExternalResourcesService {
public:
    QImage GetImage(const QString& name, double ratio, const QColor& ink) override {
        if (name != QStringLiteral("MapWindowFactory.Edit"))
            return {};
        QImage image(static_cast<int>(10 * ratio), static_cast<int>(6 * ratio), QImage::Format_ARGB32);
        image.fill(ink);
        image.setDevicePixelRatio(ratio);
        return image;
    }
};

TEST(ExternalResources, AreReplacedByAHostOneByOne) {
    {
        const TServiceScope<TExternalResources> scope(std::make_shared<THostImages>());
        EXPECT_EQ(TExternalResources::GetImageSize("MapWindowFactory.Edit"), QSize(10, 6));
        EXPECT_EQ(TExternalResources::GetImage("MapWindowFactory.Edit", 2, Qt::red).pixel(19, 11), 0xFFFF0000U);
        EXPECT_EQ(TExternalResources::GetImageSize("MapWindowFactory.Copy"), QSize(24, 24));
        EXPECT_EQ(MessageOf<EArgumentException>([] { TExternalResources::GetImageSize("Own"); }),
                  "There is no image \"Own\"");
    }
    EXPECT_EQ(TExternalResources::GetImageSize("MapWindowFactory.Edit"), QSize(24, 24));
}

} // namespace
} // namespace lmx
