#include "CatalogueCommands.h"

#include "CatalogueImport.h"
#include "CatalogueReports.h"

#include <base/TerminalText.h>
#include <media/MovieHash.h>
#include <sources/catalogue/CatalogueSearch.h>
#include <sources/combined/Ranking.h>

#include <QDir>
#include <QElapsedTimer>
#include <QUrl>

#include <csignal>
#include <iostream>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
using namespace CatalogueCommands;

/// Makes names from archives and files safe for the terminal.
std::string shown(const QString &text)
{
    return terminalText(text).toStdString();
}

int failed(const base::Error &error)
{
    std::cerr << "plovendix-catalogue: " << shown(error.localizedDescription);
    if (!error.detail.isEmpty())
        std::cerr << " (" << shown(error.detail) << ')';
    std::cerr << '\n';
    return Failure;
}

void printRow(const QStringList &columns)
{
    QStringList plain;
    for (const QString &column : columns)
        plain += terminalText(column).simplified(); // a tab in a name would make two columns
    std::cout << plain.join(u'\t').toStdString() << '\n';
}

volatile std::sig_atomic_t interrupted = 0;

void noteInterrupt(int signal)
{
    interrupted = 1;
    std::signal(signal, SIG_DFL);
}

/// From now on Ctrl+C, or the end of the session, asks to stop; a second one ends the program.
void listenForInterrupts()
{
    std::signal(SIGINT, noteInterrupt);
    std::signal(SIGTERM, noteInterrupt);
}

/// Shows the progress of an import on standard error: one updated line on a terminal, one line every few
/// seconds otherwise.
class ImportProgress final
{
public:
    explicit ImportProgress(bool isQuiet) : m_isQuiet(isQuiet) { m_running.start(); }

    void show(const ImportCounts &counts)
    {
        const qint64 interval = m_isTerminal ? 100 : 5000; // milliseconds
        const qint64 now = m_running.elapsed();
        if (m_isQuiet || now - m_lastShown < interval)
            return;
        m_lastShown = now;
        std::cerr << (m_isTerminal ? "\r\x1b[K" : "") << sentence(counts) << (m_isTerminal ? "" : "\n")
                  << std::flush;
    }

    void end(const ImportCounts &counts)
    {
        if (m_isTerminal && m_lastShown > 0)
            std::cerr << "\r\x1b[K";
        for (const QString &problem : counts.problems)
            std::cerr << shown(problem) << '\n';
        if (counts.refused > counts.problems.size())
            std::cerr << "and " << counts.refused - counts.problems.size() << " more that were refused\n";
        if (counts.unlabelled > 0)
            std::cerr << counts.unlabelled << " name no language; --language says which they are in\n";
        std::cerr << sentence(counts) << '\n';
    }

private:
    static std::string sentence(const ImportCounts &counts)
    {
        return std::to_string(counts.files) + " files, " + std::to_string(counts.added) + " added, " +
               std::to_string(counts.known) + " known, " + std::to_string(counts.refused) + " refused";
    }

    const bool m_isQuiet;
    const bool m_isTerminal = ::isatty(STDERR_FILENO) != 0;
    QElapsedTimer m_running;
    qint64 m_lastShown = 0;
};

/// Searches as the program does: `words` are those of the text or of the video's name.
Result<QList<SubtitlePtr>> found(const CatalogueOptions &options, const QString &words,
                                 const std::optional<VideoHash> &video)
{
    CatalogueRequest request{video, words, std::nullopt};
    if (!options.language.isEmpty())
        request.language = options.language;
    const Result<QueryResult> result =
        searchCatalogues({{options.path, CataloguePlace::Presence::Required}}, CatalogueErrors(), request);
    if (!result)
        return result.error();
    const QList<SubtitlePtr> rows = result->subtitles.value_or(QList<SubtitlePtr>());
    return ranked(rows, words, RankingPreferences());
}

/// Opens the catalogue for `work`, and prints what keeps either from its end.
int writing(const CatalogueOptions &options, const std::function<int(OwnCatalogue &)> &work)
{
    Result<OwnCatalogue> catalogue = OwnCatalogue::open(options.path);
    if (!catalogue)
        return failed(catalogue.error());
    try {
        return work(catalogue.value());
    } catch (const SQLite::Exception &exception) {
        return failed(catalogue.value().error(exception));
    }
}

/// Removes in batches, and stops between two of them when the person asks to.
int removeAll(OwnCatalogue &catalogue, const QStringList &paths)
{
    constexpr qint64 BatchSources = 500;
    for (const QString &path : paths) {
        const QString absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
        qint64 removed = 0;
        qint64 last = BatchSources;
        for (; !interrupted && last == BatchSources; removed += last)
            last = catalogue.removeBelow(absolute, BatchSources);
        std::cout << removed << " removed: " << shown(absolute) << '\n';
        if (last == BatchSources)
            return Interrupted;
    }
    catalogue.checkpoint();
    return Success;
}
} // namespace

int CatalogueCommands::add(const CatalogueOptions &options)
{
    return writing(options, [&](OwnCatalogue &catalogue) {
        listenForInterrupts();
        ImportProgress progress(options.isQuiet);
        CatalogueImport import(catalogue, options.language, [&](const ImportCounts &counts) {
            progress.show(counts);
            return !interrupted;
        });
        for (const QString &path : options.arguments) {
            const Result<bool> isDone = import.add(path);
            if (!isDone)
                return failed(isDone.error());
            if (!*isDone) {
                progress.end(import.counts());
                std::cerr << "Stopped. The same command goes on from here.\n";
                return Interrupted;
            }
        }
        progress.end(import.counts());
        return import.counts().refused == 0 ? Success : Failure;
    });
}

int CatalogueCommands::remove(const CatalogueOptions &options)
{
    return writing(options, [&](OwnCatalogue &catalogue) {
        listenForInterrupts();
        return removeAll(catalogue, options.arguments);
    });
}

int CatalogueCommands::list(const CatalogueOptions &options)
{
    qint64 count = 0;
    const auto take = [&](const QStringList &row) {
        printRow(row);
        return ++count != options.limit && bool(std::cout);
    };
    const Result<void> listed = CatalogueReports::list(options.path, options.language, take);
    return listed ? Success : failed(listed.error());
}

int CatalogueCommands::search(const CatalogueOptions &options)
{
    const QString text = options.arguments.join(u' ');
    const QFileInfo file(text);
    std::optional<VideoHash> video;
    if (file.isFile())
        video = movieHash(QUrl::fromLocalFile(file.absoluteFilePath()));
    const QString words = file.isFile() ? file.completeBaseName() : text;
    Result<QList<SubtitlePtr>> rows = found(options, words, video);
    if (rows && rows->isEmpty() && video)
        rows = found(options, words, std::nullopt);
    if (!rows)
        return failed(rows.error());
    const qsizetype limit = options.limit > 0 ? qsizetype(options.limit) : rows->size();
    for (const SubtitlePtr &subtitle : rows->mid(0, limit)) {
        printRow({subtitle->subFileName, subtitle->subLanguageID, subtitle->subFormat, subtitle->title,
                  subtitle->matchesHash ? u"matches this file"_s : QString()});
    }
    return rows->isEmpty() ? Failure : Success;
}

int CatalogueCommands::stats(const CatalogueOptions &options)
{
    const Result<QList<QStringList>> figures = CatalogueReports::figures(options.path);
    if (!figures)
        return failed(figures.error());
    std::cout << "catalogue\t" << shown(options.path) << '\n';
    for (const QStringList &row : *figures)
        printRow(row);
    if (!options.checks)
        return Success;
    return writing(options, [](OwnCatalogue &catalogue) {
        const QStringList faults = catalogue.faults();
        for (const QString &fault : faults)
            printRow({u"fault"_s, fault});
        std::cout << "check\t" << (faults.isEmpty() ? "sound" : "damaged") << '\n';
        return faults.isEmpty() ? Success : Failure;
    });
}

int CatalogueCommands::vacuum(const CatalogueOptions &options)
{
    if (!QFileInfo::exists(options.path))
        return failed(CatalogueStore::error(options.path, u"there is no catalogue yet"_s));
    return writing(options, [](OwnCatalogue &catalogue) {
        const Result<void> done = catalogue.vacuum();
        return done ? Success : failed(done.error());
    });
}
