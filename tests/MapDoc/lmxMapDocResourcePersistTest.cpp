#include <lmx/MapDoc/lmxMapDocResourcePersist.h>

#include <tests/MapDoc/MapDocFiles.h>
#include <tests/Support/FailingDevice.h>
#include <tests/Support/FileSizeLimit.h>
#include <tests/Support/MemoryLimit.h>
#include <tests/Support/Printers.h>
#include <tests/Support/ZipBytes.h>

#include <QProcess>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace lmx {
namespace {

using namespace tests;
using enum TMapDocPersistMode;

QByteArray WriteTwoEntries(const QString& fileName) {
    TMapDocResourcePersist archive(fileName, pmWrite);
    const QByteArray content = QByteArray("temperature ").repeated(1000);
    archive.Write(QStringLiteral("{ID}"), QStringLiteral("header"), content);
    archive.WriteText({}, QStringLiteral("manifest"), QStringLiteral("<a>\u00E9</a>"));
    return content;
}

QByteArray EntryOf(const TZipRecord& record, const char* name = "manifest") {
    TArchiveInMemory memory(ZipBytes({record}));
    return TMapDocResourcePersist(memory.Buffer, QStringLiteral("memory"), pmRead).Read({}, QString::fromLatin1(name));
}

QString RefusalOf(const TZipRecord& record) {
    return MessageOf<EFileFormatException>([&] { EntryOf(record); });
}

const QString Damaged = QStringLiteral("memory: entry \"_meta\\manifest\" is damaged");
const QByteArray ManifestName("_meta\\manifest");

TEST(MapDocResourcePersist, NamesEntriesByFolderAndName) {
    EXPECT_EQ(TMapDocResourcePersist::FormatName(QStringLiteral("{ID}"), QStringLiteral("header")), "{ID}\\header");
    EXPECT_EQ(TMapDocResourcePersist::FormatName({}, QStringLiteral("manifest")), "_meta\\manifest");
}

TEST(MapDocResourcePersist, GivesBackWhatItWrote) {
    const TDocumentFolder folder;
    const QByteArray content = WriteTwoEntries(folder.Path());
    const TMapDocResourcePersist archive(folder.Path(), pmRead);
    EXPECT_EQ(archive.GetFileName(), folder.Path());
    EXPECT_EQ(archive.Read(QStringLiteral("{ID}"), QStringLiteral("header")), content);
    EXPECT_EQ(archive.Read({}, QStringLiteral("manifest")), QByteArray("<a>\xC3\xA9</a>"));
    EXPECT_EQ(archive.ReadText({}, QStringLiteral("manifest")), QStringLiteral("<a>\u00E9</a>"));
    EXPECT_TRUE(archive.Has({}, QStringLiteral("manifest")));
    EXPECT_FALSE(archive.Has({}, QStringLiteral("manifests")));
}

// Names, method, date, size of the whole: the bytes follow from the entries alone.
TEST(MapDocResourcePersist, WritesTheSameBytesForTheSameEntries) {
    const TDocumentFolder folder;
    WriteTwoEntries(folder.Path());
    const QByteArray first = folder.Read();
    WriteTwoEntries(folder.Path());
    EXPECT_EQ(folder.Read(), first);
    EXPECT_EQ(first.left(4), QByteArray("PK\3\4", 4));
    EXPECT_EQ(first.mid(8, 2), QByteArray("\10\0", 2));       // Deflate
    EXPECT_EQ(first.mid(10, 4), QByteArray("\0\0\x21\0", 4)); // 1980-01-01 00:00
    EXPECT_EQ(first.mid(26, 4), QByteArray("\13\0\0\0", 4));  // a name of 11 letters, no extra field
    EXPECT_EQ(first.mid(30, 11), "{ID}\\header");
    EXPECT_EQ(first.count("PK\1\2"), 2);
    EXPECT_EQ(first.lastIndexOf("PK\5\6"), first.size() - 22);
}

TEST(MapDocResourcePersist, EmptyArchivesAndEntriesAreWhole) {
    const TDocumentFolder folder;
    { const TMapDocResourcePersist archive(folder.Path(), pmWrite); }
    EXPECT_EQ(folder.Read(), QByteArray("PK\5\6", 4) + QByteArray(18, '\0'));
    EXPECT_FALSE(TMapDocResourcePersist(folder.Path(), pmRead).Has({}, QStringLiteral("manifest")));
    TMapDocResourcePersist(folder.Path(), pmWrite).Write({}, QStringLiteral("manifest"), {});
    EXPECT_EQ(TMapDocResourcePersist(folder.Path(), pmRead).Read({}, QStringLiteral("manifest")), QByteArray());
}

TEST(MapDocResourcePersist, AbsentEntriesAreNotFound) {
    const TDocumentFolder folder;
    WriteTwoEntries(folder.Path());
    const TMapDocResourcePersist archive(folder.Path(), pmRead);
    EXPECT_EQ(MessageOf<EMapDocResourceNotFoundException>([&] { archive.Read({}, QStringLiteral("header")); }),
              "The specified MapDoc resource was not found");
    EXPECT_EQ(MessageOf<EMapDocResourceNotFoundException>([&] { archive.ReadText({}, {}); }),
              "The specified MapDoc resource was not found");
}

TEST(MapDocResourcePersist, FindsNamesExactlyThenBySlashThenByLetters) {
    TArchiveInMemory memory(
        ZipBytes({StoredRecord("_META/MANIFEST", "letters"), StoredRecord("_meta/manifest", "slash"),
                  StoredRecord("_meta\\manifest", "exact"), StoredRecord("_meta\\manifest", "2nd"),
                  StoredRecord("_meta/Other", "o"), StoredRecord("_meta\\\xC3\x84", "umlaut")}));
    const TMapDocResourcePersist archive(memory.Buffer, QStringLiteral("memory"), pmRead);
    EXPECT_EQ(archive.Read({}, QStringLiteral("manifest")), "exact");
    EXPECT_EQ(archive.Read(QStringLiteral("_META"), QStringLiteral("MANIFEST")), "letters");
    EXPECT_EQ(archive.Read({}, QStringLiteral("other")), "o");
    EXPECT_EQ(archive.Read({}, QStringLiteral("Other")), "o");
    EXPECT_EQ(archive.Read({}, QStringLiteral("\u00C4")), "umlaut");
    EXPECT_FALSE(archive.Has({}, QStringLiteral("\u00E4")));
    TArchiveInMemory other(ZipBytes({StoredRecord("_META/MANIFEST", "letters"), StoredRecord("_meta/manifest", "s")}));
    EXPECT_EQ(TMapDocResourcePersist(other.Buffer, {}, pmRead).Read({}, QStringLiteral("manifest")), "s");
}

TEST(MapDocResourcePersist, NamesThatLeadElsewhereAreNamesOnly) {
    const TDocumentFolder folder;
    TArchiveInMemory memory(ZipBytes({StoredRecord("..\\..\\escaped", "a"), StoredRecord("C:\\escaped", "b"),
                                      StoredRecord(QByteArray("_meta\\manifest\0x", 16), "c"),
                                      StoredRecord("/etc/escaped", "d"), StoredRecord("", "e")}));
    const TMapDocResourcePersist archive(memory.Buffer, QStringLiteral("memory"), pmRead);
    EXPECT_EQ(archive.Read(QStringLiteral("..\\.."), QStringLiteral("escaped")), "a");
    EXPECT_EQ(archive.Read(QStringLiteral("C:"), QStringLiteral("escaped")), "b");
    EXPECT_FALSE(archive.Has({}, QStringLiteral("manifest")));
    EXPECT_EQ(archive.Read(QStringLiteral("/etc"), QStringLiteral("escaped")), "d");
    TMapDocResourcePersist written(folder.Path(), pmWrite);
    for (const QString& name : {QString(u'\0'), QString(70000, u'a')})
        EXPECT_EQ(MessageOf<EArgumentException>([&] { written.Write({}, name, "x"); }), "Name");
    written.Write(QStringLiteral("../.."), QStringLiteral("escaped"), "x");
    written.Finish();
    EXPECT_EQ(TMapDocResourcePersist(folder.Path(), pmRead).Read(QStringLiteral("../.."), QStringLiteral("escaped")),
              "x");
    EXPECT_FALSE(QFile::exists(folder.Path("../../escaped")));
}

TEST(MapDocResourcePersist, TextIsUtf8) {
    const auto textOf = [](const QByteArray& bytes) {
        TArchiveInMemory memory(ZipBytes({StoredRecord(ManifestName, bytes)}));
        return TMapDocResourcePersist(memory.Buffer, QStringLiteral("memory"), pmRead)
            .ReadText({}, QStringLiteral("manifest"));
    };
    EXPECT_EQ(textOf("\xEF\xBB\xBF<a/>"), "<a/>");
    EXPECT_EQ(textOf(""), "");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { textOf(QByteArray("\xFF\xFE<\0a\0/\0>\0", 10)); }),
              "memory: entry \"_meta\\manifest\" is no text in UTF-8");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { textOf("<a>\xE9</a>"); }),
              "memory: entry \"_meta\\manifest\" is no text in UTF-8");
}

TEST(MapDocResourcePersist, ReadsWhatOthersWrite) {
    EXPECT_EQ(EntryOf(StoredRecord(ManifestName, "plain")), "plain");
    EXPECT_EQ(EntryOf(DeflatedRecord(ManifestName, "deflated")), "deflated");
    TZipRecord utf8 = DeflatedRecord("_meta\\\xC3\xA9", "utf8");
    utf8.Flags = 1 << 11;
    EXPECT_EQ(EntryOf(utf8, "\xE9"), "utf8");
    const QByteArray comment = ZipBytes({StoredRecord(ManifestName, "x")});
    TArchiveInMemory before(QByteArray("#!/bin/sh\n") + comment);
    EXPECT_EQ(TMapDocResourcePersist(before.Buffer, {}, pmRead).Read({}, QStringLiteral("manifest")), "x");
}

TEST(MapDocResourcePersist, RefusesOtherMethodsAndEncryption) {
    for (const int method : {1, 9, 12, 14, 93, 99}) {
        TZipRecord record = StoredRecord(ManifestName, "x");
        record.Method = static_cast<std::uint16_t>(method);
        EXPECT_EQ(RefusalOf(record), QStringLiteral("memory: entry \"_meta\\manifest\" has an unknown compression "
                                                    "method, %1")
                                         .arg(method));
    }
    for (const int flags : {1, 1 | 1 << 6, 1 << 13}) {
        TZipRecord record = StoredRecord(ManifestName, "x");
        record.Flags = static_cast<std::uint16_t>(flags);
        EXPECT_EQ(RefusalOf(record), "memory: entry \"_meta\\manifest\" is encrypted");
    }
}

TEST(MapDocResourcePersist, RefusesDamage) {
    const QByteArray content = QByteArray("abc").repeated(100);
    TZipRecord wrongSum = DeflatedRecord(ManifestName, content);
    wrongSum.CheckSum ^= 1;
    EXPECT_EQ(RefusalOf(wrongSum), Damaged);
    wrongSum = StoredRecord(ManifestName, content);
    wrongSum.CheckSum ^= 1;
    EXPECT_EQ(RefusalOf(wrongSum), Damaged);
    for (const int difference : {-1, 1, 200}) {
        TZipRecord wrongSize = DeflatedRecord(ManifestName, content);
        wrongSize.Size += static_cast<std::uint32_t>(difference);
        EXPECT_EQ(RefusalOf(wrongSize), Damaged) << difference;
        wrongSize = StoredRecord(ManifestName, content);
        wrongSize.Size += static_cast<std::uint32_t>(difference);
        EXPECT_EQ(RefusalOf(wrongSize), Damaged) << difference;
    }
    TZipRecord noDeflate = DeflatedRecord(ManifestName, content);
    noDeflate.Data[0] = '\xFF';
    EXPECT_EQ(RefusalOf(noDeflate), Damaged);
    TZipRecord beyondEnd = StoredRecord(ManifestName, content);
    beyondEnd.CompressedSize = beyondEnd.Size = 0x7FFFFFFF;
    EXPECT_EQ(RefusalOf(beyondEnd), Damaged);
    beyondEnd.CompressedSize = beyondEnd.Size = 500; // into the directory, not beyond the file
    EXPECT_EQ(RefusalOf(beyondEnd), Damaged);
}

// The claim of four gigabytes is refused by what Deflate can hold at most, before memory is taken.
TEST(MapDocResourcePersist, ClaimsTakeNoMemory) {
    TZipRecord claim = DeflatedRecord(ManifestName, "x");
    claim.Size = 0xFFFFFFF0;
    if (!CanLimitMemory) {
        EXPECT_EQ(RefusalOf(claim), Damaged);
        return;
    }
    const TMemoryLimit limit(64 << 20);
    EXPECT_EQ(RefusalOf(claim), Damaged);
}

TEST(MapDocResourcePersist, CapsTheSizeOfEntries) {
    const QByteArray bomb(10 << 20, '\0');
    TArchiveInMemory memory(ZipBytes({DeflatedRecord(ManifestName, bomb)}));
    TMapDocResourcePersist archive(memory.Buffer, QStringLiteral("memory"), pmRead);
    EXPECT_LT(memory.Bytes.size(), 20000);
    EXPECT_EQ(archive.GetMostBytes(), std::uint64_t{4} << 30);
    EXPECT_EQ(archive.Read({}, QStringLiteral("manifest")), bomb);
    const QString tooLarge = QStringLiteral("memory: entry \"_meta\\manifest\" has more than 1000000 bytes");
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { archive.Read({}, QStringLiteral("manifest"), 1000000); }),
              tooLarge);
    archive.SetMostBytes(1000000);
    EXPECT_EQ(MessageOf<EFileFormatException>([&] { archive.Read({}, QStringLiteral("manifest")); }), tooLarge);
    archive.SetMostBytes(10 << 20);
    EXPECT_EQ(archive.Read({}, QStringLiteral("manifest")).size(), 10 << 20);
}

TEST(MapDocResourcePersist, RefusesWhatIsNoArchive) {
    const TDocumentFolder folder;
    const auto refusal = [&](const QByteArray& content) {
        const QString path = folder.Write("a.lmx", content);
        return MessageOf<EFileFormatException>([&] { const TMapDocResourcePersist archive(path, pmRead); });
    };
    const QString noArchive = folder.Path("a.lmx") + QStringLiteral(": is no ZIP archive");
    EXPECT_EQ(refusal(""), noArchive);
    EXPECT_EQ(refusal("<mapDoc/>"), noArchive);
    EXPECT_EQ(refusal(QByteArray(100000, 'P')), noArchive);
    QByteArray cut = ZipBytes({StoredRecord(ManifestName, "x"), StoredRecord("other", "y")});
    const qsizetype directory = cut.lastIndexOf("PK\1\2");
    cut[directory] = 'X';
    EXPECT_EQ(refusal(cut), folder.Path("a.lmx") + QStringLiteral(": directory of the archive is damaged"));
}

TEST(MapDocResourcePersist, OpensRegularFilesOnly) {
    const TDocumentFolder folder;
    const QByteArray pipe = folder.Path("pipe").toLocal8Bit();
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    for (const QString& path : {folder.Path("."), folder.Path("pipe"), QStringLiteral("/dev/zero")}) {
        EXPECT_EQ(MessageOf<EFileException>([&] { const TMapDocResourcePersist archive(path, pmRead); }),
                  path + QStringLiteral(": cannot be read: no regular file"));
        EXPECT_EQ(MessageOf<EFileException>([&] { const TMapDocResourcePersist archive(path, pmWrite); }),
                  path + QStringLiteral(": cannot be written: no regular file"));
    }
    EXPECT_EQ(MessageOf<EFileException>([&] { const TMapDocResourcePersist archive(folder.Path("none"), pmRead); }),
              folder.Path("none") + QStringLiteral(": cannot be read: No such file or directory"));
    const QString path = folder.Path("none/map.lmx");
    EXPECT_EQ(MessageOf<EFileException>([&] { const TMapDocResourcePersist archive(path, pmWrite); }),
              path + QStringLiteral(": cannot be written: No such file or directory"));
    EXPECT_FALSE(QFile::exists(folder.Path("none")));
}

TEST(MapDocResourcePersist, DoesOnlyWhatItWasOpenedFor) {
    const TDocumentFolder folder;
    TMapDocResourcePersist written(folder.Path(), pmWrite);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { written.Read({}, QStringLiteral("manifest")); }),
              "Archive is not open for reading");
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { written.Has({}, QStringLiteral("manifest")); }),
              "Archive is not open for reading");
    written.Finish();
    written.Finish();
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { written.Write({}, QStringLiteral("manifest"), {}); }),
              "Archive is finished");
    TMapDocResourcePersist read(folder.Path(), pmRead);
    EXPECT_EQ(MessageOf<EInvalidOperation>([&] { read.WriteText({}, QStringLiteral("manifest"), {}); }),
              "Archive is not open for writing");
    EXPECT_NO_THROW(read.Finish());
}

// The directory is written on every path, so that what was written before the failure can be read.
TEST(MapDocResourcePersist, WhatStandsBeforeAFailureStays) {
    const TDocumentFolder folder;
    try {
        TMapDocResourcePersist archive(folder.Path(), pmWrite);
        archive.Write(QStringLiteral("{ID}"), QStringLiteral("header"), "first");
        throw EInvalidOperation(QStringLiteral("The layer fails"));
    } catch (const EInvalidOperation&) {
        const TMapDocResourcePersist archive(folder.Path(), pmRead);
        EXPECT_EQ(archive.Read(QStringLiteral("{ID}"), QStringLiteral("header")), "first");
        EXPECT_FALSE(archive.Has({}, QStringLiteral("manifest")));
    }
}

TEST(MapDocResourcePersist, NoFailureOfADeviceIsLost) {
    const auto write = [](QIODevice& device) {
        TMapDocResourcePersist archive(device, QStringLiteral("device"), pmWrite);
        archive.Write(QStringLiteral("{ID}"), QStringLiteral("header"), QByteArray("x").repeated(100));
        archive.WriteText({}, QStringLiteral("manifest"), QStringLiteral("<a/>"));
        archive.Finish();
    };
    TFailingDevice whole;
    write(whole);
    ASSERT_GT(whole.GetWrites(), 10);
    for (int n = 0; n < whole.GetWrites(); ++n) {
        TFailingDevice device(n);
        EXPECT_EQ(MessageOf<EFileException>([&] { write(device); }),
                  "device: cannot be written: No space left on device")
            << n;
        EXPECT_EQ(device.GetWrites(), n);
    }
}

TEST(MapDocResourcePersist, FullDisksAreNoticed) {
    const TDocumentFolder folder;
    const QString message = folder.Path() + QStringLiteral(": cannot be written: File too large");
    for (const int size : {0, 10, 100, 1000}) {
        const TFileSizeLimit limit(static_cast<rlim_t>(size));
        EXPECT_EQ(MessageOf<EFileException>([&] {
                      TMapDocResourcePersist archive(folder.Path(), pmWrite);
                      QByteArray noise;
                      for (std::uint32_t i = 0; i < 1000; ++i)
                          AppendLittle(noise, i * 2654435761U);
                      archive.Write({}, QStringLiteral("noise"), noise);
                      archive.Finish();
                  }),
                  message)
            << size;
    }
}

TEST(MapDocResourcePersist, EveryTruncationIsRefused) {
    const TDocumentFolder folder;
    WriteTwoEntries(folder.Path());
    const QByteArray whole = folder.Read();
    for (qsizetype size = 0; size < whole.size(); ++size) {
        TArchiveInMemory memory(whole.left(size));
        EXPECT_THROW(TMapDocResourcePersist(memory.Buffer, {}, pmRead), EFileFormatException) << size;
    }
}

TEST(MapDocResourcePersist, ThousandsOfEntriesAreFound) {
    const TDocumentFolder folder;
    constexpr int Count = 70000; // beyond 16 bits, which takes a zip64 directory
    TMapDocResourcePersist written(folder.Path(), pmWrite);
    for (int i = 0; i < Count; ++i)
        written.Write(QString::number(i), QStringLiteral("header"), QByteArray::number(i));
    written.Finish();
    const TMapDocResourcePersist read(folder.Path(), pmRead);
    for (int i = 0; i < Count; i += 777)
        EXPECT_EQ(read.Read(QString::number(i), QStringLiteral("header")), QByteArray::number(i));
    QProcess unzip;
    unzip.start(QStringLiteral("unzip"), {QStringLiteral("-tq"), folder.Path()});
    ASSERT_TRUE(unzip.waitForFinished());
    EXPECT_EQ(unzip.exitCode(), 0);
}

TEST(MapDocResourcePersist, OtherProgramsOpenIt) {
    const TDocumentFolder folder;
    WriteTwoEntries(folder.Path());
    QProcess unzip;
    unzip.start(QStringLiteral("unzip"), {QStringLiteral("-t"), folder.Path()});
    ASSERT_TRUE(unzip.waitForFinished()) << "unzip is one of the test packages";
    EXPECT_EQ(unzip.exitCode(), 0) << unzip.readAllStandardOutput().toStdString();
    QProcess python;
    python.start(QStringLiteral("python3"),
                 {QStringLiteral("-c"),
                  QStringLiteral("import sys, zipfile\nz = zipfile.ZipFile(sys.argv[1])\nassert z.testzip() is None\n"
                                 "assert z.namelist() == ['{ID}\\\\header', '_meta\\\\manifest'], z.namelist()\n"
                                 "assert z.infolist()[0].date_time == (1980, 1, 1, 0, 0, 0)\n"
                                 "assert z.read('_meta\\\\manifest') == '<a>\\u00e9</a>'.encode()\n"
                                 "with zipfile.ZipFile(sys.argv[2], 'w') as w:\n"
                                 "    w.writestr('_meta/manifest', '<b/>', zipfile.ZIP_DEFLATED)\n"),
                  folder.Path(), folder.Path("theirs.zip")});
    ASSERT_TRUE(python.waitForFinished()) << "python3 is one of the test packages";
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    EXPECT_EQ(TMapDocResourcePersist(folder.Path("theirs.zip"), pmRead).Read({}, QStringLiteral("manifest")), "<b/>");
}

} // namespace
} // namespace lmx
