#pragma once
#include <base/Locale.h>
#include <model/Subtitle.h>
#include <QJsonValue>
#include <QList>
#include <QUrl>

/// Reads one record of a search answer, whatever is missing in it.
struct RestRecord
{
    bool isReadable = false;
    QList<SubtitlePtr> subtitles; // one a file; a record may have none

    /// What `Subtitle::service` says of these results.
    static QString service();
    /// `base` is that of the service that answered, `locale` the one that languages are named in. Any thread.
    static RestRecord read(const QJsonValue &record, const QUrl &base, const Locale &locale);
};

/// A text of a server as one line that can be shown: no control or direction characters, at most `maxLength`
/// long.
QString plainLine(const QString &text, qsizetype maxLength);
