#include <lmx/DataSources/Private/lmxHdf5Walk.h>

#include <lmx/DataSources/Private/lmxClimateFileOpening.h>
#include <lmx/DataSources/Private/lmxGdalSession.h>
#include <lmx/DataSources/lmxClimateDataset.h>
#include <lmx/DataSources/lmxClimateExceptions.h>

#include <tests/Support/Printers.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#define H5_USE_110_API
#include <gtest/gtest.h>
#include <hdf5.h>

namespace lmx {
namespace {

using namespace tests;

const QString WayOut = ". Files that reach outside of themselves are not opened; copy it whole by h5repack";

// Files are written on the reader thread: HDF5 may not know of any other.
class Hdf5Walk : public testing::Test {
protected:
    template<class Fill>
    QString Write(Fill&& fill) {
        RunOnReader([&] {
            const hid_t file = H5Fcreate(Path.toUtf8().constData(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
            fill(file);
            H5Fclose(file);
        });
        return Path;
    }

    QString Refusal() const {
        return MessageOf<EClimateFile>([this] { RunOnReader([this] { CheckHdf5(Path); }); });
    }
    // What the walk refuses, a dataset refuses.
    void ExpectRefusal(const QString& problem) const {
        EXPECT_EQ(Refusal(), Path + ": " + problem);
        EXPECT_EQ(MessageOf<EClimateFile>([this] { TClimateDataset dataset(Path); }), Path + ": " + problem);
    }

    static void AddSet(hid_t place, const char* name, hid_t list = H5P_DEFAULT) {
        const hsize_t size = 4;
        const hid_t space = H5Screate_simple(1, &size, nullptr);
        H5Dclose(H5Dcreate2(place, name, H5T_NATIVE_INT, space, H5P_DEFAULT, list, H5P_DEFAULT));
        H5Sclose(space);
    }

    QTemporaryDir Folder;
    const QString Path = Folder.filePath("f.h5");
};

TEST_F(Hdf5Walk, CellsInAnotherFileAreRefused) {
    Write([](hid_t file) {
        const hid_t list = H5Pcreate(H5P_DATASET_CREATE);
        H5Pset_external(list, "/etc/passwd", 0, 16);
        AddSet(file, "tas", list);
        H5Pclose(list);
    });
    ExpectRefusal("tas stores its cells in another file" + WayOut);
}

TEST_F(Hdf5Walk, CellsOfAnotherSetAreRefusedInAnyGroup) {
    Write([](hid_t file) {
        const hid_t group = H5Gcreate2(file, "inner", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
        const hid_t list = H5Pcreate(H5P_DATASET_CREATE);
        const hsize_t size = 4;
        const hid_t space = H5Screate_simple(1, &size, nullptr);
        H5Pset_virtual(list, space, "other.h5", "cells", space);
        AddSet(group, "joined", list);
        H5Sclose(space);
        H5Pclose(list);
        H5Gclose(group);
    });
    ExpectRefusal("joined takes its cells from other data sets" + WayOut);
}

TEST_F(Hdf5Walk, LinksToAnotherFileAreRefused) {
    Write([](hid_t file) { H5Lcreate_external("other.h5", "/cells", file, "linked", H5P_DEFAULT, H5P_DEFAULT); });
    ExpectRefusal("linked links to another file" + WayOut);
}

TEST_F(Hdf5Walk, AGroupThatHoldsItsParentEnds) {
    Write([](hid_t file) {
        const hid_t group = H5Gcreate2(file, "inner", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
        H5Lcreate_hard(file, "/", group, "again", H5P_DEFAULT, H5P_DEFAULT);
        H5Lcreate_soft("/inner", group, "soft", H5P_DEFAULT, H5P_DEFAULT);
        H5Lcreate_soft("/nowhere", group, "dangling", H5P_DEFAULT, H5P_DEFAULT);
        AddSet(group, "cells");
        H5Gclose(group);
    });
    EXPECT_NO_THROW(RunOnReader([this] { CheckHdf5(Path); }));
}

TEST_F(Hdf5Walk, DeepGroupsAreRefused) {
    const auto nest = [](hid_t file, int depth) {
        hid_t place = H5Gopen2(file, "/", H5P_DEFAULT);
        for (int i = 0; i < depth; ++i) {
            const hid_t inner = H5Gcreate2(place, "g", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
            H5Gclose(place);
            place = inner;
        }
        H5Gclose(place);
    };
    Write([&](hid_t file) { nest(file, 31); });
    EXPECT_NO_THROW(RunOnReader([this] { CheckHdf5(Path); }));
    Write([&](hid_t file) { nest(file, 2000); });
    ExpectRefusal("has groups within groups, more than 32 deep");
}

TEST_F(Hdf5Walk, TooManyThingsAreRefused) {
    Write([](hid_t file) {
        AddSet(file, "cells");
        for (int i = 0; i < 10'000; ++i)
            H5Lcreate_hard(file, "cells", file, std::to_string(i).c_str(), H5P_DEFAULT, H5P_DEFAULT);
    });
    ExpectRefusal("holds more than 10000 arrays and groups");
}

// Unpacking one of its cells would take all of the block.
TEST_F(Hdf5Walk, HugeBlocksAreNotUnpacked) {
    Write([](hid_t file) {
        const hid_t list = H5Pcreate(H5P_DATASET_CREATE);
        const hsize_t chunk[] = {9000, 9000};
        const hsize_t size[] = {9000, 9000};
        H5Pset_chunk(list, 2, chunk);
        const hid_t space = H5Screate_simple(2, size, nullptr);
        H5Dclose(H5Dcreate2(file, "cells", H5T_NATIVE_INT, space, H5P_DEFAULT, list, H5P_DEFAULT));
        H5Sclose(space);
        H5Pclose(list);
    });
    const QString problem = "is stored in blocks of more than 256 MB, which are not unpacked. Store it in smaller ones "
                            "first, for example: nccopy -c time/1 in out";
    const auto source = OpenClimateSource(Path, {});
    ASSERT_EQ(source->GetArrays().size(), 1U);
    EXPECT_EQ(MessageOf<EClimateFile>([&] { source->Read(0, {{0, 0}, {1, 1}}); }), Path + ": cells: " + problem);
}

TEST_F(Hdf5Walk, ADamagedFileIsRefused) {
    QFile source(QStringLiteral(LMX_SOURCE_DIR "/tests/data/netcdf/form_netcdf4.nc"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const QByteArray whole = source.readAll();
    for (const qsizetype length : {10, 100, 1000, 5000, 10'000, 21'000}) {
        QFile file(Path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(whole.left(length));
        file.close();
        EXPECT_EQ(Refusal(), Path + ": is a damaged or unfinished HDF5 file. Copy or fetch it again") << length;
    }
}

TEST_F(Hdf5Walk, EverySampleStandsForItself) {
    const QDir folder(QStringLiteral(LMX_SOURCE_DIR "/tests/data/netcdf"));
    int count = 0;
    for (const QString& name : folder.entryList({"*.nc", "*.h5"})) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        if (file.read(4).mid(1) != "HDF")
            continue;
        ++count;
        EXPECT_NO_THROW(RunOnReader([&] { CheckHdf5(folder.filePath(name)); })) << name.toStdString();
    }
    EXPECT_GT(count, 20);
}

} // namespace
} // namespace lmx
