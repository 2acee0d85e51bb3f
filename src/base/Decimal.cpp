#include "base/Decimal.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace {

template<typename Number>
std::optional<Number> read(QStringView text)
{
    const QByteArray bytes = text.toUtf8();
    std::string_view digits(bytes.constData(), static_cast<size_t>(bytes.size()));
    if (digits.starts_with('+') && !digits.starts_with("+-")) {
        digits.remove_prefix(1);
    }
    Number value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<qint64> readInteger(QStringView text)
{
    return read<qint64>(text);
}

std::optional<double> readDecimal(QStringView text)
{
    const auto value = read<double>(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

double parseDecimal(const QString& text)
{
    return readDecimal(text).value_or(0);
}

QString decimalText(double value)
{
    std::array<char, 32> buffer{};
    // Left to itself, to_chars writes 100000 as 1e+05, which is shorter.
    const double size = std::abs(value);
    const bool isPlain = size == 0 || (size >= 1e-4 && size < 1e16);
    const auto [end, error] =
        isPlain ? std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::fixed)
                : std::to_chars(buffer.begin(), buffer.end(), value);
    QString text = QString::fromLatin1(buffer.data(), end - buffer.data());
    if (!std::isfinite(value) || text.contains(QLatin1Char('.'))) {
        return text;
    }
    const qsizetype exponent = text.indexOf(QLatin1Char('e'));
    return text.insert(exponent < 0 ? text.size() : exponent, QStringLiteral(".0"));
}

QString boolText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}
