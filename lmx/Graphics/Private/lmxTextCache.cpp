#include <lmx/Graphics/Private/lmxTextCache.h>

#include <QGuiApplication>
#include <QPointer>
#include <QThread>

#include <algorithm>

namespace lmx {

namespace {

constexpr std::size_t MaskBytes = std::size_t{8} << 20;
constexpr std::size_t MeasureBytes = std::size_t{2} << 20;

/// The rows and columns of a picture in which there is anything.
QRect InkOf(const QImage& cover) {
    int left = cover.width();
    int right = -1;
    int top = -1;
    int bottom = -1;
    const auto isInk = [](uchar value) { return value != 0; };
    for (int y = 0; y < cover.height(); ++y) {
        const uchar* begin = cover.constScanLine(y);
        const uchar* end = begin + cover.width();
        const uchar* first = std::find_if(begin, end, isInk);
        if (first == end)
            continue;
        const uchar* last = end;
        while (!isInk(*--last)) {
        }
        left = std::min(left, static_cast<int>(first - begin));
        right = std::max(right, static_cast<int>(last - begin));
        top = top < 0 ? y : top;
        bottom = y;
    }
    return {QPoint(left, top), QPoint(right, bottom)};
}

TTextMask Trimmed(const QImage& cover) {
    const QRect ink = InkOf(cover);
    if (ink.isEmpty())
        return {};
    return {cover.copy(ink), TPoint(ink.topLeft())};
}

/// Both caches; empty again when the application has other fonts, or is another one.
class TCaches {
public:
    /// Nil on other threads, and without an application.
    static TCaches* Get() {
        auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
        if (!application || QThread::currentThread() != application->thread())
            return nullptr;
        static TCaches caches;
        if (caches.FApplication != application)
            caches.Follow(application);
        return &caches;
    }

    TTextCache<TTextMask> Masks{MaskBytes};
    TTextCache<TTextMeasures> Measures{MeasureBytes};

private:
    void Follow(QGuiApplication* application) {
        Clear();
        FApplication = application;
        QObject::connect(application, &QGuiApplication::fontDatabaseChanged, application, [this] { Clear(); });
    }
    void Clear() {
        Masks.Clear();
        Measures.Clear();
    }

    QPointer<QGuiApplication> FApplication;
};

} // namespace

std::size_t TTextKeyHash::operator()(const TTextKey& key) const {
    return qHashMulti(0, key.Text, key.Font.Name, key.Font.Size, key.Font.Height, key.Font.Ratio,
                      key.Font.Styles.Bits(), key.Level, key.Flags, key.Box.cx, key.Box.cy, key.Seen.Left, key.Seen.Top,
                      key.Seen.Right, key.Seen.Bottom);
}

TTextMask TextMaskOf(const TTextKey& key, const std::function<QImage()>& make) {
    TCaches* caches = TCaches::Get();
    if (!caches)
        return Trimmed(make());
    return caches->Masks.Get(
        key, [&] { return Trimmed(make()); },
        [](const TTextMask& mask) { return static_cast<std::size_t>(mask.Cover.sizeInBytes()); });
}

TTextMeasures TextMeasuresOf(const TFont32& font, int level, const QString& text,
                             const std::function<TTextMeasures()>& make) {
    TCaches* caches = TCaches::Get();
    if (!caches)
        return make();
    TTextKey key;
    key.Text = text;
    key.Font = font;
    key.Font.Color = clBlack;
    key.Level = level;
    return caches->Measures.Get(key, make, [](const TTextMeasures&) { return sizeof(TTextMeasures); });
}

} // namespace lmx
