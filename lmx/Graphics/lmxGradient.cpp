#include <lmx/Graphics/lmxGradient.h>

#include <lmx/Graphics/Private/lmxSortedStops.h>
#include <lmx/Graphics/lmxColorText.h>
#include <lmx/Runtime/Private/lmxKeptResult.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxText.h>

#include <charconv>
#include <cmath>

namespace lmx {

namespace {

constexpr qsizetype ColorTextLength = 9;

[[noreturn]] void RefuseText() {
    throw EConvertError(QStringLiteral("Invalid gradient text"));
}

QString LocationToString(double location) {
    if (std::isnan(location))
        return QStringLiteral("nan");
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, location);
    return QString::fromLatin1(buffer, end.ptr - buffer);
}

double StringToLocation(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    const char* end = bytes.data() + bytes.size();
    double location = 0;
    const auto read = std::from_chars(bytes.data(), end, location);
    if (read.ec != std::errc() || read.ptr != end)
        RefuseText();
    return location;
}

QString StopToString(const TColorStop& stop) {
    return u'(' + LocationToString(stop.Location) + u':' + Color32ToString(stop.Color) + u')';
}

/// One stop without its parentheses.
TColorStop StringToStop(const QString& text) {
    const qsizetype colon = text.size() - ColorTextLength - 1;
    if (colon < 1 || text[colon] != u':')
        RefuseText();
    return {StringToLocation(text.first(colon)), StringToColor32(text.sliced(colon + 1))};
}

std::vector<TColorStop> StringToStops(const QString& text) {
    std::vector<TColorStop> stops;
    if (text.isEmpty())
        return stops;
    if (text.size() < 2 || text.front() != u'(' || text.back() != u')')
        RefuseText();
    const QStringList pieces = text.sliced(1, text.size() - 2).split(QStringLiteral("),("));
    for (const QString& piece : pieces)
        stops.push_back(StringToStop(piece));
    return stops;
}

class TGradient final : public IGradient {
public:
    TGradient() = default;
    explicit TGradient(std::span<const TColorStop> stops) : FColorStops(stops) {}

    TColorStops& GetColorStops() override { return FColorStops; }
    const TColorStops& GetColorStops() const override { return FColorStops; }
    TColor32 GetColor(double position) const override;
    QString ToString() const override;
    void FromString(const QString& text) override;

private:
    TColorStops FColorStops;
    mutable TKeptResult<TSortedStops> FSortedStops;
};

TColor32 TGradient::GetColor(double position) const {
    return FSortedStops.Get(FColorStops.GetChangeCount(), [&] { return TSortedStops(FColorStops); }).GetColor(position);
}

QString TGradient::ToString() const {
    QStringList texts;
    for (const TColorStop& stop : FColorStops)
        texts += StopToString(stop);
    return texts.join(u',');
}

void TGradient::FromString(const QString& text) {
    try {
        FColorStops = StringToStops(Trim(text));
    } catch (const EConvertError&) {
        RefuseText(); // one message, whichever piece of the text is damaged
    }
}

} // namespace

std::shared_ptr<IGradient> TGradientFactory::GetObject() {
    return std::make_shared<TGradient>();
}

std::shared_ptr<IGradient> TGradientFactory::GetObject(const std::shared_ptr<IGradient>& source) {
    if (!source)
        throw EExArgumentNilException(QStringLiteral("TGradientFactory.GetObject"), QStringLiteral("source"));
    return GetObject(std::span<const TColorStop>(source->GetColorStops()));
}

std::shared_ptr<IGradient> TGradientFactory::GetObject(std::span<const TColorStop> stops) {
    return std::make_shared<TGradient>(stops);
}

std::shared_ptr<IGradient> TGradientFactory::GetObject(std::initializer_list<TColorStop> stops) {
    return GetObject(std::span<const TColorStop>(stops));
}

bool TGradientFactory::IsMaker(const IGradient& gradient) {
    return dynamic_cast<const TGradient*>(&gradient) != nullptr;
}

} // namespace lmx
