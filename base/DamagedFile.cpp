#include "DamagedFile.h"

#include <QFile>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace
{
Q_LOGGING_CATEGORY(log, "plovendix.platform")

constexpr int MaxDamagedFiles = 1000;
} // namespace

std::optional<QString> setDamagedFileAside(const QString &path)
{
    for (int number = 1; number <= MaxDamagedFiles; ++number) {
        const QString name = u"%1.damaged-%2"_s.arg(path).arg(number);
        if (QFile::exists(name))
            continue;
        if (!QFile::rename(path, name))
            break;
        qCWarning(log, "%s was damaged and is kept as %s.", qUtf8Printable(path), qUtf8Printable(name));
        return name;
    }
    qCWarning(log, "%s is damaged and cannot be set aside.", qUtf8Printable(path));
    return std::nullopt;
}
