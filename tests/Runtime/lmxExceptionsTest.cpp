#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <gtest/gtest.h>

namespace lmx {
namespace {

TEST(Exceptions, CarryTheirTextInBothEncodings) {
    const Exception failure(QStringLiteral("Höhe %1"));
    EXPECT_EQ(failure.Message(), QStringLiteral("Höhe %1"));
    EXPECT_STREQ(failure.what(), "H\xC3\xB6he %1");
}

TEST(Exceptions, ANilArgumentNamesRoutineAndArgument) {
    const EExArgumentNilException failure(QStringLiteral("TThing.Create"), QStringLiteral("owner"));
    EXPECT_EQ(failure.Message(), "TThing.Create: argument owner is nil");
    EXPECT_EQ(failure.Routine(), "TThing.Create");
    EXPECT_EQ(failure.Argument(), "owner");
    EXPECT_THROW(throw failure, EArgumentException);
}

TEST(Exceptions, AFileFailureBeginsWithTheFile) {
    const EFileFormatException failure(QStringLiteral("rain.doc"), QStringLiteral("no columns"));
    EXPECT_EQ(failure.Message(), "rain.doc: no columns");
    EXPECT_EQ(failure.FileName(), "rain.doc");
    EXPECT_EQ(failure.Problem(), "no columns");
    EXPECT_THROW(throw failure, EFileException);
}

TEST(Exceptions, TheNearestPlaceIsKept) {
    EConvertError failure("'x' is not a valid integer value");
    EXPECT_EQ(failure.Place(), "");
    EXPECT_EQ(failure.Description(), "'x' is not a valid integer value");
    failure.SetPlace("grid.asc, line 3");
    failure.SetPlace("archive.zip");
    EXPECT_EQ(failure.Place(), "grid.asc, line 3");
    EXPECT_EQ(failure.Message(), "'x' is not a valid integer value");
    EXPECT_EQ(failure.Description(), "grid.asc, line 3: 'x' is not a valid integer value");
}

TEST(Exceptions, MissingMemoryHasOneText) {
    const EOutOfMemory failure;
    EXPECT_EQ(failure.Message(), "Out of memory");
    EXPECT_THROW(throw failure, Exception);
}

template<class Failure>
struct ExceptionKinds : testing::Test {};
using TKinds = testing::Types<EArgumentException, EInvalidOperation, ENotImplemented, ENotSupportedException,
                              EConvertError, EListError, EInvalidOp, EZeroDivide, EAssertionFailed>;
TYPED_TEST_SUITE(ExceptionKinds, TKinds);

TYPED_TEST(ExceptionKinds, AreCaughtAsTheRoot) {
    try {
        throw TypeParam(QStringLiteral("words"));
    } catch (const Exception& failure) {
        EXPECT_EQ(failure.Message(), "words");
        EXPECT_NE(dynamic_cast<const TypeParam*>(&failure), nullptr);
    }
}

} // namespace
} // namespace lmx
