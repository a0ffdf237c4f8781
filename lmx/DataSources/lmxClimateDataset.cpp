#include <lmx/DataSources/lmxClimateDataset.h>

#include <lmx/DataSources/Private/lmxClimateCatalog.h>
#include <lmx/DataSources/Private/lmxClimateFileOpening.h>
#include <lmx/DataSources/Private/lmxFilesAtEnd.h>
#include <lmx/DataSources/Private/lmxGdalSession.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

namespace lmx {

namespace {

struct TAllowedHosts {
    std::mutex Mutex;
    QStringList Hosts;
};

TAllowedHosts& AllowedHosts() {
    static TAllowedHosts hosts;
    return hosts;
}

std::atomic<int> RemoteTimeout = 30;

} // namespace

// Listed in one piece on the reader thread, which is not handed over to for each attribute then.
TClimateDataset::TClimateDataset(const QString& fileName) : FFileName(fileName) {
    const TFileUse use(fileName);
    auto source = OpenClimateSource(fileName, GetAllowedHosts());
    RunOnReader([&] { FCatalog = std::make_unique<TClimateCatalog>(std::move(source), fileName); });
    FOpenFile = std::make_unique<TOpenFile>([this] { FCatalog->Close(); });
}

TClimateDataset::~TClimateDataset() = default;

const TClimateAttributes& TClimateDataset::GetAttributes() const {
    return FCatalog->GetAttributes();
}

const std::vector<TClimateVariableInfo>& TClimateDataset::GetVariables() const {
    return FCatalog->GetInfos();
}

TNullable<std::size_t> TClimateDataset::FindVariable(const QString& name) const {
    const auto& infos = GetVariables();
    const auto place = std::find_if(infos.begin(), infos.end(), [&](const auto& info) { return info.Name == name; });
    return place == infos.end() ? TNullable<std::size_t>() : TNullable(std::size_t(place - infos.begin()));
}

const TClimateTimes& TClimateDataset::GetTimes(std::size_t variable) const {
    if (variable >= GetVariables().size())
        throw EArgumentException(QStringLiteral("Variable"));
    return *FCatalog->GetEntry(variable).Times;
}

TClimatePicture TClimateDataset::Read(const TClimateSelection& selection) const {
    const TFileUse use(FFileName);
    return FCatalog->Read(selection);
}

TClimatePicture TClimateDataset::Read(const TClimateSelection& selection, TKeptBlock& kept) const {
    const TFileUse use(FFileName);
    return FCatalog->Read(selection, kept);
}

void TClimateDataset::SetAllowedHosts(const QStringList& hosts) {
    const std::lock_guard lock(AllowedHosts().Mutex);
    AllowedHosts().Hosts = hosts;
}

QStringList TClimateDataset::GetAllowedHosts() {
    const std::lock_guard lock(AllowedHosts().Mutex);
    return AllowedHosts().Hosts;
}

void TClimateDataset::SetRemoteTimeout(int seconds) {
    RemoteTimeout = std::max(1, seconds);
}

int TClimateDataset::GetRemoteTimeout() {
    return RemoteTimeout;
}

} // namespace lmx
