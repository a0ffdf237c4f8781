#include <lmx/Runtime/lmxFormat.h>

#include <lmx/Runtime/Private/lmxQuote.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxNumberText.h>

#include <algorithm>
#include <cstddef>
#include <optional>

namespace lmx {

namespace {

constexpr int LargestNumber = 1000; // of a width, a precision or an index: formats come from documents, too
constexpr int DefaultDecimals = 2;
constexpr int DefaultDigits = 15;

struct TPlaceHolder {
    std::optional<int> Index;
    std::optional<int> Width;
    std::optional<int> Precision;
    bool AlignLeft = false;
    char16_t Type = 0;
};

/// One run over a format.
class TFormatter {
public:
    TFormatter(QStringView format, std::initializer_list<TFormatArgument> arguments, const TFormatSettings& settings)
        : FFormat(format),
          FArguments(arguments),
          FSettings(settings) {}

    QString Run() {
        QString result;
        while (FAt < FFormat.size()) {
            const QChar c = FFormat[FAt++];
            if (c != u'%')
                result += c;
            else if (FAt < FFormat.size() && FFormat[FAt] == u'%')
                result += FFormat[FAt++];
            else
                result += Padded(ReadPlaceHolder());
        }
        return result;
    }

private:
    [[noreturn]] void Refuse() const {
        throw EConvertError(QStringLiteral("Format '") + Quotable(FFormat) +
                            QStringLiteral("' invalid or incompatible with argument"));
    }

    bool Take(char16_t c) {
        if (FAt == FFormat.size() || FFormat[FAt] != c)
            return false;
        ++FAt;
        return true;
    }

    std::optional<int> ReadNumber() {
        std::optional<int> number;
        for (; FAt < FFormat.size() && FFormat[FAt] >= u'0' && FFormat[FAt] <= u'9'; ++FAt) {
            number = number.value_or(0) * 10 + FFormat[FAt].digitValue();
            if (*number > LargestNumber)
                Refuse();
        }
        return number;
    }

    TPlaceHolder ReadPlaceHolder() {
        TPlaceHolder holder;
        holder.Width = ReadNumber();
        if (holder.Width && Take(u':')) {
            holder.Index = holder.Width;
            holder.Width.reset();
        }
        if (!holder.Width) {
            holder.AlignLeft = Take(u'-');
            holder.Width = ReadNumber();
        }
        if (Take(u'.')) {
            holder.Precision = ReadNumber();
            if (!holder.Precision)
                Refuse();
        }
        if (FAt == FFormat.size())
            Refuse();
        holder.Type = FFormat[FAt++].toLower().unicode();
        return holder;
    }

    const TFormatArgument& NextArgument(const TPlaceHolder& holder) {
        if (holder.Index)
            FNext = static_cast<std::size_t>(*holder.Index);
        if (FNext >= FArguments.size())
            throw EConvertError(QStringLiteral("No argument for format '") + Quotable(FFormat) + u'\'');
        return FArguments.begin()[FNext++];
    }

    template<class Value>
    const Value& ValueOf(const TFormatArgument& argument) const {
        const Value* value = std::get_if<Value>(&argument.GetValue());
        if (!value)
            Refuse();
        return *value;
    }

    QString Converted(const TPlaceHolder& holder) {
        switch (holder.Type) {
        case u'd':
            return WithDigits(IntToStr(ValueOf<std::int64_t>(NextArgument(holder))), holder.Precision.value_or(0));
        case u'f':
            return FloatToFixed(ValueOf<extended>(NextArgument(holder)), holder.Precision.value_or(DefaultDecimals),
                                FSettings);
        case u'g':
            return FloatToGeneral(ValueOf<extended>(NextArgument(holder)), holder.Precision.value_or(DefaultDigits),
                                  FSettings);
        case u's': {
            const QString& text = ValueOf<QString>(NextArgument(holder));
            return holder.Precision ? text.left(*holder.Precision) : text;
        }
        default:
            Refuse();
        }
    }

    static QString WithDigits(const QString& number, qsizetype digits) {
        const qsizetype sign = number.startsWith(u'-') ? 1 : 0;
        return number.left(sign) + number.sliced(sign).rightJustified(digits, u'0');
    }

    QString Padded(const TPlaceHolder& holder) {
        const QString text = Converted(holder);
        const int width = holder.Width.value_or(0);
        return holder.AlignLeft ? text.leftJustified(width) : text.rightJustified(width);
    }

    QStringView FFormat;
    std::initializer_list<TFormatArgument> FArguments;
    const TFormatSettings& FSettings;
    qsizetype FAt = 0;
    std::size_t FNext = 0;
};

} // namespace

QString Format(QStringView format, std::initializer_list<TFormatArgument> arguments, const TFormatSettings& settings) {
    return TFormatter(format, arguments, settings).Run();
}

} // namespace lmx
