#include <lmx/DataSources/Private/lmxUnitText.h>

#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <QHash>
#include <QStringList>

#include <cmath>

namespace lmx {

namespace {

constexpr qsizetype LongestText = 100; // of texts with a meaning
constexpr qsizetype MostFactors = 12;

struct TAtom {
    const char* Names; ///< folded, between blanks
    const char* Base;  ///< measure, in base units
    double Factor = 1;
    double Offset = 0;
};

// Atoms that others are made of come first.
constexpr TAtom Atoms[] = {
    {"k degk degreek degreesk kelvin", "K"},
    {"c degc degreec degreesc celsius degcelsius degreecelsius degreescelsius °c", "K", 1, CelsiusZero},
    {"f degf degreef degreesf fahrenheit degfahrenheit degreefahrenheit degreesfahrenheit °f", "K", 1 / 1.8,
     459.67 / 1.8},
    {"m meter meters metre metres gpm", "m"},
    {"km", "m", 1000},
    {"cm", "m", 0.01},
    {"mm", "m", 0.001},
    {"s sec secs second seconds", "s"},
    {"min minute minutes", "s", 60},
    {"h hr hrs hour hours", "s", 3600},
    {"d day days", "s", 86'400},
    {"month months mon", "s"},
    {"kg kilogram kilograms", "kg"},
    {"g gram grams", "kg", 0.001},
    {"mg", "kg", 1e-6},
    {"mol mole moles", "mol"},
    {"mmol", "mol", 0.001},
    {"pa pascal pascals", "kg m-1 s-2"},
    {"hpa hectopascal hectopascals mb mbar mbars millibar millibars", "kg m-1 s-2", 100},
    {"kpa", "kg m-1 s-2", 1000},
    {"dbar decibar decibars", "kg m-1 s-2", 10'000},
    {"bar", "kg m-1 s-2", 100'000},
    {"n newton newtons", "kg m s-2"},
    {"j joule joules", "kg m2 s-2"},
    {"w watt watts", "kg m2 s-3"},
    {"% percent", "", 0.01},
    {"fraction proportion", ""},
    {"psu ppt ‰", "", 0.001},
    {"ppm ppmv", "", 1e-6},
    {"ppb ppbv", "", 1e-9},
};

bool IsMonth(const QString& name) {
    return name.startsWith(QStringLiteral("mon"));
}

TMeasure ParseMeasure(const QString& text) {
    static const QHash<QString, TBaseUnit> bases{{"m", TBaseUnit::buMetre},
                                                 {"kg", TBaseUnit::buKilogram},
                                                 {"s", TBaseUnit::buSecond},
                                                 {"K", TBaseUnit::buKelvin},
                                                 {"mol", TBaseUnit::buMole}};
    TMeasure measure;
    for (const QString& factor : text.split(u' ', Qt::SkipEmptyParts)) {
        qsizetype length = 0;
        while (length < factor.size() && factor[length].isLetter())
            ++length;
        std::int32_t exponent = 1;
        TryStrToInt(QStringView(factor).mid(length), exponent);
        measure = measure * TMeasure::Of(bases.value(factor.left(length)), exponent);
    }
    return measure;
}

const QHash<QString, TUnit>& KnownUnits() {
    static const QHash<QString, TUnit> units = [] {
        QHash<QString, TUnit> made;
        for (const TAtom& atom : Atoms)
            for (const QString& name : QString::fromUtf8(atom.Names).split(u' '))
                made.insert(name, {TMeasure::Parse(atom.Base), atom.Factor, atom.Offset});
        return made;
    }();
    return units;
}

bool IsSign(QChar c) {
    return c == u'-' || c == u'+';
}

bool IsAsciiDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

/// Where the exponent at the end of a factor begins; its size if there is none.
qsizetype ExponentStart(const QString& factor) {
    qsizetype start = factor.size();
    while (start > 0 && IsAsciiDigit(factor[start - 1]))
        --start;
    if (start == factor.size())
        return start;
    return start > 0 && IsSign(factor[start - 1]) ? start - 1 : start;
}

/// A number: "1", "0.001", "1e-3", "10-3" (of "10^-3").
std::optional<double> ParseNumber(const QString& factor) {
    double number = 0;
    if (TryStrToFloat(factor, number, TFormatSettings::Invariant()))
        return number;
    if (factor.startsWith(QStringLiteral("10")) && factor.size() > 2 && IsSign(factor[2])) {
        std::int32_t exponent = 0;
        if (TryStrToInt(QStringView(factor).mid(2), exponent) && std::abs(exponent) <= 30)
            return std::pow(10.0, exponent);
    }
    return std::nullopt;
}

/// Multiplies by a factor with its exponent; false if it is not known.
bool Multiply(TUnit& product, const QString& factor, bool isAlone) {
    if (const auto number = ParseNumber(factor)) {
        product.Factor *= *number;
        return std::isfinite(product.Factor) && product.Factor > 0;
    }
    const qsizetype start = ExponentStart(factor);
    std::int32_t exponent = 1;
    if (start < factor.size() && !TryStrToInt(QStringView(factor).mid(start), exponent))
        return false;
    const auto atom = KnownUnits().constFind(factor.left(start));
    if (atom == KnownUnits().constEnd() || exponent < -9 || exponent > 9)
        return false;
    if (IsMonth(factor)) {
        if (exponent != -1)
            return false;
        product.IsByMonth = true;
    }
    product.Measure = product.Measure * atom->Measure.Power(exponent);
    product.Factor *= std::pow(atom->Factor, exponent);
    if (isAlone && exponent == 1)
        product.Offset = atom->Offset;
    return true;
}

/// "m" as "m-1", "s2" as "s-2", "m-2" as "m2"; "10" as "10-1", of numbers the only one that is understood then.
QString Inverted(const QString& factor) {
    const qsizetype start = ExponentStart(factor);
    QString exponent = factor.mid(start);
    if (exponent.isEmpty() || IsAsciiDigit(factor[0]))
        return factor + QStringLiteral("-1");
    if (exponent.startsWith(u'-'))
        return factor.left(start) + (exponent == QStringLiteral("-1") ? QString() : exponent.mid(1));
    if (exponent.startsWith(u'+'))
        exponent = exponent.mid(1);
    return factor.left(start) + u'-' + exponent;
}

bool HasNegativeExponent(const QString& factor) {
    const qsizetype start = ExponentStart(factor);
    return start > 0 && start < factor.size() && factor[start] == u'-';
}

bool IsDegreeWord(const QString& word) {
    return word == QStringLiteral("deg") || word == QStringLiteral("degree") || word == QStringLiteral("degrees");
}

} // namespace

TMeasure TMeasure::Parse(const char* text) {
    return ParseMeasure(QString::fromLatin1(text));
}

TMeasure TMeasure::Power(int exponent) const {
    TMeasure power = *this;
    for (int& each : power.FExponents)
        each *= exponent;
    return power;
}

QString FoldUnit(const QString& text) {
    QString simple = text.left(LongestText).toLower();
    simple.remove(QStringLiteral("**")).remove(u'^').remove(u'_').remove(u'(').remove(u')');
    simple.replace(u'*', u' ').replace(u'·', u' ').replace(QStringLiteral("/"), QStringLiteral(" / "));
    for (qsizetype i = 1; i < simple.size(); ++i) // a dot after a letter or an exponent is no decimal point
        if (simple[i] == u'.' && (i + 1 == simple.size() || !IsAsciiDigit(simple[i + 1])))
            simple[i] = u' ';
    QStringList factors;
    bool isBelow = false; // all that follows a stroke, but what has an exponent below zero of its own
    bool isNext = false;
    for (const QString& word : simple.split(u' ', Qt::SkipEmptyParts)) {
        const bool isStroke = word == QStringLiteral("/");
        if (isStroke)
            isBelow = true;
        else if (!factors.isEmpty() && IsDegreeWord(factors.last()) && !isBelow)
            factors.last() += word;
        else
            factors += isNext || (isBelow && !HasNegativeExponent(word)) ? Inverted(word) : word;
        isNext = isStroke;
    }
    return factors.join(u' ');
}

bool SameUnits(const QString& a, const QString& b) {
    return FoldUnit(a) == FoldUnit(b);
}

std::optional<TUnit> ParseUnit(const QString& text) {
    if (text.size() > LongestText)
        return std::nullopt;
    QString folded = FoldUnit(text);
    if (folded == QStringLiteral("0 - 1") || folded == QStringLiteral("0-1"))
        folded = QStringLiteral("1");
    for (const char* const suffix : {" of water equivalent", " water equivalent", " of water"})
        if (folded.endsWith(QLatin1String(suffix)))
            folded.chop(static_cast<int>(qstrlen(suffix)));
    const QStringList factors = folded.split(u' ', Qt::SkipEmptyParts);
    if (factors.isEmpty() || factors.size() > MostFactors)
        return std::nullopt;
    TUnit unit;
    for (const QString& factor : factors)
        if (!Multiply(unit, factor, factors.size() == 1))
            return std::nullopt;
    return unit;
}

} // namespace lmx
