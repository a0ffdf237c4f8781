#include <lmx/Graphics/lmxVectorDoc.h>

#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QStringList>

namespace lmx {

namespace {

constexpr int DigitsOfEveryDouble = 17;

// The short form where that is the number itself, which it nearly always is.
QString NumberToString(double number) {
    const TFormatSettings settings = TFormatSettings::Invariant();
    QString text = FloatToStr(number, settings);
    double restored = 0;
    if (TryStrToFloat(text, restored, settings) && restored == number)
        return text;
    return FloatToGeneral(number, DigitsOfEveryDouble, settings);
}

TFloatPoint StringToFloatPoint(QStringView text) {
    const TFormatSettings settings = TFormatSettings::Invariant();
    const qsizetype comma = text.indexOf(u',');
    TFloatPoint point;
    if (comma < 0 || !TryStrToFloat(text.first(comma), point.X, settings) ||
        !TryStrToFloat(text.sliced(comma + 1), point.Y, settings))
        throw EConvertError(QStringLiteral("Invalid points text"));
    return point;
}

} // namespace

QString FloatPointsToString(std::span<const TFloatPoint> points) {
    QString text;
    for (const TFloatPoint& point : points) {
        if (!text.isEmpty())
            text += u' ';
        text += NumberToString(point.X) + u',' + NumberToString(point.Y);
    }
    return text;
}

TFloatPoints StringToFloatPoints(const QString& text) {
    TFloatPoints points;
    for (const QStringView piece : QStringView(text).split(u' ', Qt::SkipEmptyParts))
        points.push_back(StringToFloatPoint(piece));
    return points;
}

} // namespace lmx
