#include "FolderImportSentences.h"

#include <base/LocalizedString.h>

#include <QDir>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
QString counted(const QString &format, qint64 count)
{
    return String::fill(format, {QLocale().toString(count)});
}

QString added(const FolderImportState &state)
{
    return counted(String::localize(u"Subtitles added: %@."_s), state.added);
}

QString knownAndRefused(const FolderImportState &state)
{
    QStringList sentences;
    if (state.known > 0)
        sentences += counted(String::localize(u"Known already: %@."_s), state.known);
    if (state.refused > 0) {
        sentences += counted(String::localize(u"Could not be read: %@."_s), state.refused);
        sentences += state.firstRefusal;
    }
    return sentences.join(u' ');
}

QString finished(const FolderImportState &state)
{
    if (state.total == 0)
        return String::fill(String::localize(u"There are no subtitle files in “%@”."_s),
                            {QDir(state.folder).dirName()});
    return u"%1 %2"_s.arg(added(state), knownAndRefused(state)).trimmed();
}
} // namespace

QString FolderImportSentences::whileRunning(const FolderImportState &state)
{
    if (state.phase == FolderImportState::Phase::Stopping)
        return String::localize(u"Stopping…"_s);
    if (state.files == 0)
        return counted(String::localize(u"Subtitle files found: %@"_s), state.total);
    const QLocale locale;
    return String::fill(String::localize(u"%1$@ of %2$@ files, subtitles added: %3$@"_s),
                        {locale.toString(state.files), locale.toString(std::max(state.files, state.total)),
                         locale.toString(state.added)});
}

QString FolderImportSentences::atTheEnd(const FolderImportState &state)
{
    switch (state.phase) {
    case FolderImportState::Phase::Finished:
        return finished(state);
    case FolderImportState::Phase::Stopped:
        return u"%1 %2"_s.arg(added(state), String::localize(u"Add the folder again to go on from here."_s));
    case FolderImportState::Phase::Failed:
        return state.added > 0 ? u"%1 %2"_s.arg(state.failure, added(state)) : state.failure;
    default:
        return {};
    }
}
