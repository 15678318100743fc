#include "CommandLine.h"

#include <base/Bundle.h>
#include <base/FileManager.h>

namespace
{
using namespace Qt::StringLiterals;

QString helpText()
{
    return u"Usage: plovendix [VIDEO|URL]...\n"
           "Finds and downloads subtitles for video files.\n"
           "\n"
           "VIDEO is searched for as if it were dropped on the window. URL is a request of a\n"
           "companion player.\n"
           "\n"
           "  -h, --help       print this help and exit\n"
           "  -v, --version    print the version and exit"_s;
}

QString versionText()
{
    const QVariant version = Bundle::main().objectForInfoDictionaryKey(u"CFBundleShortVersionString"_s);
    return u"Plovendix "_s + version.toString();
}

/// These URLs need no host; a file with such a name is unlikely, unlike other names with a colon.
bool isURLOfOurs(const QByteArray &argument)
{
    const QByteArray lower = argument.toLower();
    return lower.startsWith("plovendix:") || lower.startsWith("file:/");
}

bool isURL(const QByteArray &argument)
{
    if (isURLOfOurs(argument))
        return true;
    const auto colon = argument.indexOf("://");
    if (colon <= 0)
        return false;
    for (const char character : argument.first(colon)) {
        const bool legal = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
                           (character >= '0' && character <= '9') || character == '+' || character == '-' ||
                           character == '.';
        if (!legal)
            return false;
    }
    return true;
}

QString fileURI(const QByteArray &path)
{
    return QString::fromLatin1(FileManager::urlFromFileSystemPath(path).toEncoded());
}

QString uriOf(const QByteArray &argument, const QByteArray &workingDirectory)
{
    if (isURL(argument))
        return QString::fromUtf8(argument);
    if (argument.startsWith('/'))
        return fileURI(argument);
    return fileURI(workingDirectory + '/' + argument);
}
} // namespace

CommandLine parseCommandLine(const QByteArrayList &arguments, const QByteArray &workingDirectory)
{
    CommandLine line;
    bool optionsEnded = false;
    for (const QByteArray &argument : arguments) {
        if (argument.isEmpty())
            continue;
        if (optionsEnded || !argument.startsWith('-') || argument == "-") {
            line.uris += uriOf(argument, workingDirectory);
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (argument == "-h" || argument == "--help") {
            line.print = helpText();
        } else if (argument == "-v" || argument == "--version") {
            line.print = versionText();
        } else {
            line.error =
                u"plovendix: unknown option \"%1\"; try --help"_s.arg(QString::fromLocal8Bit(argument));
        }
    }
    return line;
}
