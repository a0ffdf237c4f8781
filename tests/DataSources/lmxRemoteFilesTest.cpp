#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/DataSources/lmxGeoTiffTiles.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <tests/DataSources/ClimateSamples.h>
#include <tests/DataSources/HttpServer.h>
#include <tests/DataSources/TiffFiles.h>
#include <tests/Support/Threads.h>

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lmx {
namespace {

using namespace tests;
using testing::HasSubstr;

const QString Loopback = QStringLiteral("127.0.0.1");

/// A GeoTIFF on a server of this computer.
class RemoteFiles : public testing::Test {
protected:
    RemoteFiles() {
        TTiffOf16Bits tiff;
        tiff.Width = 700;
        tiff.Height = 500;
        tiff.Overviews = {2};
        tiff.Cell = [](int column, int row) { return static_cast<std::int16_t>((row * 31 + column * 17) % 9973); };
        tiff.Write(FPath);
        QFile file(FPath);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        FBytes = file.readAll();
        TClimateDataset::SetRemoteTimeout(20);
    }
    ~RemoteFiles() override {
        TClimateDataset::SetAllowedHosts({});
        TClimateDataset::SetRemoteTimeout(30);
    }

    THttpServer::TAnswer GoodAnswer() const {
        return [bytes = FBytes](const THttpRequest& request) { return THttpServer::AnswerWith(request, bytes); };
    }
    static std::vector<float> Read(const TGeoTiffTiles& tiles, int level) {
        const TTileLevel& size = tiles.GetLevels()[static_cast<std::size_t>(level)];
        std::vector<float> cells(static_cast<std::size_t>(size.Width) * static_cast<std::size_t>(size.Height));
        tiles.ReadCells(level, {0, 0, size.Width, size.Height}, cells, [] { return false; });
        return cells;
    }
    /// What opening the file and reading all of it says.
    static std::string FailureOf(const QString& url) {
        try {
            Read(TGeoTiffTiles(url), 0);
        } catch (const EClimateFile& failure) {
            EXPECT_EQ(failure.FileName(), url);
            return failure.Problem().toStdString();
        }
        return "read";
    }
    std::string FailureOfServer(const THttpServer::TAnswer& answer) {
        const THttpServer server(answer);
        return FailureOf(server.UrlOf(QStringLiteral("a.tif")));
    }

    QTemporaryDir FFolder;
    const QString FPath = FFolder.filePath(QStringLiteral("a.tif"));
    QByteArray FBytes;
};

TEST_F(RemoteFiles, AreRefusedByNameWithoutARequestUnlessTheHostIsAllowed) {
    const THttpServer server(GoodAnswer());
    const QString url = server.UrlOf(QStringLiteral("a.tif"));
    const std::string refusal = "lies on a host that this program does not allow to be read from";
    EXPECT_EQ(FailureOf(url), refusal);
    TClimateDataset::SetAllowedHosts({QStringLiteral("example.org"), QStringLiteral("27.0.0.1")});
    EXPECT_EQ(FailureOf(url), refusal);
    EXPECT_EQ(MessageOf<EClimateFile>([&] { TClimateDataset dataset(url); }),
              url + QStringLiteral(": ") + QString::fromStdString(refusal));
    EXPECT_EQ(server.GetRequests(), 0);
}

TEST_F(RemoteFiles, HaveThePixelsOfTheFile) {
    TClimateDataset::SetAllowedHosts({Loopback});
    const THttpServer server(GoodAnswer());
    const TGeoTiffTiles local(FPath);
    const TGeoTiffTiles remote(server.UrlOf(QStringLiteral("a.tif")));
    EXPECT_EQ(remote.GetLevels().size(), local.GetLevels().size());
    EXPECT_EQ(remote.GetArea().Area, local.GetArea().Area);
    for (int level = 0; level < 2; ++level)
        EXPECT_EQ(Read(remote, level), Read(local, level));
    EXPECT_GT(server.GetRequests(), 1);
    const TClimateDataset dataset(server.UrlOf(QStringLiteral("b.tif")));
    EXPECT_EQ(dataset.GetVariables().size(), 1U);
}

// Its other kinds are read by one thread, which no server may hold up, and reach for further files.
TEST_F(RemoteFiles, AreGeoTiffsOnly) {
    TClimateDataset::SetAllowedHosts({Loopback});
    QFile netcdf(ClimateSample(QStringLiteral("form_classic.nc")));
    ASSERT_TRUE(netcdf.open(QIODevice::ReadOnly));
    const QByteArray bytes = netcdf.readAll();
    const THttpServer server([bytes](const THttpRequest& request) { return THttpServer::AnswerWith(request, bytes); });
    EXPECT_THAT(FailureOf(server.UrlOf(QStringLiteral("a.nc"))),
                HasSubstr("is no GeoTIFF that can be read from there"));
}

TEST_F(RemoteFiles, AServerThatFailsIsNamed) {
    TClimateDataset::SetAllowedHosts({Loopback});
    const auto good = GoodAnswer();
    for (const char* const status : {"404 Not Found", "403 Forbidden", "500 Internal Server Error", "401 Unauthorized"})
        EXPECT_THAT(FailureOfServer([status](const THttpRequest&) { return THttpServer::Status(status); }),
                    HasSubstr("is no GeoTIFF that can be read from there"))
            << status;
    EXPECT_THAT(FailureOfServer([](const THttpRequest&) { return QByteArray(); }), HasSubstr("from there")) << "ends";
    EXPECT_THAT(FailureOfServer([](const THttpRequest&) { return QByteArray("\0\1\2 nonsense\r\n\r\n"); }),
                HasSubstr("from there"));
    EXPECT_THAT(FailureOfServer([](const THttpRequest&) { return THttpServer::Status("200 OK"); }),
                HasSubstr("from there"))
        << "nothing in it";
    QString closed;
    {
        const THttpServer server(good);
        closed = server.UrlOf(QStringLiteral("a.tif"));
    }
    EXPECT_THAT(FailureOf(closed), HasSubstr("from there")) << "no server";
}

// From the second half of the file on, so that it opens.
TEST_F(RemoteFiles, AServerThatFailsInTheMiddleIsNamedAndMayRecover) {
    TClimateDataset::SetAllowedHosts({Loopback});
    const auto good = GoodAnswer();
    const auto lateFailures = std::vector<THttpServer::TAnswer>{
        [](const THttpRequest&) { return QByteArray(); },
        [](const THttpRequest&) { return THttpServer::Status("503 Service Unavailable"); },
        [good](const THttpRequest& request) { return good(request).chopped(100); },
        [good](const THttpRequest& request) { return good(request).replace("Content-Length: ", "Content-Length: 9"); },
    };
    for (const THttpServer::TAnswer& late : lateFailures) {
        auto isFailing = std::make_shared<std::atomic<bool>>(false);
        const THttpServer server(
            [=](const THttpRequest& request) { return *isFailing ? late(request) : good(request); });
        const TGeoTiffTiles tiles(server.UrlOf(QStringLiteral("a.tif")));
        *isFailing = true;
        try {
            EXPECT_EQ(Read(tiles, 0), Read(TGeoTiffTiles(FPath), 0)) << "true cells, or none";
        } catch (const EClimateFile& failure) {
            EXPECT_THAT(failure.Problem().toStdString(), HasSubstr("is damaged here"));
        }
        *isFailing = false;
        EXPECT_EQ(Read(TGeoTiffTiles(server.UrlOf(QStringLiteral("a.tif"))), 0), Read(TGeoTiffTiles(FPath), 0));
    }
}

// A server that knows no ranges sends all of the file.
TEST_F(RemoteFiles, AServerWithoutRangesIsAFailureOrTheFile) {
    TClimateDataset::SetAllowedHosts({Loopback});
    const QByteArray bytes = FBytes;
    const THttpServer server([bytes](const THttpRequest& request) {
        THttpRequest whole = request;
        whole.HasRange = false;
        return THttpServer::AnswerWith(whole, bytes);
    });
    const QString url = server.UrlOf(QStringLiteral("a.tif"));
    const std::string failure = FailureOf(url);
    if (failure == "read")
        EXPECT_EQ(Read(TGeoTiffTiles(url), 0), Read(TGeoTiffTiles(FPath), 0));
    else
        EXPECT_THAT(failure, HasSubstr("from there"));
}

TEST_F(RemoteFiles, ARedirectOfAHostThatIsAllowedIsFollowed) {
    const THttpServer target(GoodAnswer());
    const QByteArray field =
        "Location: " + target.UrlOf(QStringLiteral("b.tif"), QStringLiteral("localhost")).toLatin1() + "\r\n";
    const THttpServer server([field](const THttpRequest&) { return THttpServer::Status("302 Found", field); });
    TClimateDataset::SetAllowedHosts({Loopback});
    EXPECT_EQ(Read(TGeoTiffTiles(server.UrlOf(QStringLiteral("a.tif"))), 1), Read(TGeoTiffTiles(FPath), 1));
    EXPECT_GT(server.GetRequests(), 0);
    EXPECT_GT(target.GetRequests(), 0);
}

TEST_F(RemoteFiles, ARedirectToNowhereIsNamed) {
    TClimateDataset::SetAllowedHosts({Loopback});
    EXPECT_THAT(FailureOfServer([](const THttpRequest&) {
                    return THttpServer::Status("302 Found", "Location: file:///etc/hostname\r\n");
                }),
                HasSubstr("from there"));
}

TEST_F(RemoteFiles, AServerThatNeverAnswersIsGivenUp) {
    TClimateDataset::SetAllowedHosts({Loopback});
    TClimateDataset::SetRemoteTimeout(0);
    EXPECT_EQ(TClimateDataset::GetRemoteTimeout(), 1);
    TGate gate;
    const THttpServer* running = nullptr;
    const THttpServer server([&gate, &running](const THttpRequest&) {
        gate.GetWaiter()([&running] { return running && running->IsEnding(); });
        return QByteArray();
    });
    running = &server;
    EXPECT_THAT(FailureOf(server.UrlOf(QStringLiteral("a.tif"))), HasSubstr("from there"));
    EXPECT_GT(server.GetRequests(), 0);
    gate.Open();
}

} // namespace
} // namespace lmx
