#pragma once

#include <lmx/Graphics/lmxFont32.h>
#include <lmx/Runtime/lmxGeometry.h>

#include <QImage>
#include <QString>

#include <cstddef>
#include <functional>
#include <unordered_map>
#include <utility>

// Letters are drawn and measured by Qt, which takes long, and a view paints the same texts again and again. What was
// made of a text lately is kept, on the application's thread alone.

namespace lmx {

/// A text as it is drawn: its font, how it is laid out, and the part that is seen.
struct TTextKey {
    QString Text;
    TFont32 Font; ///< its colour does not count: make it black
    int Level = 0;
    unsigned Flags = 0;
    TSize Box;  ///< that it is laid out in
    TRect Seen; ///< counted from the corner of the box

    friend bool operator==(const TTextKey&, const TTextKey&) = default;
};

struct TTextKeyHash {
    std::size_t operator()(const TTextKey& key) const;
};

/// The cover of the pixels by letters, 255 where one covers a pixel whole, without empty margins; null without any.
struct TTextMask {
    QImage Cover;
    TPoint Place; ///< of its top left pixel, counted from the part that is seen
};

struct TTextMeasures {
    int Width = 0;
    int Height = 0;
    int Ascent = 0;
};

/// What was asked for lately, up to a number of bytes. What was not asked for while as much again came is forgotten.
template<class Value>
class TTextCache {
public:
    explicit TTextCache(std::size_t bytes) : FHalf(bytes / 2) {}

    /// What `make()` gives, kept or new; `bytesOf(value)` is what a new one takes. The reference lasts until the next
    /// call.
    template<class Make, class BytesOf>
    const Value& Get(const TTextKey& key, Make make, BytesOf bytesOf) {
        if (const auto found = FRecent.find(key); found != FRecent.end())
            return found->second;
        auto older = FOlder.extract(key);
        Value value = older ? std::move(older.mapped()) : make();
        const std::size_t bytes = sizeof(TTextKey) + 2 * static_cast<std::size_t>(key.Text.size()) + bytesOf(value);
        if (FRecentBytes + bytes > FHalf) {
            FOlder = std::exchange(FRecent, {});
            FRecentBytes = 0;
        }
        FRecentBytes += bytes;
        return FRecent.emplace(key, std::move(value)).first->second;
    }
    void Clear() {
        FRecent.clear();
        FOlder.clear();
        FRecentBytes = 0;
    }
    std::size_t Count() const { return FRecent.size() + FOlder.size(); }

private:
    using TMap = std::unordered_map<TTextKey, Value, TTextKeyHash>;

    std::size_t FHalf;
    std::size_t FRecentBytes = 0;
    TMap FRecent;
    TMap FOlder;
};

/// A mask of `key`, kept or made by `make`, which gives the cover of all that is seen.
TTextMask TextMaskOf(const TTextKey& key, const std::function<QImage()>& make);
/// Measures of a text in a font, kept or made by `make`.
TTextMeasures TextMeasuresOf(const TFont32& font, int level, const QString& text,
                             const std::function<TTextMeasures()>& make);

} // namespace lmx
