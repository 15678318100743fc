#include "Sandbox.h"

#include <base/Bundle.h>
#include <base/FatalFault.h>
#include <base/StandardOutput.h>
#include <base/UserDefaults.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <mutex>

namespace
{
std::mutex linesMutex;
QStringList lines;
} // namespace

Sandbox::Sandbox()
{
    for (const char *name :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "HOME"}) {
        const QString folder = path(QString::fromLatin1(name).toLower());
        QDir().mkpath(folder);
        qputenv(name, folder.toUtf8());
    }
    for (const char *name : {"LANGUAGE", "LC_MESSAGES", "LANG"})
        qunsetenv(name);
    qputenv("LC_ALL", "en_US.UTF-8");
    Bundle::setMainFolder(QStringLiteral(PLOVENDIX_SOURCE_RESOURCES));
    UserDefaults::setStandardFile(path(QStringLiteral("settings/Plovendix.conf")));
    setPrintedLineObserver([](const QString &line) {
        const std::scoped_lock lock(linesMutex);
        lines += line;
    });
}

Sandbox::~Sandbox()
{
    setPrintedLineObserver({});
    clearPrintedLines();
}

QString Sandbox::path(const QString &relative) const
{
    return m_folder.filePath(relative);
}

QString Sandbox::writeFile(const QString &relative, const QByteArray &content) const
{
    const QString target = path(relative);
    QDir().mkpath(QFileInfo(target).path());
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("The sandbox could not write %s", qUtf8Printable(target));
    return target;
}

QStringList Sandbox::printedLines() const
{
    const std::scoped_lock lock(linesMutex);
    return lines;
}

void Sandbox::clearPrintedLines()
{
    const std::scoped_lock lock(linesMutex);
    lines.clear();
}

FatalFaultTrap::FatalFaultTrap()
{
    setFatalFaultHandler([](const QString &message) { throw FatalFaultCaught{message}; });
}

FatalFaultTrap::~FatalFaultTrap()
{
    setFatalFaultHandler({});
}
