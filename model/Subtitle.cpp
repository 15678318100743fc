#include "Subtitle.h"

#include <base/LocalizedString.h>
#include <QLocale>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace
{
QString filmName(const Subtitle &subtitle)
{
    if (subtitle.title.isEmpty())
        return {};
    QString name = subtitle.title;
    if (subtitle.season && subtitle.episode) {
        name += QStringLiteral(" S%1E%2")
                    .arg(*subtitle.season, 2, 10, QLatin1Char('0'))
                    .arg(*subtitle.episode, 2, 10, QLatin1Char('0'));
    }
    if (subtitle.year)
        name += QStringLiteral(" (%1)").arg(*subtitle.year);
    return name;
}
} // namespace

QString Subtitle::detailString() const
{
    QStringList parts;
    const auto add = [&parts](const QString &part) {
        if (!part.isEmpty())
            parts += part;
    };
    const QLocale locale;
    add(filmName(*this));
    if (matchesHash)
        add(String::localize(u"matches this file"_s));
    if (framesPerSecond && *framesPerSecond > 0)
        add(String::fill(String::localize(u"%@ fps"_s), {locale.toString(*framesPerSecond, 'g', 5)}));
    if (downloads)
        add(String::fill(String::localize(u"%@ downloads"_s), {locale.toString(*downloads)}));
    if (hearingImpaired)
        add(String::localize(u"hearing impaired"_s));
    if (foreignPartsOnly)
        add(String::localize(u"foreign parts only"_s));
    if (machineTranslated)
        add(String::localize(u"machine translated"_s));
    return parts.join(QStringLiteral(" · "));
}
