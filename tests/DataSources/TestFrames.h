#pragma once

#include <lmx/DataSources/lmxFrameSource.h>
#include <lmx/Runtime/lmxExceptions.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace lmx::tests {

/// Frames of two cells: frame i holds i and 10 * i + 1. Counts what is read and what of it still lives.
class TTestFrames final : public IFrameSource {
public:
    explicit TTestFrames(std::size_t count) : FCount(count) {}
    explicit TTestFrames(std::vector<TClimateDate> dates) : FCount(dates.size()), FDates(std::move(dates)) {}

    std::atomic<std::size_t> Fails = 99; ///< the frame that cannot be read
    bool DatesRaise = false;

    void Close() { FIsOpen = false; } ///< reads wait until it is open, or until they are withdrawn
    void Open() { FIsOpen = true; }
    std::vector<std::size_t> Reads() const {
        const std::lock_guard lock(FMutex);
        return FReads;
    }
    int Withdrawn() const { return FWithdrawn; }
    int Living() const { return *FLiving; }

    std::size_t GetCount() const override { return FCount; }
    std::optional<TClimateDate> GetDate(std::size_t index) const override {
        if (DatesRaise)
            throw EInvalidOperation(QStringLiteral("the dates are damaged"));
        return FDates.empty() ? std::nullopt : std::optional(FDates.at(index));
    }
    TClimateCalendar GetCalendar() const override { return TClimateCalendar(); }
    QString GetCaption(std::size_t index) const override {
        return QStringLiteral("frame %1").arg(static_cast<int>(index));
    }
    std::shared_ptr<TRealImage> ReadFrame(std::size_t index, const TFrameWithdrawn& isWithdrawn) override {
        {
            const std::lock_guard lock(FMutex);
            FReads.push_back(index);
        }
        while (!FIsOpen) {
            if (isWithdrawn()) {
                ++FWithdrawn;
                return nullptr;
            }
            std::this_thread::yield();
        }
        if (index == Fails)
            throw EInvalidOperation(QStringLiteral("frame %1 is damaged").arg(static_cast<int>(index)));
        TImageHeader header;
        header.SetWidth(2);
        header.SetHeight(1);
        ++*FLiving;
        std::shared_ptr<TRealImage> image(new TRealImage(QString(), header), [living = FLiving](TRealImage* gone) {
            delete gone;
            --*living;
        });
        image->GetRow(1)[0] = static_cast<float>(index);
        image->GetRow(1)[1] = static_cast<float>(10 * index + 1);
        return image;
    }

private:
    std::size_t FCount;
    std::vector<TClimateDate> FDates;
    std::atomic<bool> FIsOpen = true;
    std::atomic<int> FWithdrawn = 0;
    std::shared_ptr<std::atomic<int>> FLiving = std::make_shared<std::atomic<int>>(0);
    mutable std::mutex FMutex;
    std::vector<std::size_t> FReads;
};

} // namespace lmx::tests
