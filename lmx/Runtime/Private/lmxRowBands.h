#pragma once

#include <cstdint>

namespace lmx {

/// Work on the rows of a picture in bands, which run on as many cores as TCores allows. Small pictures, and those that
/// come while other bands run, are one band on the calling thread: also those that the work of a band asks for.
/// Nobody waits for anything but bands that have begun.
class TRowBands {
public:
    /// Whether that many rows of that many pixels are worth sharing out, and may be.
    static bool Pays(std::int32_t rowCount, std::int32_t width) noexcept;

    /// Calls work(first, end) for bands of [0, rowCount) that cover each row once, and returns when all are done.
    /// Without rows it calls nothing. Bands must not depend on each other. What one raises is raised here: of several,
    /// what the topmost one raised; bands below it may then be undone.
    template<class Work>
    static void Run(std::int32_t rowCount, std::int32_t width, const Work& work) {
        Share(rowCount, width, {&work, [](const void* self, std::int32_t first, std::int32_t end) {
                                    (*static_cast<const Work*>(self))(first, end);
                                }});
    }

    /// The fewest pixels that are shared out.
    static constexpr std::int64_t DefaultLeastPixels = 1 << 17;
    static std::int64_t GetLeastPixels() noexcept;
    static void SetLeastPixels(std::int64_t count) noexcept;

    /// Something to be called, without a copy of it.
    struct TWork {
        const void* Self;
        void (*Call)(const void* self, std::int32_t first, std::int32_t end);

        void operator()(std::int32_t first, std::int32_t end) const { Call(Self, first, end); }
    };

private:
    static void Share(std::int32_t rowCount, std::int32_t width, TWork work);
};

} // namespace lmx
