#include "CatalogueImport.h"

#include "FolderWalk.h"

#include <media/MovieHash.h>
#include <media/subtitles/SubtitleFile.h>

#include <QDateTime>
#include <QDir>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype BatchItems = 256;
constexpr qint64 BatchMilliseconds = 1000; // the work that a kill may lose
constexpr qsizetype MaxProblems = 20;

QString stampOf(const QFileInfo &file)
{
    return u"%1:%2"_s.arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch());
}

ImportRefusal refusalOf(SubtitleFile::Failure failure)
{
    switch (failure) {
    case SubtitleFile::Failure::TooLarge:
        return ImportRefusal::TooLarge;
    case SubtitleFile::Failure::Damaged:
    case SubtitleFile::Failure::UnknownArchive:
        return ImportRefusal::NotUnpacked;
    case SubtitleFile::Failure::None:
    case SubtitleFile::Failure::Empty:
    case SubtitleFile::Failure::NoSubtitle:
        break;
    }
    return ImportRefusal::NoSubtitle;
}

/// The path that names a subtitle: a member without a telling name is named by its archive.
QString namePath(const QString &archive, const QString &member)
{
    const QString folder = QFileInfo(archive).completeBaseName();
    return folder + u'/' + member;
}
} // namespace

CatalogueImport::CatalogueImport(OwnCatalogue &catalogue, const QString &language, const GoOn &goOn)
    : m_catalogue(catalogue), m_language(language), m_goOn(goOn)
{
    m_sinceFlush.start();
}

Result<CatalogueImport::End> CatalogueImport::add(const QString &path)
{
    const QFileInfo info(path);
    const QString absolute = info.absoluteFilePath();
    if (!info.exists())
        return passGone(QDir::cleanPath(absolute));
    if (!info.isDir() && !ArchiveMembers::isArchiveName(absolute) && !isSubtitleFileName(info.fileName())) {
        refuse(absolute, ImportRefusal::OtherKind);
        return End::Done;
    }
    const Result<End> end =
        info.isDir() ? addFolder(QDir::cleanPath(absolute)) : addFile(QDir::cleanPath(absolute));
    if (!end)
        return end;
    if (const Result<void> flushed = flush(); !flushed)
        return flushed.error();
    m_catalogue.checkpoint();
    return end;
}

Result<CatalogueImport::End> CatalogueImport::addFolder(const QString &path)
{
    const qint64 before = m_counts.files;
    FolderWalk walk(path);
    while (walk.hasNext()) {
        const FolderWalk::Found found = walk.next();
        if (found == FolderWalk::Found::Other)
            continue;
        const bool isSource = found == FolderWalk::Found::Source;
        const Result<End> end = isSource ? addFile(walk.path()) : passClosedFolder(walk.path());
        if (!end || *end == End::Stopped)
            return end;
    }
    return m_counts.files > before ? End::Done : passEmptyFolder(path);
}

/// An empty folder that held files may be the mount point of a missing disk. Subtitles are never removed
/// because their file is not found.
Result<CatalogueImport::End> CatalogueImport::passEmptyFolder(const QString &path)
{
    const Result<bool> wasFull = m_catalogue.knowsBelow(path);
    if (!wasFull)
        return wasFull.error();
    if (*wasFull)
        refuse(path, ImportRefusal::EmptiedFolder);
    return End::Done;
}

Result<CatalogueImport::End> CatalogueImport::passGone(const QString &path)
{
    const Result<bool> isKnown = m_catalogue.knowsBelow(path);
    if (!isKnown)
        return isKnown.error();
    refuse(path, ImportRefusal::Gone,
           *isKnown ? u"is not there; what came from it stays in the catalogue"_s : QString());
    return End::Done;
}

Result<CatalogueImport::End> CatalogueImport::passClosedFolder(const QString &path)
{
    ++m_counts.files;
    m_counts.current = path;
    refuse(path, ImportRefusal::ClosedFolder);
    return carryOn();
}

Result<CatalogueImport::End> CatalogueImport::addFile(const QString &path)
{
    ++m_counts.files;
    m_counts.current = path;
    // Subtitles of an earlier import stay, because the disk may come back.
    if (!QFileInfo::exists(path)) {
        refuse(path, ImportRefusal::Gone);
        return carryOn();
    }
    if (ArchiveMembers::isArchiveName(path))
        return addArchive(path);
    const QFileInfo info(path);
    const SubtitleName name = subtitleName(path);
    const std::optional<QFileInfo> video = m_videos.videoFor(info.path(), name.videoNames);
    SourceStep step = stepFor(info, name, video);
    const Result<bool> known = isKnown(path, step.stamp);
    if (!known)
        return known.error();
    if (*known)
        return carryOn();
    if (!info.isFile() || info.size() > ArchiveMembers::MaxMemberBytes) {
        refuse(path, ImportRefusal::TooLarge);
        return keep(step);
    }
    const std::optional<QByteArray> bytes = contentOf(path);
    if (!bytes)
        return carryOn();
    read(path, path, 0, *bytes, video, step);
    return keep(step);
}

/// The stamp also depends on the video and on the language for unnamed files.
SourceStep CatalogueImport::stepFor(const QFileInfo &file, const SubtitleName &name,
                                    const std::optional<QFileInfo> &video) const
{
    SourceStep step{file.filePath(), stampOf(file), {}, true};
    if (video)
        step.stamp += u'|' + video->fileName() + u':' + stampOf(*video);
    if (name.language.isEmpty() && !m_language.isEmpty())
        step.stamp += u'|' + m_language;
    return step;
}

std::optional<QByteArray> CatalogueImport::contentOf(const QString &path)
{
    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    // A read error gives a partial content, which must not replace the whole one.
    if (file.error() == QFileDevice::NoError)
        return bytes;
    refuse(path, ImportRefusal::Unreadable, file.errorString());
    return std::nullopt;
}

Result<CatalogueImport::End> CatalogueImport::addArchive(const QString &path)
{
    const QString stamp = stampOf(QFileInfo(path)) + u'|' + m_language;
    const Result<bool> known = isKnown(path, stamp);
    if (!known)
        return known.error();
    if (*known)
        return carryOn();
    if (QFile file(path); !file.open(QIODevice::ReadOnly)) {
        refuse(path, ImportRefusal::Unreadable, file.errorString());
        return carryOn();
    }
    Result<End> outcome = End::Done;
    const auto isWanted = [&](qint64 number, const QString &member) {
        const QString name = member.section(u'/', -1);
        if (!isSubtitleFileName(name) && !name.endsWith(".zip"_L1, Qt::CaseInsensitive))
            return false;
        const Result<bool> has = m_catalogue.hasMember(path, number);
        m_counts.known += has && *has ? 1 : 0;
        return !has || !*has;
    };
    const auto take = [&](qint64 number, const QString &member, const QByteArray &content) {
        SourceStep step{path, stamp, {}, false};
        const QString source = path + u": "_s + member;
        if (content.size() > ArchiveMembers::MaxMemberBytes)
            refuse(source, ImportRefusal::TooLarge);
        else
            read(source, namePath(path, member), number, content, std::nullopt, step);
        outcome = keep(step);
        return outcome && *outcome == End::Done;
    };
    const auto passOver = [&] {
        outcome = carryOn();
        return *outcome == End::Done;
    };
    const ArchiveMembers::End end = ArchiveMembers::visit(path, {isWanted, take, passOver});
    if (!outcome || end == ArchiveMembers::End::Stopped)
        return outcome;
    return endArchive(path, stamp, end);
}

/// An archive whose disk failed is read again by the next import. An archive that is damaged itself is
/// skipped until it changes.
Result<CatalogueImport::End> CatalogueImport::endArchive(const QString &path, const QString &stamp,
                                                         ArchiveMembers::End end)
{
    switch (end) {
    case ArchiveMembers::End::Unreadable:
        refuse(path, ImportRefusal::Unreadable);
        return carryOn();
    case ArchiveMembers::End::Damaged:
        if (!QFileInfo::exists(path)) {
            refuse(path, ImportRefusal::Gone);
            return carryOn();
        }
        refuse(path, ImportRefusal::DamagedArchive);
        break;
    case ArchiveMembers::End::Locked:
        refuse(path, ImportRefusal::LockedArchive);
        break;
    case ArchiveMembers::End::TooLarge:
        refuse(path, ImportRefusal::ArchiveBomb);
        break;
    case ArchiveMembers::End::Whole:
    case ArchiveMembers::End::Stopped:
        break;
    }
    return keep({path, stamp, {}, true});
}

Result<bool> CatalogueImport::isKnown(const QString &path, const QString &stamp)
{
    const Result<OwnCatalogue::SourceState> state = m_catalogue.stateOf(path, stamp);
    if (!state)
        return state.error();
    const bool isWhole = *state == OwnCatalogue::SourceState::Whole;
    m_counts.known += isWhole ? 1 : 0;
    return isWhole;
}

void CatalogueImport::read(const QString &source, const QString &path, qint64 member, const QByteArray &bytes,
                           const std::optional<QFileInfo> &video, SourceStep &step)
{
    const SubtitleName name = subtitleName(path);
    const QString language = name.language.isEmpty() ? m_language : name.language;
    const SubtitleFile file = SubtitleFile::read(bytes, language);
    if (file.failure != SubtitleFile::Failure::None)
        return refuse(source, refusalOf(file.failure));
    ReadSubtitle subtitle;
    subtitle.member = member;
    subtitle.film = filmOfRelease(name.release);
    subtitle.record.release = name.release;
    subtitle.record.language = language.isEmpty() ? u"und"_s : language;
    subtitle.record.format = file.extension;
    subtitle.record.hearingImpaired = name.hearingImpaired;
    subtitle.record.foreignPartsOnly = name.foreignPartsOnly;
    subtitle.content = StoredContent::packed(file.original);
    if (video) {
        if (const auto hash = movieHash(QUrl::fromLocalFile(video->absoluteFilePath()))) {
            subtitle.record.videoHash = hash->hash;
            subtitle.record.videoSize = hash->size;
        }
    }
    m_counts.unlabelled += language.isEmpty() ? 1 : 0;
    step.subtitles += subtitle;
}

Result<CatalogueImport::End> CatalogueImport::keep(SourceStep step)
{
    m_batchItems += std::max<qsizetype>(1, step.subtitles.size());
    m_batch += std::move(step);
    if (m_batchItems >= BatchItems || m_sinceFlush.hasExpired(BatchMilliseconds)) {
        if (const Result<void> flushed = flush(); !flushed)
            return flushed.error();
    }
    return carryOn();
}

Result<void> CatalogueImport::flush()
{
    if (m_batch.isEmpty())
        return {};
    const Result<OwnCatalogue::Entered> entered = m_catalogue.enter(m_batch);
    if (!entered)
        return entered.error();
    m_counts.added += entered->added;
    m_counts.known += entered->duplicates;
    m_batch.clear();
    m_batchItems = 0;
    m_sinceFlush.restart();
    return {};
}

/// Stores what was read also when the person stops, so that it need not be read again.
Result<CatalogueImport::End> CatalogueImport::carryOn()
{
    return m_goOn(m_counts) ? End::Done : End::Stopped;
}

void CatalogueImport::refuse(const QString &path, ImportRefusal why, const QString &detail)
{
    ++m_counts.refused;
    if (!m_counts.firstRefused)
        m_counts.firstRefused = ImportCounts::Refused{path, why};
    if (m_counts.problems.size() < MaxProblems)
        m_counts.problems += path + u' ' + (detail.isEmpty() ? textOf(why) : detail);
}
