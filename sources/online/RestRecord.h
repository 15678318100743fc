#pragma once
#include <base/Locale.h>
#include <model/Subtitle.h>
#include <QJsonValue>
#include <QList>
#include <QUrl>

/// Parses one record of a search answer; missing members are tolerated.
struct RestRecord
{
    bool isReadable = false;
    QList<SubtitlePtr> subtitles; // one per file; may be empty

    /// The value of `Subtitle::service` in these results.
    static QString service();
    /// `base` is the answering service's, `locale` that of language names. Any thread.
    static RestRecord read(const QJsonValue &record, const QUrl &base, const Locale &locale);
};

/// A server's text as one displayable line: no control or direction characters, at most `maxLength` long.
QString plainLine(const QString &text, qsizetype maxLength);
