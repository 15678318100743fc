#pragma once
#include "CatalogueFixture.h"

#include <sources/catalogue/CatalogueService.h>

#include <mutex>
#include <thread>

using Presence = CataloguePlace::Presence;

/// The video that the fixture's catalogue has an exact subtitle for.
extern const QString Hash;
inline constexpr quint64 Size = 4096;

/// Two catalogues below a sandbox: a starter with two films, and a place for the person's own.
class CatalogueHome final
{
public:
    explicit CatalogueHome(const Sandbox &sandbox);

    /// Writes the starter anew, removes the own one and forgets what the main queue still held.
    void reset() const;
    const QString &starter() const { return m_starter; }
    const QString &own() const { return m_own; }

    /// A service over both, or over `places`; its downloads land in the sandbox.
    std::shared_ptr<CatalogueService> service() const;
    std::shared_ptr<CatalogueService> service(const QList<CataloguePlace> &places) const;

private:
    const Sandbox &m_sandbox;
    QString m_starter;
    QString m_own;
};

/// The answers that arrived, on whatever thread.
class Answers final
{
public:
    SubtitleService::QueryCompletion completion();
    qsizetype count() const;
    Result<QueryResult> last() const;
    std::thread::id lastThread() const;

private:
    mutable std::mutex m_mutex;
    QList<Result<QueryResult>> m_results;
    QList<std::thread::id> m_threads;
};

QList<Arg> textQuery(const QString &text, const QString &language = QStringLiteral("eng"));
QList<Arg> videoQuery(const QString &hash, quint64 size, const QString &language = QStringLiteral("eng"));

/// Asks and waits. The releases found; or the error's sentence after "error: ".
QStringList ask(SubtitleService &service, const QList<Arg> &args);
/// Asks and waits for the results; none when it failed.
QList<SubtitlePtr> found(SubtitleService &service, const QList<Arg> &args);
/// The first of them; null when there is none.
SubtitlePtr firstOf(SubtitleService &service, const QList<Arg> &args);
/// Downloads and waits.
Result<QUrl> fetch(SubtitleService &service, const SubtitlePtr &subtitle);
