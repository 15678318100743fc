#include "PrivateEnvironment.h"

#include <QByteArrayList>
#include <QDir>
#include <QFile>

#include <algorithm>

#include <unistd.h>

namespace
{
// Where programs are, how tests are run, and what the sanitizers and the coverage are told.
constexpr const char *Kept[] = {"PATH",
                                "LD_LIBRARY_PATH",
                                "TMPDIR",
                                "LC_ALL",
                                "QT_QPA_PLATFORM",
                                "QT_LOGGING_RULES",
                                "QTEST_DISABLE_STACK_DUMP",
                                "QTEST_FUNCTION_TIMEOUT",
                                "TSAN_OPTIONS",
                                "ASAN_OPTIONS",
                                "UBSAN_OPTIONS",
                                "LLVM_PROFILE_FILE"};
constexpr const char *Folders[] = {"HOME",           "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                                   "XDG_STATE_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_DIRS", "XDG_RUNTIME_DIR"};

constexpr auto Mark = "PLOVENDIX_PRIVATE_ENVIRONMENT";

QByteArrayList namesOfVariables()
{
    QByteArrayList names;
    for (char **variable = environ; *variable; ++variable) {
        const QByteArray text(*variable);
        names += text.left(text.indexOf('='));
    }
    return names;
}
} // namespace

PrivateEnvironment::PrivateEnvironment()
{
    const QByteArrayList names = namesOfVariables();
    for (const QByteArray &name : names) {
        if (std::find(std::begin(Kept), std::end(Kept), name) == std::end(Kept))
            qunsetenv(name.constData());
    }
    for (const char *name : Folders) {
        const QString folder = m_folder.filePath(QString::fromLatin1(name).toLower());
        if (!QDir().mkpath(folder))
            qFatal("%s cannot be made", qUtf8Printable(folder));
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(name, QFile::encodeName(folder));
    }
    qputenv(Mark, "1");
}

bool PrivateEnvironment::isInherited()
{
    return qEnvironmentVariableIsSet(Mark);
}
