#include <lmx/Colour/lmxMultipartGradient.h>
#include <lmx/MapDoc/lmxVerifiedMapDocWriter.h>
#include <tests/MapDoc/DocumentMap.h>
#include <tests/Support/FileSizeLimit.h>

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <functional>

namespace lmx {
namespace {

using namespace tests;

class VerifiedMapDocWriter : public testing::Test, TWithPoint {
protected:
    void Save() {
        TVerifiedMapDocWriter(QStringLiteral("Test"), DefaultPersistFactory())
            .Write(FFolder.Path(), &FMap.View, erpEmbedIfPossible);
    }
    QStringList Files() const {
        return QDir(FFolder.Path(".")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    TDocumentFolder FFolder;
    TDocumentMap FMap;
};

/// Looks at the target while a document is being written.
class TWatchingPersist : public IMapDocLayerPersist {
public:
    explicit TWatchingPersist(std::function<void()> look) : FLook(std::move(look)) {}
    void ReadLayer(TMapDocResourcePersist&, TBaseMapLayer*, TXmlNode) override {}
    void WriteLayer(TMapDocResourcePersist&, const TBaseMapLayer*, TXmlNode, TMapDocExternalResourcePolicy) override {
        FLook();
    }

private:
    std::function<void()> FLook;
};

TEST_F(VerifiedMapDocWriter, WritesTheSameDocumentAsThePlainWriter) {
    AddImageLayer(FMap, SmallImage(), nullptr);
    FMap.Save(FFolder.Path("plain"), erpEmbedIfPossible);
    Save();
    EXPECT_EQ(FFolder.Read(), FFolder.Read("plain"));
    EXPECT_EQ(Files(), (QStringList{"map.lmx", "plain"}));
    EXPECT_EQ(QFile::permissions(FFolder.Path()), QFile::permissions(FFolder.Path("plain")));
}

TEST_F(VerifiedMapDocWriter, TheOldDocumentIsThereUntilTheNewOneIs) {
    FFolder.Write("map.lmx", "old");
    int looks = 0;
    const auto factory = TMapDocLayerPersistFactory::GetObject();
    factory->Register(QStringLiteral("RulerMapLayer"), std::make_shared<TWatchingPersist>([&] {
                          ++looks;
                          EXPECT_EQ(FFolder.Read(), "old");
                          EXPECT_LE(Files().size(), 2);
                      }));
    TVerifiedMapDocWriter(QStringLiteral("Test"), factory).Write(FFolder.Path(), &FMap.View, erpKeepExternal);
    EXPECT_EQ(looks, 1);
    EXPECT_EQ(FFolder.Read().left(2), "PK");
    EXPECT_EQ(Files(), QStringList{"map.lmx"});
}

TEST_F(VerifiedMapDocWriter, AFailureLeavesTheOldDocumentAndNothingElse) {
    FFolder.Write("map.lmx", "old");
    AddImageLayer(FMap, SmallImage(), TMultipartGradientColorCalculatorFactory::GetObject(0, 4));
    EXPECT_EQ(MessageOf<ENotImplemented>([&] { Save(); }), "Not Implemented");
    EXPECT_EQ(FFolder.Read(), "old");
    EXPECT_EQ(Files(), QStringList{"map.lmx"});
    FMap.Manager->GetLayers().Clear();
    for (const int size : {0, 100, 300}) {
        const TFileSizeLimit limit(static_cast<rlim_t>(size));
        EXPECT_EQ(MessageOf<EFileException>([&] { Save(); }),
                  FFolder.Path() + QStringLiteral(": cannot be written: File too large"))
            << size;
        EXPECT_EQ(FFolder.Read(), "old");
        EXPECT_EQ(Files(), QStringList{"map.lmx"});
    }
}

TEST_F(VerifiedMapDocWriter, PermissionsAndLinksStay) {
    FFolder.Write("real.lmx", "old");
    const QFile::Permissions permissions =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadUser | QFile::WriteUser;
    ASSERT_TRUE(QFile::setPermissions(FFolder.Path("real.lmx"), permissions));
    ASSERT_TRUE(QFile::link(FFolder.Path("real.lmx"), FFolder.Path()));
    Save();
    EXPECT_TRUE(QFileInfo(FFolder.Path()).isSymLink());
    EXPECT_EQ(FFolder.Read("real.lmx").left(2), "PK");
    EXPECT_EQ(QFile::permissions(FFolder.Path("real.lmx")), permissions);
}

TEST_F(VerifiedMapDocWriter, RefusesWhatThePlainWriterRefuses) {
    TVerifiedMapDocWriter writer(QStringLiteral("Test"), DefaultPersistFactory());
    EXPECT_EQ(MessageOf<EArgumentException>([&] { writer.Write(FFolder.Path(), nullptr, erpKeepExternal); }),
              "MapControl");
    TDocumentMap worldless(false);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { writer.Write(FFolder.Path(), &worldless.View, erpKeepExternal); }),
              "World not created");
    EXPECT_EQ(MessageOf<EFileException>([&] { writer.Write(FFolder.Path("."), &FMap.View, erpKeepExternal); }),
              FFolder.Path(".") + QStringLiteral(": cannot be written: no regular file"));
    EXPECT_THROW(writer.Write(FFolder.Path("none/map.lmx"), &FMap.View, erpKeepExternal), EFileException);
    EXPECT_EQ(Files(), QStringList());
    EXPECT_EQ(MessageOf<EArgumentNilException>([] { TVerifiedMapDocWriter({}, nullptr); }), "LayerPersistFactory");
}

} // namespace
} // namespace lmx
