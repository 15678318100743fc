#include "MoviesFolder.h"
#include "FilePaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 MaxBytes = 65'536;
constexpr char Key[] = "XDG_VIDEOS_DIR=";
constexpr char HomeMark[] = "$HOME";

QByteArray homeFolder()
{
    return withoutTrailingSlashes(QFile::encodeName(QDir::homePath()));
}

QByteArray withoutEscapes(const QByteArray &text)
{
    QByteArray plain;
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (text.at(place) == '\\' && place + 1 < text.size())
            ++place;
        plain += text.at(place);
    }
    return plain;
}

/// The path of one assignment in user-dirs.dirs: in double quotes, absolute or below $HOME.
QByteArray pathOf(const QByteArray &assigned)
{
    const qsizetype end = assigned.lastIndexOf('"');
    if (!assigned.startsWith('"') || end < 1)
        return {};
    const QByteArray quoted = assigned.mid(1, end - 1);
    if (quoted == HomeMark || quoted.startsWith(QByteArray(HomeMark) + '/'))
        return withoutTrailingSlashes(homeFolder() + withoutEscapes(quoted.mid(sizeof HomeMark - 1)));
    return quoted.startsWith('/') ? withoutTrailingSlashes(withoutEscapes(quoted)) : QByteArray();
}

QByteArray configuredFolder()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QFile file(config + u"/user-dirs.dirs"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray path;
    const QList<QByteArray> lines = file.read(MaxBytes).split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray trimmed = line.trimmed();
        if (trimmed.startsWith(Key))
            path = pathOf(trimmed.mid(sizeof Key - 1));
    }
    return path;
}
} // namespace

std::optional<QByteArray> personalMoviesFolder()
{
    const QByteArray configured = configuredFolder();
    if (configured == homeFolder())
        return {};
    if (!configured.isEmpty())
        return configured;
    const QString usual = QDir::home().filePath(u"Videos"_s);
    if (QFileInfo(usual).isDir())
        return QFile::encodeName(usual);
    return {};
}
