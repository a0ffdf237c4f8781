#include <lmx/Dialogs/lmxLayerPropertiesBoundsFrame.h>
#include <lmx/Graphics/lmxSystemColors.h>
#include <lmx/Layers/lmxLayerManager.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Dialogs/PropertiesDialogFixture.h>
#include <tests/Support/TestLayer.h>

#include <QLabel>
#include <QLineEdit>

#include <set>

namespace lmx {
namespace {

using tests::Find;
using tests::Local;

struct LayerPropertiesBoundsFrame : testing::Test {
    LayerPropertiesBoundsFrame() { Layer.SetLayerArea(tests::LatLonArea({-12.34567L, 90, 7e6L, -0.0004L})); }
    QString Edge(const QWidget& frame, const char* name) { return Find<QLineEdit>(frame, name).text(); }

    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    tests::TTestLayer Layer{Manager};
};

TEST_F(LayerPropertiesBoundsFrame, ShowsTypeAndEdges) {
    const TLayerPropertiesBoundsFrame frame(Layer);
    EXPECT_EQ(Find<QLabel>(frame, "lbStatus").text(), "Test");
    EXPECT_EQ(Edge(frame, "edLeft"), Local("-12.346"));
    EXPECT_EQ(Edge(frame, "edTop"), Local("90.000"));
    EXPECT_EQ(Edge(frame, "edRight"), Local("7000000.000"));
    EXPECT_EQ(Edge(frame, "edBottom"), Local("0.000"));
    QStringList labels;
    for (const QLabel* label : frame.findChildren<QLabel*>())
        labels.append(label->text());
    labels.sort();
    EXPECT_EQ(labels, (QStringList{"Bottom", "Layer type: ", "Left", "Right", "Test", "Top"}));
    for (const QLineEdit* edit : frame.findChildren<QLineEdit*>())
        EXPECT_TRUE(edit->isReadOnly()) << edit->objectName().toStdString();
}

TEST_F(LayerPropertiesBoundsFrame, ShowsEveryDigit) {
    Layer.SetLayerArea(tests::LatLonArea({-123456789012.5L, 1e17L, 0, -1e30L}));
    TLayerPropertiesBoundsFrame frame(Layer);
    tests::ShowActive(frame);
    for (const QLineEdit* edit : frame.findChildren<QLineEdit*>())
        EXPECT_GT(edit->width(), edit->fontMetrics().horizontalAdvance(edit->text()));
}

TEST_F(LayerPropertiesBoundsFrame, StandsInTheMiddle) {
    Layer.SetLayerArea(tests::LatLonArea({-123456789012.5L, 90, 0, 0})); // of more digits than there is room for anyway
    TLayerPropertiesBoundsFrame frame(Layer);
    tests::ShowActive(frame);
    const auto& container = Find<QWidget>(frame, "pnBoundsContainerPanel");
    const auto& panel = Find<QWidget>(frame, "pnBoundsPanel");
    std::set<int> parities; // of the panel's width, which follows text and font
    for (const int pixels : {10, 11, 12, 13, 14, 15, 16}) {
        QFont font = frame.font();
        font.setPixelSize(pixels);
        frame.setFont(font);
        for (const int width : {701, 702, 703, 704}) {
            frame.resize(width, 400);
            QCoreApplication::processEvents();
            EXPECT_EQ(panel.x(), container.width() / 2 - panel.width() / 2) << width;
            EXPECT_TRUE(container.rect().contains(panel.geometry()));
            parities.insert(panel.width() % 2);
        }
    }
    EXPECT_EQ(parities.size(), 2U) << "of an odd width the half is cut, too";
}

TEST_F(LayerPropertiesBoundsFrame, StandsAboutAThinCross) {
    TLayerPropertiesBoundsFrame frame(Layer);
    tests::ShowActive(frame);
    auto& panel = Find<QWidget>(frame, "pnBoundsPanel");
    const QImage picture = tests::PictureOf(panel);
    const QRgb line = Color32(clBtnShadow);
    const QPoint middle(panel.width() / 2, panel.height() / 2);
    EXPECT_EQ(picture.pixel(middle), line);
    EXPECT_EQ(picture.pixel(middle + QPoint(5, 0)), line);
    EXPECT_EQ(picture.pixel(middle + QPoint(0, 5)), line);
    EXPECT_NE(picture.pixel(middle + QPoint(2, 2)), line);
}

TEST_F(LayerPropertiesBoundsFrame, BelongsToAPageForReading) {
    EXPECT_EQ(tests::MessageOf<EExArgumentNilException>([] { TLayerPropertiesBoundsOptionFrame page(nullptr); }),
              "TLayerPropertiesBoundsOptionFrame.Create: argument Layer is nil");
    auto layer = std::make_unique<tests::TTestLayer>(Manager);
    TLayerPropertiesBoundsOptionFrame page(layer.get());
    EXPECT_EQ(page.GetName(), "Extent");
    layer->SetLayerArea(tests::LatLonArea({1, 2, 3, 4}));
    EXPECT_EQ(Edge(*page.GetFrame(), "edLeft"), Local("0.000")) << "as it was when the page was made";
    layer.reset();
    page.Apply();
}

} // namespace
} // namespace lmx
