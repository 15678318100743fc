#pragma once
#include <model/ServiceStatus.h>
#include <QString>
#include <QStringList>

/// What the drop area says: a headline, and below it what can be done.
struct DropAreaMessage
{
    QString headline;
    QString hint;

    bool operator==(const DropAreaMessage &) const = default;
};

/// The invitation of an idle window, which also names the companion applications that are installed.
DropAreaMessage dropPrompt(const QStringList &companions = {});
/// What is said after a search for `text` found nothing. `preferredCode` is the language as stored in the
/// settings, `searchedLanguage` the three-letter code that was sent.
DropAreaMessage nothingFound(const QString &text, const QString &preferredCode,
                             const QString &searchedLanguage);
/// What is said while a file that no hash has found is searched for by the words of its name.
DropAreaMessage wordsSearch(const QString &words);
/// What a search misses that goes no further than this machine, and how that is changed.
QString offlineHint();
/// That the rows are those of this machine alone, and why; empty when they are not.
QString localRowsNotice(const ServiceStatus::Value &status);
/// Said above rows that are not all there are; empty where they are.
QString leftOutNotice(qint64 shown, qint64 leftOut);
/// Said while a search waits because the service gets too many requests.
QString pauseNotice(std::chrono::seconds pause);
/// That the services do not know the preferred language and English was searched instead; empty when they do.
QString languageNotice(const QString &preferredCode, const QString &searchedLanguage);
