#include <lmx/DataSources/Private/lmxReaderThreadSource.h>

#include <lmx/DataSources/Private/lmxGdalSession.h>

namespace lmx {

namespace {

class TReaderThreadSource final : public IClimateSource {
public:
    explicit TReaderThreadSource(const std::function<std::unique_ptr<IClimateSource>()>& make) {
        RunOnReader([&] { FSource = make(); });
    }
    ~TReaderThreadSource() override {
        RunOnReader([this] { FSource.reset(); });
    }
    TReaderThreadSource(const TReaderThreadSource&) = delete;
    TReaderThreadSource& operator=(const TReaderThreadSource&) = delete;

    const std::vector<TSourceArray>& GetArrays() const override { return FSource->GetArrays(); }
    bool IsNetCdf() const override { return FSource->IsNetCdf(); }
    TClimateAttributes ReadFileAttributes() override {
        return ReadOnReader([this] { return FSource->ReadFileAttributes(); });
    }
    TSourceAttributes ReadAttributes(std::size_t array) override {
        return ReadOnReader([&] { return FSource->ReadAttributes(array); });
    }
    TRawSlice Read(std::size_t array, const TSourceWindow& window) override {
        return ReadOnReader([&] { return FSource->Read(array, window); });
    }
    TRawSlice ReadMask(std::size_t array, const TSourceWindow& window) override {
        return ReadOnReader([&] { return FSource->ReadMask(array, window); });
    }

private:
    std::unique_ptr<IClimateSource> FSource;
};

} // namespace

std::unique_ptr<IClimateSource> MakeReaderThreadSource(const std::function<std::unique_ptr<IClimateSource>()>& make) {
    return std::make_unique<TReaderThreadSource>(make);
}

} // namespace lmx
