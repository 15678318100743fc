#include "Subtitle.h"

#include <platform/Bundle.h>
#include <QLocale>
#include <QStringList>

namespace
{
QString localized(const char *text)
{
    return Bundle::main().localizedString(QString::fromUtf8(text));
}

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
        add(localized("matches this file"));
    if (framesPerSecond && *framesPerSecond > 0)
        add(localized("%@ fps").replace(QLatin1String("%@"), locale.toString(*framesPerSecond, 'g', 5)));
    if (downloads)
        add(localized("%@ downloads").replace(QLatin1String("%@"), locale.toString(*downloads)));
    if (hearingImpaired)
        add(localized("hearing impaired"));
    if (foreignPartsOnly)
        add(localized("foreign parts only"));
    if (machineTranslated)
        add(localized("machine translated"));
    return parts.join(QStringLiteral(" · "));
}
