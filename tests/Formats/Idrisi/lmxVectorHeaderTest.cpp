#include <lmx/Formats/Idrisi/lmxVectorHeader.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <tests/Support/Printers.h>

#include <QBuffer>

#include <gtest/gtest.h>

#include <limits>

namespace lmx::tests {

namespace {

QByteArray StreamOf(const TVectorHeader& header) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    header.SaveToStream(buffer);
    return buffer.data();
}

void LoadFrom(TVectorHeader& header, QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    header.LoadFromStream(buffer);
}

TVectorHeader AwkwardHeader() {
    TVectorHeader header;
    header.SetTitle(QStringLiteral(" two\r\nlines : 漢字 "));
    header.SetObjectType(TVectorObjectType::vtText);
    header.SetIdType(QStringLiteral("real"));
    header.SetFileType(QStringLiteral("ascii"));
    header.SetRefSystem(QStringLiteral("nzmg"));
    header.SetRefUnits(QStringLiteral("m"));
    header.SetUnitDistance(0.1F);
    header.SetMinX(-0.0F);
    header.SetMaxX(std::numeric_limits<float>::max());
    header.SetMinY(std::numeric_limits<float>::denorm_min());
    header.SetMaxY(-std::numeric_limits<float>::infinity());
    header.SetPositionError(QStringLiteral("unknown"));
    header.SetResolution(QStringLiteral("0.5"));
    return header;
}

} // namespace

TEST(VectorHeader, ReadsTheNewerDocumentation) {
    const TVectorHeader header = TVectorHeader::Parse("file format : IDRISI Vector A.1\n"
                                                      "file title  : Rivers: large\n"
                                                      "id type     : integer\n"
                                                      "file type   : binary\n"
                                                      "object type : Line\n"
                                                      "ref. system : utm-31n\n"
                                                      "ref. units  : m\n"
                                                      "unit dist.  : 2.5\n"
                                                      "min. X      : 400000\n"
                                                      "max. X      : 600000\n"
                                                      "min. Y      : -1.5\n"
                                                      "max. Y      : 5000000\n"
                                                      "pos'n error : unknown\n"
                                                      "resolution  : 30\n");
    TVectorHeader expected;
    expected.SetTitle(QStringLiteral("Rivers: large"));
    expected.SetIdType(QStringLiteral("integer"));
    expected.SetFileType(QStringLiteral("binary"));
    expected.SetObjectType(TVectorObjectType::vtLine);
    expected.SetRefSystem(QStringLiteral("utm-31n"));
    expected.SetRefUnits(QStringLiteral("m"));
    expected.SetUnitDistance(2.5F);
    expected.SetMinX(400000);
    expected.SetMaxX(600000);
    expected.SetMinY(-1.5F);
    expected.SetMaxY(5000000);
    expected.SetPositionError(QStringLiteral("unknown"));
    expected.SetResolution(QStringLiteral("30"));
    EXPECT_EQ(header, expected);
}

TEST(VectorHeader, ReadsTheOldest) {
    const TVectorHeader header =
        TVectorHeader::Parse("title       : Roads\r\ndata type   : real\r\nfile type   : ascii\r\n"
                             "object type : polygon\r\ncoord. unit : km\r\nmin X       : 3\r\n"
                             "max X       : 4\r\nmin Y       : 5\r\nmax Y       : none\r\n");
    EXPECT_EQ(header.GetTitle(), "Roads");
    EXPECT_EQ(header.GetIdType(), "real");
    EXPECT_EQ(header.GetObjectType(), TVectorObjectType::vtPolygon);
    EXPECT_EQ(header.GetRefUnits(), "km");
    EXPECT_EQ(header.GetMinX(), 3);
    EXPECT_EQ(header.GetMinY(), 5);
    EXPECT_EQ(header.GetMaxY(), 0);
    EXPECT_EQ(header.GetUnitDistance(), 1);
}

TEST(VectorHeader, NoTextIsRefused) {
    EXPECT_EQ(TVectorHeader::Parse(""), TVectorHeader());
    EXPECT_EQ(TVectorHeader::Parse("object type : star\n\xFF\xFE\x00:::"), TVectorHeader());
}

TEST(VectorHeader, TheStoredFormIsExact) {
    TVectorHeader header;
    LoadFrom(header, StreamOf(AwkwardHeader()) + "more");
    EXPECT_EQ(header, AwkwardHeader());
}

TEST(VectorHeader, RefusesADamagedStoredForm) {
    const QByteArray stored = StreamOf(AwkwardHeader());
    TVectorHeader header;
    const auto fault = [&](const QByteArray& bytes) {
        return MessageOf<EFileFormatException>([&] { LoadFrom(header, bytes); });
    };
    EXPECT_EQ(fault("LMXH" + stored.sliced(4)), "Vector header: not in the stored form");
    EXPECT_EQ(fault(stored.chopped(1)), "Vector header: cut short");
    QByteArray damaged = stored;
    damaged[20] = static_cast<char>(damaged[20] + 1);
    EXPECT_EQ(fault(damaged), "Vector header: damaged");
    EXPECT_EQ(header, TVectorHeader());
}

} // namespace lmx::tests
