#pragma once
#include <base/Locale.h>
#include <base/Result.h>
#include <model/Subtitle.h>
#include <QJsonValue>
#include <QList>
#include <QUrl>

#include <stop_token>

/// One page of a search answer. Any thread.
struct RestPage
{
    QList<SubtitlePtr> subtitles;
    QByteArray fingerprint; // of the records; equal for a repeated page
    int records = 0;
    int page = 1;
    int totalPages = 0;
    qint64 totalCount = 0;

    /// The value of `Subtitle::service` in these results.
    static QString service();
    /// `base` is the answering service's, `locale` that of language names. An Error when it is not a search
    /// answer or no record can be read. Stops early on request; the result is then useless.
    static Result<RestPage> read(const QByteArray &json, const QUrl &base, const Locale &locale,
                                 const std::stop_token &stop = {});
    /// The subtitles of one record, one per file; missing members are tolerated. None when it is no record.
    static std::optional<QList<SubtitlePtr>> record(const QJsonValue &value, const QUrl &base,
                                                    const Locale &locale);
};

/// A server's text as one displayable line: no control or direction characters, at most `maxLength` long.
QString plainLine(const QString &text, qsizetype maxLength);
