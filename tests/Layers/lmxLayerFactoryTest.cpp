#include <lmx/Layers/lmxIdrisiMapLayer.h>
#include <lmx/Layers/lmxLayerFactory.h>
#include <lmx/Layers/lmxShapeFileLayer.h>
#include <lmx/Layers/lmxVectorFileLayer.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>
#include <tests/Support/TestLayer.h>

#include <gtest/gtest.h>

#include <memory>

namespace lmx {
namespace {

using namespace tests;

std::unique_ptr<TBaseMapLayer> MakeTestLayer(const std::shared_ptr<ILayerManager>& manager) {
    return std::make_unique<TTestLayer>(manager);
}

class TNamedLayer : public TTestLayer {
public:
    TNamedLayer(const std::shared_ptr<ILayerManager>& manager, const QString& name) : TTestLayer(manager) {
        SetLayerName(name);
    }
};

/// A closure that makes layers of that name.
TCreateLayerAnonFunc MakerOf(const QString& name) {
    return
        [name](const std::shared_ptr<ILayerManager>& manager) { return std::make_unique<TNamedLayer>(manager, name); };
}

class LayerFactory : public testing::Test {
protected:
    std::shared_ptr<ILayerManager> Manager = TLayerManagerFactory::GetObject();
    std::shared_ptr<ILayerFactory> Factory = TLayerFactory::GetObject();
};

TEST_F(LayerFactory, GetObjectGivesANewOneEachTimeAndGetSingletonTheSame) {
    EXPECT_NE(TLayerFactory::GetObject(), TLayerFactory::GetObject());
    EXPECT_EQ(TLayerFactory::GetSingleton(), TLayerFactory::GetSingleton());
    EXPECT_NE(TLayerFactory::GetSingleton(), Factory);
}

TEST_F(LayerFactory, BeginsEmpty) {
    for (const auto& factory : {Factory, TLayerFactory::GetSingleton()})
        for (const char* type : {"VectorFileLayer", "ShapeFileLayer", "IdrisiMapLayer", ""})
            EXPECT_EQ(factory->CreateLayer(QString::fromLatin1(type), Manager), nullptr) << type;
}

TEST_F(LayerFactory, MakesALayerByAFunction) {
    Factory->Register(QStringLiteral("Own"), MakeTestLayer);
    const auto layer = Factory->CreateLayer(QStringLiteral("Own"), Manager);
    ASSERT_NE(dynamic_cast<TTestLayer*>(layer.get()), nullptr);
    EXPECT_EQ(static_cast<TTestLayer*>(layer.get())->GetLayerManager(), Manager);
    EXPECT_EQ(Manager->GetLayers().Count(), 0); // the caller adds it
}

TEST_F(LayerFactory, MakesALayerByAClosure) {
    Factory->Register(QStringLiteral("Own"), MakerOf(QStringLiteral("made")));
    EXPECT_EQ(Factory->CreateLayer(QStringLiteral("Own"), Manager)->GetLayerName(), "made");
}

TEST_F(LayerFactory, TakesALambdaThatCapturesNothing) {
    Factory->Register(QStringLiteral("Own"), [](const std::shared_ptr<ILayerManager>& manager) {
        return std::make_unique<TNamedLayer>(manager, QStringLiteral("lambda"));
    });
    EXPECT_EQ(Factory->CreateLayer(QStringLiteral("Own"), Manager)->GetLayerName(), "lambda");
}

TEST_F(LayerFactory, IgnoresTheCaseOfTypes) {
    Factory->Register(QStringLiteral("OwnLayer"), MakeTestLayer);
    EXPECT_NE(Factory->CreateLayer(QStringLiteral("ownlayer"), Manager), nullptr);
    EXPECT_NE(Factory->CreateLayer(QStringLiteral("OWNLAYER"), Manager), nullptr);
    EXPECT_EQ(Factory->CreateLayer(QStringLiteral("OwnLaye"), Manager), nullptr);
    EXPECT_EQ(Factory->CreateLayer(QStringLiteral("OwnLayer "), Manager), nullptr);
}

TEST_F(LayerFactory, TheOlderHandlerOfATypeStaysInForce) {
    Factory->Register(QStringLiteral("Own"), MakerOf(QStringLiteral("first")));
    Factory->Register(QStringLiteral("own"), MakerOf(QStringLiteral("second")));
    EXPECT_EQ(Factory->CreateLayer(QStringLiteral("own"), Manager)->GetLayerName(), "first");
}

TEST_F(LayerFactory, AsksHandlersInTheirOrderAndStopsAtTheFirstThatKnowsTheType) {
    class THandler final : public ILayerFactoryHandler {
    public:
        THandler(QString& log, QChar name, bool knows) : FLog(log), FName(name), FKnows(knows) {}
        std::unique_ptr<TBaseMapLayer> CreateLayer(const std::shared_ptr<ILayerManager>& manager) const override {
            FLog += FName.toUpper();
            return MakeTestLayer(manager);
        }
        bool CanCreate(const QString& layerType) const override {
            FLog += FName + layerType;
            return FKnows;
        }

    private:
        QString& FLog;
        QChar FName;
        bool FKnows;
    };
    QString log;
    Factory->Register(std::make_shared<THandler>(log, u'a', false));
    Factory->Register(std::make_shared<THandler>(log, u'b', true));
    Factory->Register(std::make_shared<THandler>(log, u'c', true));
    EXPECT_NE(Factory->CreateLayer(QStringLiteral("1"), Manager), nullptr);
    EXPECT_EQ(log, "a1b1B");
}

TEST_F(LayerFactory, AHandlerMayRegisterOthersAndLetTheFactoryGoWhileItIsAsked) {
    class THandler final : public ILayerFactoryHandler {
    public:
        explicit THandler(std::shared_ptr<ILayerFactory>& factory) : FFactory(factory) {}
        std::unique_ptr<TBaseMapLayer> CreateLayer(const std::shared_ptr<ILayerManager>& manager) const override {
            return MakeTestLayer(manager);
        }
        bool CanCreate(const QString& layerType) const override {
            for (int i = 0; FFactory && i < 100; ++i)
                FFactory->Register(layerType, MakeTestLayer);
            FFactory.reset();
            return true;
        }

    private:
        std::shared_ptr<ILayerFactory>& FFactory;
    };
    const ILayerFactory& asked = *Factory;
    Factory->Register(std::make_shared<THandler>(Factory));
    EXPECT_NE(asked.CreateLayer(QStringLiteral("Own"), Manager), nullptr);
    EXPECT_EQ(Factory, nullptr);
}

TEST_F(LayerFactory, AHandlerMayRegisterOthersWhileItMakesALayer) {
    Factory->Register(QStringLiteral("Own"), [this](const std::shared_ptr<ILayerManager>& manager) {
        for (int i = 0; i < 100; ++i)
            Factory->Register(QStringLiteral("Other"), MakeTestLayer);
        return MakeTestLayer(manager);
    });
    EXPECT_NE(Factory->CreateLayer(QStringLiteral("Own"), Manager), nullptr);
    EXPECT_NE(Factory->CreateLayer(QStringLiteral("Other"), Manager), nullptr);
}

TEST_F(LayerFactory, NilIsRefused) {
    EXPECT_EQ(MessageOf<EArgumentNilException>([this] { Factory->Register(nullptr); }), "Item");
    EXPECT_EQ(MessageOf<EArgumentNilException>(
                  [this] { Factory->Register(QStringLiteral("Own"), static_cast<TCreateLayerFunc>(nullptr)); }),
              "Func");
    EXPECT_EQ(
        MessageOf<EArgumentNilException>([this] { Factory->Register(QStringLiteral("Own"), TCreateLayerAnonFunc()); }),
        "AnonFunc");
    EXPECT_EQ(MessageOf<EExArgumentNilException>([] { TLayerFactory::PopulateDefault(nullptr); }),
              "TLayerFactory.PopulateDefault: argument Factory is nil");
}

TEST_F(LayerFactory, PopulatedByDefaultItMakesTheLayersOfDocuments) {
    TLayerFactory::PopulateDefault(Factory);
    const auto make = [this](const QString& type) { return Factory->CreateLayer(type, Manager); };
    EXPECT_NE(dynamic_cast<TVectorFileLayer*>(make(QStringLiteral("vectorfilelayer")).get()), nullptr);
    EXPECT_NE(dynamic_cast<TShapeFileLayer*>(make(QStringLiteral("shapefilelayer")).get()), nullptr);
    EXPECT_NE(dynamic_cast<TIdrisiMapLayer*>(make(QStringLiteral("idrisimaplayer")).get()), nullptr);
    for (const char* type : {"VectorFileLayer", "ShapeFileLayer", "IdrisiMapLayer"}) {
        const auto layer = make(QString::fromLatin1(type));
        ASSERT_NE(layer, nullptr) << type;
        EXPECT_EQ(layer->GetLayerClassName(), QString::fromLatin1(type));
        EXPECT_EQ(TLayerFactory::GetSingleton()->CreateLayer(QString::fromLatin1(type), Manager), nullptr);
    }
}

TEST_F(LayerFactory, TypesOfAHostStandBehindTheDefaultOnesOrBeforeThem) {
    Factory->Register(QStringLiteral("ShapeFileLayer"), MakerOf(QStringLiteral("own")));
    TLayerFactory::PopulateDefault(Factory);
    Factory->Register(QStringLiteral("IdrisiMapLayer"), MakerOf(QStringLiteral("own")));
    EXPECT_EQ(Factory->CreateLayer(QStringLiteral("ShapeFileLayer"), Manager)->GetLayerName(), "own");
    EXPECT_NE(Factory->CreateLayer(QStringLiteral("IdrisiMapLayer"), Manager)->GetLayerName(), "own");
}

} // namespace
} // namespace lmx
