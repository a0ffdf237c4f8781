#include <lmx/Colour/lmxBasicPaletteColorCalculator.h>
#include <lmx/Colour/lmxGradientColorCalculator.h>
#include <lmx/Formats/Idrisi/lmxImageFactory.h>
#include <lmx/Graphics/lmxBitmap32.h>
#include <lmx/Graphics/lmxGradient.h>
#include <lmx/Layers/lmxRasterMapLayer.h>
#include <lmx/MapDoc/lmxBaseRasterMapLayerPersist.h>
#include <lmx/MapDoc/lmxIdrisiMapLayerPersist.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/CoordinatePrinters.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace lmx {
namespace {

using namespace tests;

std::shared_ptr<IBaseColorCalculator> BlueToRed() {
    return TGradientColorCalculatorFactory::GetObject(1, 4, 0x11223344,
                                                      TGradientFactory::GetObject({{0, 0xFF0000FF}, {1, 0xFFFF0000}}));
}

class IdrisiMapLayerPersist : public testing::Test, TWithPoint {
protected:
    /// What the persist object writes of a layer; embedded entries go into FArchive.
    QString Written(const TBaseMapLayer& layer, TMapDocExternalResourcePolicy policy) {
        const TXmlDocument document(QStringLiteral("data"));
        TMapDocResourcePersist resources(FFolder.Path("archive"), pmWrite);
        Persist.WriteLayer(resources, &layer, document.GetRoot(), policy);
        return document.ToText().mid(static_cast<int>(qstrlen("<?xml version=\"1.0\"?>")));
    }
    void Read(TBaseMapLayer& layer, const QString& data) {
        TMapDocResourcePersist resources(FFolder.Path("archive"), pmRead);
        Persist.ReadLayer(resources, &layer, TXmlDocument::FromText(data).GetRoot());
    }
    QString RefusalOf(const QString& children) {
        return MessageOf<Exception>([&] { Read(FLayer, QStringLiteral("<data>%1</data>").arg(children)); });
    }
    QString SaveImageFile() {
        const QString path = FFolder.Path("image.rst");
        SmallImage()->SaveToFile(path);
        return path;
    }

    TDocumentFolder FFolder;
    std::shared_ptr<ILayerManager> FManager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer FLayer{FManager};
    TIdrisiMapLayerPersist Persist;
};

TEST_F(IdrisiMapLayerPersist, AnImageInMemoryIsEmbeddedUnderEitherPolicy) {
    FLayer.TakeImage(SmallImage());
    FLayer.SetOpacity(200);
    FLayer.SetClimateVariable(TClimateVariable::cvTas);
    for (const auto policy : {erpKeepExternal, erpEmbedIfPossible}) {
        EXPECT_EQ(Written(FLayer, policy), "<data><datatype>TRealImage</datatype><resource>embedded</resource>"
                                           "<climateVariable>tas</climateVariable><opacity>200</opacity></data>");
        const TMapDocResourcePersist archive(FFolder.Path("archive"), pmRead);
        const QString folder = FLayer.GetLayerID().toString().toUpper();
        EXPECT_EQ(archive.Read(folder, QStringLiteral("header")).left(4), "LMXH");
        EXPECT_EQ(archive.Read(folder, QStringLiteral("imagedata")),
                  QByteArray("\0\0\x80\x3F\0\0\0\x40\0\0\x40\x40\0\0\x80\x40", 16));
    }
}

TEST_F(IdrisiMapLayerPersist, AnEmbeddedImageComesBackWhole) {
    FLayer.TakeImage(SmallImage());
    FLayer.GetImage()->getHeader()->SetTitle(QStringLiteral("Title\nof two lines"));
    FLayer.SetOpacity(7);
    FLayer.SetClimateVariable(TClimateVariable::cvPr);
    FLayer.SetColorCalc(BlueToRed());
    const QString data = Written(FLayer, erpKeepExternal);
    TIdrisiMapLayer other(FManager);
    other.SetLayerID(FLayer.GetLayerID());
    Read(other, data);
    ASSERT_NE(other.GetImage(), nullptr);
    EXPECT_TRUE(other.GetOwnsImage());
    EXPECT_EQ(other.GetImage()->GetClassName(), "TRealImage");
    EXPECT_EQ(other.GetImage()->GetFilePath(), "");
    EXPECT_EQ(*other.GetImage()->getHeader(), *FLayer.GetImage()->getHeader());
    for (int cell = 0; cell < 4; ++cell)
        EXPECT_EQ(other.GetImage()->GetCell(cell % 2 + 1, cell / 2 + 1), static_cast<float>(cell + 1));
    EXPECT_EQ(other.GetOpacity(), 7);
    EXPECT_EQ(other.GetClimateVariable().GetValue(), TClimateVariable::cvPr);
    EXPECT_EQ(other.GetValueRange(), FLayer.GetValueRange());
    EXPECT_EQ(other.GetLayerArea(), FLayer.GetLayerArea());
    EXPECT_EQ(Written(other, erpKeepExternal), data); // its path is empty, so it is embedded again
    other.Render();
    FLayer.Render();
    ASSERT_NE(other.GetBitmap(), nullptr);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 2; ++x)
            EXPECT_EQ(other.GetBitmap()->Pixel(x, y), FLayer.GetBitmap()->Pixel(x, y));
}

TEST_F(IdrisiMapLayerPersist, EachClassOfImageComesBack) {
    for (const char* const name : {"TByteImage", "TIntegerImage", "TRealImage", "TAsciiImage"}) {
        const TImageClass& imageClass = *TImageFactory::GetImageClass(QString::fromLatin1(name));
        auto image = imageClass.Create(QString(), *SmallImage()->getHeader());
        image->SetCell(2, 1, 9);
        FLayer.TakeImage(std::move(image));
        const QString data = Written(FLayer, erpEmbedIfPossible);
        TIdrisiMapLayer other(FManager);
        other.SetLayerID(FLayer.GetLayerID());
        Read(other, data);
        EXPECT_EQ(other.GetImage()->GetClassName(), name);
        EXPECT_EQ(other.GetImage()->GetCell(2, 1), 9.0F) << name;
        EXPECT_EQ(other.GetImage()->GetCell(1, 2), 0.0F) << name;
    }
}

TEST_F(IdrisiMapLayerPersist, AFileIsLinkedIfItIsThereAndThePolicyKeepsIt) {
    const QString path = SaveImageFile();
    FLayer.TakeImage(TImageFactory::Load(path));
    const QString linked = QStringLiteral("<data><datatype>TRealImage</datatype><resource>linked</resource><filename>%1"
                                          "</filename><opacity>255</opacity></data>")
                               .arg(path);
    EXPECT_EQ(Written(FLayer, erpKeepExternal), linked);
    EXPECT_FALSE(TMapDocResourcePersist(FFolder.Path("archive"), pmRead)
                     .Has(FLayer.GetLayerID().toString().toUpper(), QStringLiteral("header")));
    TIdrisiMapLayer other(FManager);
    Read(other, linked);
    EXPECT_EQ(other.GetImage()->GetFilePath(), path);
    EXPECT_EQ(other.GetImage()->GetCell(2, 2), 4.0F);
    EXPECT_FALSE(other.GetClimateVariable().GetHasValue());

    EXPECT_TRUE(Written(FLayer, erpEmbedIfPossible).contains(QStringLiteral("<resource>embedded</resource>")));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_TRUE(Written(FLayer, erpKeepExternal).contains(QStringLiteral("<resource>embedded</resource>")));
}

TEST_F(IdrisiMapLayerPersist, RefusesInItsOwnWords) {
    const QString type = QStringLiteral("<datatype>TRealImage</datatype>");
    TMapDocResourcePersist(FFolder.Path("archive"), pmWrite).Finish();
    EXPECT_EQ(RefusalOf(type), "Missing required node");
    EXPECT_EQ(RefusalOf(QStringLiteral("<resource>linked</resource>")), "Missing required node");
    EXPECT_EQ(RefusalOf(QStringLiteral("<datatype>TImage</datatype><resource>linked</resource>")),
              "Unknown or unsupported image class: TImage");
    EXPECT_EQ(RefusalOf(type + QStringLiteral("<resource>linked</resource>")), "Missing node: filename");
    EXPECT_EQ(RefusalOf(type + QStringLiteral("<resource>Linked</resource>")),
              "Unknown or unsupported resource type: Linked");
    for (const QString& path : {QString(), FFolder.Path("none.rst"), FFolder.Path("."), QStringLiteral("/dev/zero")})
        EXPECT_EQ(RefusalOf(type + QStringLiteral("<resource>linked</resource><filename>%1</filename>").arg(path)),
                  QStringLiteral("Linked resoruce not found: ") + path);
    EXPECT_EQ(MessageOf<EMapDocResourceNotFoundException>(
                  [&] { Read(FLayer, QStringLiteral("<data>%1<resource>embedded</resource></data>").arg(type)); }),
              "The specified MapDoc resource was not found");
    EXPECT_EQ(FLayer.GetImage(), nullptr);
}

TEST_F(IdrisiMapLayerPersist, DamagedEntriesAreRefused) {
    FLayer.TakeImage(SmallImage());
    const QString data = Written(FLayer, erpEmbedIfPossible);
    const QString folder = FLayer.GetLayerID().toString().toUpper();
    const QByteArray header =
        TMapDocResourcePersist(FFolder.Path("archive"), pmRead).Read(folder, QStringLiteral("header"));
    TIdrisiMapLayer other(FManager);
    other.SetLayerID(FLayer.GetLayerID());
    for (const auto& [headerBytes, imageBytes] :
         {std::pair(header.left(20), QByteArray(16, '\0')), std::pair(QByteArray(), QByteArray(16, '\0')),
          std::pair(header, QByteArray(15, '\0')), std::pair(header, QByteArray())}) {
        {
            TMapDocResourcePersist archive(FFolder.Path("archive"), pmWrite);
            archive.Write(folder, QStringLiteral("header"), headerBytes);
            archive.Write(folder, QStringLiteral("imagedata"), imageBytes);
        }
        EXPECT_THROW(Read(other, data), EFileFormatException);
        EXPECT_EQ(other.GetImage(), nullptr);
    }
}

TEST_F(IdrisiMapLayerPersist, ALayerWithoutAnImageCannotBeSaved) {
    FLayer.SetLayerName(QStringLiteral("Rain"));
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { Written(FLayer, erpKeepExternal); }), "Layer \"Rain\" has no image");
}

class RasterMapLayerPersist : public testing::Test, TWithPoint {
protected:
    void Read(const QString& children) {
        TArchiveInMemory memory(ZipBytes({}));
        TMapDocResourcePersist resources(memory.Buffer, {}, pmRead);
        TBaseRasterMapLayerPersist().ReadLayer(
            resources, &FLayer, TXmlDocument::FromText(QStringLiteral("<data>%1</data>").arg(children)).GetRoot());
    }

    std::shared_ptr<ILayerManager> FManager = TLayerManagerFactory::GetObject();
    TIdrisiMapLayer FLayer{FManager};
};

TEST_F(RasterMapLayerPersist, OpacityIsNeededAndKeepsItsLowBits) {
    EXPECT_EQ(MessageOf<Exception>([&] { Read({}); }), "Missing opacity node");
    for (const auto& [text, opacity] :
         {std::pair("0", 0), std::pair("255", 255), std::pair("256", 0), std::pair("-1", 255), std::pair("300", 44)}) {
        Read(QStringLiteral("<opacity>%1</opacity>").arg(QString::fromLatin1(text)));
        EXPECT_EQ(FLayer.GetOpacity(), opacity) << text;
    }
    EXPECT_EQ(MessageOf<EConvertError>([&] { Read(QStringLiteral("<opacity/>")); }), "'' is not a valid integer value");
}

TEST_F(RasterMapLayerPersist, UnknownVariablesAndCalculatorsAreIgnored) {
    const QString opacity = QStringLiteral("<opacity>1</opacity>");
    const auto calculator = TBasicPaletteColorCalculatorFactory::GetObject();
    FLayer.SetColorCalc(calculator);
    Read(opacity + QStringLiteral("<climateVariable>rainfall</climateVariable>"));
    EXPECT_FALSE(FLayer.GetClimateVariable().GetHasValue());
    Read(opacity + QStringLiteral("<climateVariable>tos</climateVariable>"));
    EXPECT_EQ(FLayer.GetClimateVariable().GetValue(), TClimateVariable::cvTos);
    Read(opacity + QStringLiteral("<colorCalc/>"));
    Read(opacity + QStringLiteral("<colorCalc colorCalcType=\"Other\"/>"));
    EXPECT_EQ(FLayer.GetColorCalc(), calculator);
    EXPECT_EQ(MessageOf<Exception>(
                  [&] { Read(opacity + QStringLiteral("<colorCalc colorCalcType=\"GradientColorCalculator\"/>")); }),
              "Missing gradient nodes");
    EXPECT_EQ(FLayer.GetColorCalc(), calculator);
    Read(opacity + QStringLiteral("<colorCalc colorCalcType=\"BasicPaletteColorCalculator\"/>"));
    EXPECT_NE(FLayer.GetColorCalc(), calculator);
}

TEST_F(RasterMapLayerPersist, AVariableThatTheTableLacksEndsTheSave) {
    TArchiveInMemory memory(ZipBytes({}));
    TMapDocResourcePersist resources(memory.Buffer, {}, pmRead);
    const TXmlDocument document(QStringLiteral("data"));
    FLayer.SetClimateVariable(static_cast<TClimateVariable>(9999));
    EXPECT_EQ(MessageOf<EListError>([&] {
                  TBaseRasterMapLayerPersist().WriteLayer(resources, &FLayer, document.GetRoot(), erpKeepExternal);
              }),
              "Item not found");
}

} // namespace
} // namespace lmx
