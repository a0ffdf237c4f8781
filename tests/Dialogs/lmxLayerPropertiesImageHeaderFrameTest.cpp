#include <lmx/Dialogs/lmxLayerPropertiesImageHeaderFrame.h>
#include <lmx/Formats/Idrisi/lmxImageHeader.h>
#include <tests/Dialogs/PropertiesDialogFixture.h>

#include <limits>

namespace lmx {
namespace {

using tests::Find;

QStringList ValuesOf(const QWidget& frame) {
    return tests::TextsOf(Find<TDrawnListView>(frame, "lvValueList"));
}

TEST(LayerPropertiesImageHeaderFrame, WritesTextsIntegersAndFloats) {
    TLayerPropertiesImageHeaderFrame frame;
    frame.AddValue(QStringLiteral("Text"), QStringLiteral(" as it stands "));
    frame.AddValue(QStringLiteral("Integer"), -2147483647);
    frame.AddValue(QStringLiteral("Float"), 1.00005F);
    EXPECT_EQ(ValuesOf(frame),
              (QStringList{"Text| as it stands ", "Integer|-2147483647", tests::Local("Float|1.0000")}));
    const auto& list = Find<TDrawnListView>(frame, "lvValueList");
    EXPECT_EQ(tests::TitlesOf(list), (QStringList{"Property", "Value"}));
    EXPECT_EQ(list.columnWidth(0), 150);
    EXPECT_EQ(list.editTriggers(), QAbstractItemView::NoEditTriggers) << "for reading";
}

TEST(LayerPropertiesImageHeaderFrame, GivesTheValueWhatTheNameLeaves) {
    TLayerPropertiesImageHeaderFrame frame;
    frame.resize(500, 300);
    tests::ShowActive(frame);
    const auto& list = Find<TDrawnListView>(frame, "lvValueList");
    EXPECT_EQ(list.columnWidth(1), list.viewport()->width() - 150);
    frame.resize(700, 300);
    EXPECT_EQ(list.columnWidth(1), list.viewport()->width() - 150);
}

TEST(LayerPropertiesImageHeaderFrame, WritesFloatsThatAreNoNumbers) {
    TLayerPropertiesImageHeaderFrame frame;
    frame.AddValue(QStringLiteral("Nothing"), std::numeric_limits<float>::quiet_NaN());
    frame.AddValue(QStringLiteral("Endless"), -std::numeric_limits<float>::infinity());
    frame.AddValue(QStringLiteral("Half"), 0.03125F);
    frame.AddValue(QStringLiteral("Less"), -0.00001F);
    EXPECT_EQ(ValuesOf(frame),
              (QStringList{"Nothing|NAN", "Endless|-INF", tests::Local("Half|0.0313"), tests::Local("Less|0.0000")}));
}

TEST(LayerPropertiesImageHeaderFrame, ListsAHeaderInItsOrder) {
    TImageHeader header;
    header.SetMinX(-180);
    header.SetMaxX(180);
    header.SetMinY(-90);
    header.SetMaxY(90.5F);
    header.SetWidth(360);
    header.SetHeight(181);
    header.SetMinValue(-1.25F);
    header.SetMaxValue(33.5F);
    header.SetResolutionX(0.5F);
    header.SetResolutionY(0.25F);
    header.SetRefUnits(QStringLiteral("deg"));
    header.SetValueUnits(QStringLiteral("mm"));
    header.SetFlagDef(QStringLiteral("missing data"));
    header.SetDataType(TImageDataType::dtInteger);
    header.SetFileType(TImageFileType::ftPacked);
    header.SetUnitDistance(1);
    header.SetFlagValue(-9999);
    header.SetFlag(true);
    header.SetLineage(QStringLiteral("made\nby hand"));
    header.SetCompleteness(QStringLiteral("all"));
    header.SetConsistency(QStringLiteral("good"));
    TLayerPropertiesImageHeaderOptionFrame page(header);
    EXPECT_EQ(page.GetName(), "Image header");
    page.Apply();
    QStringList expected;
    for (const char* row : {"Min X|-180.0000",
                            "Max X|180.0000",
                            "Min Y|-90.0000",
                            "Max Y|90.5000",
                            "Width|360",
                            "Height|181",
                            "Min Value|-1.2500",
                            "Max Value|33.5000",
                            "Resolution X|0.5000",
                            "Resolution Y|0.2500",
                            "Ref Units|deg",
                            "Value Units|mm",
                            "Flag Def|missing data",
                            "Data Type|integer",
                            "File Type|packed binary",
                            "Unit Distance|1.0000",
                            "Flag Value|-9999.0000",
                            "Flag|True",
                            "Lineage|made\nby hand",
                            "Completeness|all",
                            "Consistency|good"})
        expected.append(tests::Local(QString::fromLatin1(row)));
    EXPECT_EQ(ValuesOf(*page.GetFrame()), expected);
}

TEST(LayerPropertiesImageHeaderFrame, SaysFalseOfAFlagThatIsNone) {
    const TLayerPropertiesImageHeaderOptionFrame page((TImageHeader()));
    EXPECT_TRUE(ValuesOf(*page.GetFrame()).contains("Flag|False"));
    EXPECT_TRUE(ValuesOf(*page.GetFrame()).contains("Data Type|real"));
    EXPECT_TRUE(ValuesOf(*page.GetFrame()).contains("File Type|binary"));
}

TEST(LayerPropertiesImageHeaderFrame, GivesCodesWithoutANameAsNumbers) {
    TImageHeader header;
    header.SetDataType(static_cast<TImageDataType>(9));
    const TLayerPropertiesImageHeaderOptionFrame page(header);
    EXPECT_TRUE(ValuesOf(*page.GetFrame()).contains("Data Type|9"));
}

} // namespace
} // namespace lmx
