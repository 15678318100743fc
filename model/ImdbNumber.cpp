#include "ImdbNumber.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

std::optional<qint64> imdbNumber(const QString &id)
{
    constexpr qsizetype MaxLength = 256; // a web address at most
    if (id.size() > MaxLength)
        return std::nullopt;
    static const QRegularExpression address(u"^https?://[^/]*/(?:[a-z-]+/)?title/(tt\\d+)(?:[/?#].*)?$"_s);
    static const QRegularExpression plain(u"^(?:tt)?0*([1-9]\\d{0,8})$"_s);
    QString text = id.trimmed().toLower();
    if (const auto match = address.match(text); match.hasMatch())
        text = match.captured(1);
    const auto match = plain.match(text);
    return match.hasMatch() ? std::optional(match.captured(1).toLongLong()) : std::nullopt;
}

QString imdbId(qint64 number)
{
    return u"tt%1"_s.arg(number, 7, 10, QLatin1Char('0'));
}
