#include "CatalogueCommands.h"

#include "CatalogueImport.h"
#include "CatalogueReports.h"
#include "ImportProgress.h"

#include <base/TerminalText.h>
#include <media/MovieHash.h>
#include <sources/catalogue/CatalogueSearch.h>
#include <sources/combined/Ranking.h>

#include <QDir>
#include <QUrl>

#include <iostream>

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

Result<QList<SubtitlePtr>> found(const CatalogueOptions &options, const QString &text,
                                 const QString &videoName, const std::optional<VideoHash> &video)
{
    CatalogueRequest request{video, text, std::nullopt, videoName, Locale::current()};
    if (!options.language.isEmpty())
        request.language = options.language;
    const Result<QueryResult> result =
        searchCatalogues({{options.path, CataloguePlace::Presence::Required}}, CatalogueErrors(), request);
    if (!result)
        return result.error();
    const QList<SubtitlePtr> rows = result->subtitles.value_or(QList<SubtitlePtr>());
    return ranked(rows, videoName, RankingPreferences());
}

/// Removes in batches, and stops between two of them when the person asks to.
bool removeAll(OwnCatalogue &catalogue, const QString &path, qint64 &removed,
               std::optional<base::Error> &error)
{
    constexpr qint64 BatchSources = 500;
    while (!ImportProgress::isInterrupted()) {
        const Result<qint64> count = catalogue.removeBelow(path, BatchSources);
        if (!count) {
            error = count.error();
            return true;
        }
        removed += *count;
        if (*count < BatchSources)
            return true;
    }
    return false;
}
} // namespace

int CatalogueCommands::add(const CatalogueOptions &options, const QStringList &paths)
{
    Result<OwnCatalogue> catalogue = OwnCatalogue::open(options.path);
    if (!catalogue)
        return failed(catalogue.error());
    ImportProgress::listenForInterrupts();
    ImportProgress progress(options.isQuiet ? ImportProgress::Say::OnlyTheEnd
                                            : ImportProgress::Say::Everything);
    CatalogueImport import(catalogue.value(), options.language, [&](const ImportCounts &counts) {
        progress.show(counts);
        return !ImportProgress::isInterrupted();
    });
    for (const QString &path : paths) {
        const Result<CatalogueImport::End> end = import.add(path);
        if (!end)
            return failed(end.error());
        if (*end == CatalogueImport::End::Stopped) {
            progress.end(import.counts());
            std::cerr << "Stopped. The same command goes on from here.\n";
            return Interrupted;
        }
    }
    progress.end(import.counts());
    return import.counts().refused == 0 ? Success : Failure;
}

int CatalogueCommands::remove(const CatalogueOptions &options, const QStringList &paths)
{
    Result<OwnCatalogue> catalogue = OwnCatalogue::open(options.path);
    if (!catalogue)
        return failed(catalogue.error());
    ImportProgress::listenForInterrupts();
    for (const QString &path : paths) {
        qint64 removed = 0;
        std::optional<base::Error> error;
        const QString absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
        const bool isDone = removeAll(catalogue.value(), absolute, removed, error);
        if (error)
            return failed(*error);
        std::cout << removed << " removed: " << shown(absolute) << '\n';
        if (!isDone)
            return Interrupted;
    }
    catalogue.value().checkpoint();
    return Success;
}

int CatalogueCommands::list(const CatalogueOptions &options)
{
    qint64 count = 0;
    const auto take = [&](const CatalogueReports::Line &line) {
        printRow({line.release, line.language, line.format, line.source});
        return ++count != options.limit && bool(std::cout);
    };
    const Result<void> listed = CatalogueReports::list(options.path, options.language, take);
    return listed ? Success : failed(listed.error());
}

int CatalogueCommands::search(const CatalogueOptions &options, const QString &text)
{
    const QFileInfo file(text);
    std::optional<VideoHash> video;
    if (file.isFile())
        video = movieHash(QUrl::fromLocalFile(file.absoluteFilePath()));
    const QString words = file.isFile() ? file.completeBaseName() : text;
    Result<QList<SubtitlePtr>> rows = found(options, words, file.isFile() ? words : QString(), video);
    if (rows && rows->isEmpty() && video)
        rows = found(options, words, words, std::nullopt);
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
    const Result<CatalogueReports::Figures> figures = CatalogueReports::figures(options.path);
    if (!figures)
        return failed(figures.error());
    std::cout << "catalogue\t" << shown(options.path) << "\nbytes\t" << figures->bytes << "\nsubtitles\t"
              << figures->subtitles << "\nfilms\t" << figures->films << "\ntitles\t" << figures->titles
              << "\nvideos\t" << figures->videos << "\nsources\t" << figures->sources << "\nunfinished\t"
              << figures->unfinishedSources << '\n';
    for (const auto &[language, count] : figures->languages)
        printRow({u"language"_s, language, QString::number(count)});
    for (const auto &[format, count] : figures->formats)
        printRow({u"format"_s, format, QString::number(count)});
    if (!options.checks)
        return Success;
    const Result<QStringList> faults = CatalogueReports::faults(options.path);
    if (!faults)
        return failed(faults.error());
    for (const QString &fault : *faults)
        printRow({u"fault"_s, fault});
    std::cout << "check\t" << (faults->isEmpty() ? "sound" : "damaged") << '\n';
    return faults->isEmpty() ? Success : Failure;
}

int CatalogueCommands::vacuum(const CatalogueOptions &options)
{
    if (!QFileInfo::exists(options.path))
        return failed(base::Error{u"Catalogue"_s, 0, options.path + u": there is no catalogue yet"_s});
    Result<OwnCatalogue> catalogue = OwnCatalogue::open(options.path);
    if (!catalogue)
        return failed(catalogue.error());
    const Result<void> done = catalogue.value().vacuum();
    return done ? Success : failed(done.error());
}
