#include <lmx/DataSources/Private/lmxHdf5Walk.h>

#include <lmx/DataSources/lmxClimateExceptions.h>
#include <lmx/Runtime/lmxFormat.h>

#define H5_USE_110_API // the calls of 1.10, which later ones keep
#include <hdf5.h>

#include <exception>
#include <set>
#include <utility>

namespace lmx {

namespace {

constexpr int MostDepth = 32;
constexpr int MostThings = 10'000;

// A handle of HDF5 and the call that gives it back.
class THandle {
public:
    THandle(hid_t id, herr_t (*close)(hid_t)) : FId(id), FClose(close) {}
    ~THandle() {
        if (FId >= 0)
            FClose(FId);
    }
    THandle(const THandle&) = delete;
    THandle& operator=(const THandle&) = delete;
    hid_t Id() const { return FId; }
    explicit operator bool() const { return FId >= 0; }

private:
    hid_t FId;
    herr_t (*FClose)(hid_t);
};

class TWalk {
public:
    explicit TWalk(const QString& path) : FPath(path) {}

    void Run() {
        const THandle file(H5Fopen(FPath.toUtf8().constData(), H5F_ACC_RDONLY, H5P_DEFAULT), &H5Fclose);
        if (!file)
            Refuse(QStringLiteral("is a damaged or unfinished HDF5 file. Copy or fetch it again"));
        const THandle root(H5Gopen2(file.Id(), "/", H5P_DEFAULT), &H5Gclose);
        if (!root)
            Refuse(QStringLiteral("is a damaged HDF5 file"));
        WalkGroup(root.Id());
    }

private:
    [[noreturn]] void Refuse(const QString& problem) const { throw EClimateFile(FPath, problem); }
    [[noreturn]] void RefuseThing(const char* name, QStringView problem) const {
        Refuse(QString::fromUtf8(name).left(200) + problem.toString() +
               QStringLiteral(". Files that reach outside of themselves are not opened; copy it whole by h5repack"));
    }

    void WalkGroup(hid_t group) {
        if (++FDepth > MostDepth)
            Refuse(Format(u"has groups within groups, more than %d deep", {MostDepth}));
        const herr_t result = H5Literate(group, H5_INDEX_NAME, H5_ITER_NATIVE, nullptr, &Visit, this);
        if (FFailure)
            std::rethrow_exception(FFailure);
        if (result < 0)
            Refuse(QStringLiteral("is a damaged HDF5 file"));
        --FDepth;
    }

    // Nothing may be thrown through HDF5.
    static herr_t Visit(hid_t group, const char* name, const H5L_info_t* info, void* walk) {
        auto* const self = static_cast<TWalk*>(walk);
        try {
            self->LookAt(group, name, *info);
            return 0;
        } catch (...) {
            self->FFailure = std::current_exception();
            return -1;
        }
    }

    void LookAt(hid_t group, const char* name, const H5L_info_t& link) {
        if (++FThings > MostThings)
            Refuse(Format(u"holds more than %d arrays and groups", {MostThings}));
        if (link.type != H5L_TYPE_HARD && link.type != H5L_TYPE_SOFT)
            RefuseThing(name, u" links to another file");
        if (link.type == H5L_TYPE_SOFT) // what it names is met by its own name
            return;
        H5O_info_t info;
        if (H5Oget_info_by_name(group, name, &info, H5P_DEFAULT) < 0)
            Refuse(QStringLiteral("is a damaged HDF5 file"));
        if (!FMet.insert({info.fileno, info.addr}).second)
            return;
        if (info.type == H5O_TYPE_GROUP) {
            const THandle inner(H5Gopen2(group, name, H5P_DEFAULT), &H5Gclose);
            if (inner)
                WalkGroup(inner.Id());
        } else if (info.type == H5O_TYPE_DATASET) {
            LookAtDataSet(group, name);
        }
    }

    void LookAtDataSet(hid_t group, const char* name) const {
        const THandle set(H5Dopen2(group, name, H5P_DEFAULT), &H5Dclose);
        const THandle list(set ? H5Dget_create_plist(set.Id()) : -1, &H5Pclose);
        if (!list)
            Refuse(QString::fromUtf8(name).left(200) + QStringLiteral(" is damaged"));
        if (H5Pget_external_count(list.Id()) != 0)
            RefuseThing(name, u" stores its cells in another file");
        if (H5Pget_layout(list.Id()) == H5D_VIRTUAL)
            RefuseThing(name, u" takes its cells from other data sets");
    }

    const QString& FPath;
    std::set<std::pair<unsigned long, haddr_t>> FMet; // a group may hold its own parent
    std::exception_ptr FFailure;
    int FDepth = 0;
    int FThings = 0;
};

} // namespace

void CheckHdf5(const QString& path) {
    TWalk(path).Run();
}

} // namespace lmx
