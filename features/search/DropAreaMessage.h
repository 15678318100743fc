#pragma once
#include <model/ServiceStatus.h>
#include <QString>
#include <QStringList>

/// The texts of the drop area: a headline, and what can be done below it.
struct DropAreaMessage
{
    QString headline;
    QString hint;

    bool operator==(const DropAreaMessage &) const = default;
};

/// The language of one search.
struct SearchLanguage
{
    QString preferredCode; // the setting when it started, empty when none is stored
    QString sentCode;      // the three-letter code that was sent
};

/// The text of an idle window, with the names of installed companion applications.
DropAreaMessage dropPrompt(const QStringList &companions = {});
/// The text after a search for `text` found nothing.
DropAreaMessage nothingFound(const QString &text, const SearchLanguage &language);
/// The text while the words of a file's name are searched for, after its hash found nothing.
DropAreaMessage wordsSearch(const QString &words);
/// What a search without the network misses, and how to change that.
QString offlineHint();
/// Why the rows come only from this machine; empty when they do not.
QString localRowsNotice(const ServiceStatus::Value &status);
/// The notice above rows that are not all results; empty when they are.
QString leftOutNotice(qint64 shown, qint64 leftOut);
/// The notice while a search waits because of too many requests.
QString pauseNotice(std::chrono::seconds pause);
/// The notice that the services do not know the preferred language and English was searched instead; empty
/// when they know it.
QString languageNotice(const SearchLanguage &language);
