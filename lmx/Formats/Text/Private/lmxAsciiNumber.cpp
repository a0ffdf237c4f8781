#include <lmx/Formats/Text/Private/lmxAsciiNumber.h>

#include <lmx/Runtime/lmxNumberText.h>

#include <charconv>
#include <cmath>
#include <system_error>

namespace lmx {

namespace {

// Numbers below the smallest are 0; std::from_chars reports them like those above the largest.
template<class Float>
bool TakeTiny(QByteArrayView token, Float& number) {
    return TryStrToFloat(QString::fromLatin1(token), number, TFormatSettings::Invariant());
}

template<class Float>
bool TakeNumber(QByteArrayView& text, Float& value) {
    qsizetype start = 0;
    while (start < text.size() && IsAsciiWhiteSpace(text[start]))
        ++start;
    text = text.sliced(start);
    const bool hasPlus = text.size() > 1 && text.front() == '+' && text[1] != '-';
    const char* first = text.begin() + (hasPlus ? 1 : 0);
    Float number = 0;
    const auto [end, error] = std::from_chars(first, text.end(), number);
    if (error != std::errc{} && !(error == std::errc::result_out_of_range && TakeTiny({first, end}, number)))
        return false;
    if (end != text.end() && !IsAsciiWhiteSpace(*end))
        return false;
    value = number;
    text = text.sliced(end - text.begin());
    return true;
}

} // namespace

void AppendAsciiNumber(QByteArray& text, float value) {
    const float magnitude = std::abs(value);
    const bool isPlain = magnitude == 0 || (magnitude >= 1e-5F && magnitude < 1e15F);
    char buffer[32];
    const auto form = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, form);
    text.append(buffer, end.ptr - buffer);
}

QString AsciiNumber(float value) {
    QByteArray text;
    AppendAsciiNumber(text, value);
    return QString::fromLatin1(text);
}

bool TakeAsciiNumber(QByteArrayView& text, float& value) {
    return TakeNumber(text, value);
}

bool TakeAsciiNumber(QByteArrayView& text, double& value) {
    return TakeNumber(text, value);
}

} // namespace lmx
