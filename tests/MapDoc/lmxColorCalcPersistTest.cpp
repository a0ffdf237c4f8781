#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxColorClassCalculator.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/MapDoc/lmxColorCalcPersist.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

using namespace tests;

/// The text with the decimal separator of this run.
QString Localized(const char* text) {
    return QString::fromLatin1(text).replace(u'.', TFormatSettings::Current().DecimalSeparator);
}

QString Written(const std::shared_ptr<IBaseColorCalculator>& calculator) {
    const TXmlDocument document(QStringLiteral("colorCalc"));
    TColorCalcPersistFactory::GetPersist(calculator)->Write(calculator, document.GetRoot());
    return document.ToText().mid(static_cast<int>(qstrlen("<?xml version=\"1.0\"?>")));
}

template<class Calculator = IBaseColorCalculator>
std::shared_ptr<Calculator> Read(const QString& text) {
    const TXmlDocument document = TXmlDocument::FromText(text);
    const auto persist = TColorCalcPersistFactory::GetPersist(document.GetRoot());
    const auto calculator = persist->CreateCalculator();
    persist->Read(calculator, document.GetRoot());
    return std::dynamic_pointer_cast<Calculator>(calculator);
}

QString Element(const char* kind, const QString& children) {
    return QStringLiteral("<colorCalc colorCalcType=\"%1\">%2</colorCalc>").arg(QString::fromLatin1(kind), children);
}

constexpr char Palette[] = "BasicPaletteColorCalculator";
constexpr char Classes[] = "ColorClassCalculator";
constexpr char Gradient[] = "GradientColorCalculator";

class TOwnCalculator : public IBaseColorCalculator {
public:
    TColor32 GetColor(float) const override { return 0; }
    std::shared_ptr<IBaseColorCalculator> Clone() const override { return std::make_shared<TOwnCalculator>(); }
};

TEST(ColorCalcPersist, KindsAreFoundByCalculatorNameAndNode) {
    const auto knows = [](const auto& key) { return TColorCalcPersistFactory::GetPersist(key) != nullptr; };
    using TCalculator = std::shared_ptr<IBaseColorCalculator>;
    for (const TCalculator& calculator : {TCalculator(TBasicPaletteColorCalculatorFactory::GetObject()),
                                          TCalculator(TColorClassCalculatorFactory::GetObject()),
                                          TCalculator(TGradientColorCalculatorFactory::GetObject()),
                                          TCalculator(TMultipartGradientColorCalculatorFactory::GetObject())})
        EXPECT_TRUE(knows(calculator));
    EXPECT_FALSE(knows(TCalculator()));
    EXPECT_FALSE(knows(TCalculator(std::make_shared<TOwnCalculator>())));
    for (const char* const name : {Palette, Classes, Gradient, "MultipartGradientColorCalculator"})
        EXPECT_TRUE(knows(QString::fromLatin1(name)));
    EXPECT_FALSE(knows(QStringLiteral("gradientColorCalculator")));
    EXPECT_FALSE(knows(QString()));
    EXPECT_TRUE(knows(TXmlDocument::FromText(Element(Gradient, {})).GetRoot()));
    EXPECT_FALSE(knows(TXmlDocument::FromText(QStringLiteral("<colorCalc/>")).GetRoot()));
    EXPECT_FALSE(knows(TXmlNode()));
}

TEST(ColorCalcPersist, PalettesComeBack) {
    const auto palette = TBasicPaletteColorCalculatorFactory::GetObject(
        TValueRange(-1.5, 2), {{QStringLiteral("a \"b\""), 0x80102030}, {QString(), 0xFFFFFFFF}}, true);
    EXPECT_EQ(Written(palette),
              Element(Palette, QStringLiteral("<reserveFirstColorForNoData>-1</reserveFirstColorForNoData><colorKey>"
                                              "(\"a \\\"b\\\"\":#80102030),(\"\":#FFFFFFFF)</colorKey>") +
                                   Localized("<minVal>-1.50000</minVal><maxVal>2.00000</maxVal>")));
    const auto read = Read<IBasicPaletteColorCalculator>(Written(palette));
    EXPECT_TRUE(read->GetReserveFirstColorForNoData());
    EXPECT_EQ(read->GetColorKey()->GetColors(), palette->GetColorKey()->GetColors());
    EXPECT_EQ(read->GetMinVal(), -1.5F);
    EXPECT_EQ(read->GetMaxVal(), 2.0F);
}

TEST(ColorCalcPersist, APaletteWithoutAKeyHasNone) {
    const auto palette = TBasicPaletteColorCalculatorFactory::GetObject();
    EXPECT_EQ(Written(palette),
              Element(Palette, QStringLiteral("<reserveFirstColorForNoData>0</reserveFirstColorForNoData>") +
                                   Localized("<minVal>0.00000</minVal><maxVal>0.00000</maxVal>")));
    const auto read = Read<IBasicPaletteColorCalculator>(Written(palette));
    EXPECT_EQ(read->GetColorKey(), nullptr);
    EXPECT_FALSE(read->GetReserveFirstColorForNoData());
    EXPECT_EQ(Read<IBasicPaletteColorCalculator>(Element(Palette, {}))->GetColorKey(), nullptr);
}

TEST(ColorCalcPersist, RangesAreKeptToFiveDecimalsAndPutInOrder) {
    const auto rangeOf = [](const QString& children) {
        const auto read = Read<IBaseMinMaxColorCalculator>(Element(Palette, children));
        return std::pair(read->GetMinVal(), read->GetMaxVal());
    };
    using TEnds = std::pair<float, float>;
    EXPECT_EQ(rangeOf({}), TEnds(0, 0));
    EXPECT_EQ(rangeOf(QStringLiteral("<minVal>10</minVal>")), TEnds(0, 10));
    EXPECT_EQ(rangeOf(QStringLiteral("<maxVal>-3</maxVal>")), TEnds(-3, 0));
    EXPECT_EQ(rangeOf(QStringLiteral("<minVal>7</minVal><maxVal>-3</maxVal>")), TEnds(-3, 7));
    const auto palette = TBasicPaletteColorCalculatorFactory::GetObject();
    palette->SetMaxVal(0.123456F);
    EXPECT_EQ(Read<IBaseMinMaxColorCalculator>(Written(palette))->GetMaxVal(), 0.12346F);
    EXPECT_EQ(MessageOf<EConvertError>([&] { rangeOf(QStringLiteral("<minVal/>")); }),
              "'' is not a valid floating point value");
    EXPECT_EQ(MessageOf<EConvertError>([&] { rangeOf(QStringLiteral("<maxVal>x</maxVal>")); }),
              "'x' is not a valid floating point value");
    EXPECT_EQ(MessageOf<EConvertError>(
                  [&] { rangeOf(QStringLiteral("<reserveFirstColorForNoData>no</reserveFirstColorForNoData>")); }),
              "'no' is not a valid boolean value");
}

TEST(ColorCalcPersist, ColorClassesComeBack) {
    const auto classes = TColorClassCalculatorFactory::GetObject(
        {{QStringLiteral("Dry"), 0, 50, 0xFF8B4513}, {QStringLiteral("Wet"), 50, 400.25F, 0xFF0000FF}});
    classes->SetOutOfRangePolicy(TOutOfRangePolicy::orpClosestMatch);
    EXPECT_EQ(Written(classes),
              Element(Classes, QStringLiteral("<outOfRangePolicy>1</outOfRangePolicy><colorClasses>%1</colorClasses>")
                                   .arg(classes->GetColorClasses()->Serialize())));
    const TFormatSettingsScope point(TFormatSettings::Invariant()); // classes join numbers by commas
    const auto read = Read<IColorClassCalculator>(Written(classes));
    EXPECT_EQ(read->GetOutOfRangePolicy(), TOutOfRangePolicy::orpClosestMatch);
    ASSERT_EQ(read->GetColorClasses()->GetClasses().Count(), 2);
    const TColorClass& wet = *read->GetColorClasses()->GetClasses()[1];
    EXPECT_EQ(wet.GetName(), "Wet");
    EXPECT_EQ(wet.GetMinValue(), 50.0F);
    EXPECT_EQ(wet.GetMaxValue(), 400.25F);
    EXPECT_EQ(wet.GetColor(), 0xFF0000FF);
}

TEST(ColorCalcPersist, ColorClassesNeedAPolicyAndNoClasses) {
    EXPECT_EQ(Written(TColorClassCalculatorFactory::GetObject()),
              Element(Classes, QStringLiteral("<outOfRangePolicy>0</outOfRangePolicy>")));
    EXPECT_EQ(Read<IColorClassCalculator>(Element(Classes, QStringLiteral("<outOfRangePolicy>0</outOfRangePolicy>")))
                  ->GetColorClasses(),
              nullptr);
    EXPECT_EQ(MessageOf<EConvertError>([] { Read(Element(Classes, {})); }), "'' is not a valid integer value");
    for (const char* const policy : {"2", "-1", "4294967296"})
        EXPECT_EQ(MessageOf<EConvertError>([&] {
                      Read(Element(
                          Classes,
                          QStringLiteral("<outOfRangePolicy>%1</outOfRangePolicy>").arg(QString::fromLatin1(policy))));
                  }),
                  QStringLiteral("'%1' is not a valid integer value").arg(QString::fromLatin1(policy)));
}

TEST(ColorCalcPersist, GradientsComeBack) {
    const auto gradient = TGradientColorCalculatorFactory::GetObject(
        -5, 12.5F, 0x10203040, TGradientFactory::GetObject({{0, 0xFF0000FF}, {1 / 3.0, 0x80FFFFFF}, {1, 0xFFFF0000}}));
    EXPECT_EQ(Written(gradient),
              Element(Gradient, QStringLiteral("<defaultColor>#10203040</defaultColor><gradient>%1</gradient>")
                                        .arg(gradient->GetGradient()->ToString()) +
                                    Localized("<minVal>-5.00000</minVal><maxVal>12.50000</maxVal>")));
    const auto read = Read<IGradientColorCalculator>(Written(gradient));
    EXPECT_EQ(read->GetDefaultColor(), 0x10203040U);
    ASSERT_EQ(read->GetGradient()->GetColorStops().size(), 3U);
    EXPECT_EQ(read->GetGradient()->ToString(), gradient->GetGradient()->ToString());
    EXPECT_EQ(read->GetMinVal(), -5.0F);
    EXPECT_EQ(read->GetMaxVal(), 12.5F);
}

TEST(ColorCalcPersist, GradientsNeedTheirTwoElements) {
    const QString color = QStringLiteral("<defaultColor>#10203040</defaultColor>");
    const QString stops = QStringLiteral("<gradient>(0:#FF0000FF)</gradient>");
    EXPECT_EQ(MessageOf<Exception>([&] { Read(Element(Gradient, color)); }), "Missing gradient nodes");
    EXPECT_EQ(MessageOf<Exception>([&] { Read(Element(Gradient, stops)); }), "Missing gradient nodes");
    EXPECT_EQ(Read<IGradientColorCalculator>(Element(Gradient, color + stops))->GetMaxVal(), 0.0F);
    EXPECT_EQ(MessageOf<EConvertError>([&] { Read(Element(Gradient, QStringLiteral("<defaultColor/>") + stops)); }),
              "'' is not a valid color value");
    EXPECT_EQ(MessageOf<EConvertError>(
                  [&] { Read(Element(Gradient, color + QStringLiteral("<gradient>(0:red)</gradient>"))); }),
              "Invalid gradient text");
    EXPECT_EQ(MessageOf<EInvalidOperation>([] { Written(TGradientColorCalculatorFactory::GetObject()); }),
              "Gradient not specified");
}

TEST(ColorCalcPersist, GradientsInPartsHaveNoForm) {
    const auto parts = TMultipartGradientColorCalculatorFactory::GetObject();
    const auto persist = TColorCalcPersistFactory::GetPersist(parts);
    const TXmlDocument document(QStringLiteral("colorCalc"));
    EXPECT_EQ(MessageOf<ENotImplemented>([&] { persist->CreateCalculator(); }), "Not Implemented");
    EXPECT_EQ(MessageOf<ENotImplemented>([&] { persist->Write(parts, document.GetRoot()); }), "Not Implemented");
    EXPECT_EQ(MessageOf<ENotImplemented>([&] { persist->Read(parts, document.GetRoot()); }), "Not Implemented");
}

TEST(ColorCalcPersist, EachKindTakesItsOwnOnly) {
    const auto other = std::make_shared<TOwnCalculator>();
    const TXmlDocument document(QStringLiteral("colorCalc"));
    for (const char* const name : {Palette, Classes, Gradient}) {
        const auto persist = TColorCalcPersistFactory::GetPersist(QString::fromLatin1(name));
        EXPECT_EQ(MessageOf<EArgumentException>([&] { persist->Write(other, document.GetRoot()); }), "ColorCalc");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { persist->Read(other, document.GetRoot()); }), "ColorCalc");
        EXPECT_EQ(MessageOf<EArgumentException>([&] { persist->Read(nullptr, document.GetRoot()); }), "ColorCalc");
    }
}

} // namespace
} // namespace lmx
