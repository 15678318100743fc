#include "CatalogueCommands.h"

#include <base/TerminalText.h>
#include <model/LanguageCodes.h>
#include <sources/catalogue/CatalogueService.h>

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <iostream>

using namespace Qt::StringLiterals;

namespace
{
constexpr char Usage[] =
    R"(Usage: plovendix-catalogue [OPTION]... COMMAND [ARGUMENT]...

Keeps your own subtitle catalogue, which Plovendix searches beside its services.

Commands:
  add PATH...        enter subtitle files, folders of them, and archives
  remove PATH...     take out what came from these files or from below these folders
  list               print every subtitle: release, language, format, file
  search TEXT...     search as the program does; the name of a video file searches for that video
  stats              print how much is in the catalogue; with --check, also whether it is sound
  vacuum             check the catalogue and give unused room back to the disk

Options:
  -c, --catalogue FILE   another catalogue than your own
  -l, --language CODE    add: the language of files that name none; list, search: only this language
  -n, --limit NUMBER     list, search: at most so many
      --check            stats: check the whole file
  -q, --quiet            add: no progress
  -h, --help             this help
  -v, --version          the version

Ctrl+C stops an import; the same command goes on from there.
)";

int misuse(const QString &fault)
{
    std::cerr << "plovendix-catalogue: " << terminalText(fault).toStdString()
              << "\nTry 'plovendix-catalogue --help'.\n";
    return CatalogueCommands::Misuse;
}

struct Command
{
    const char *name;
    int (*run)(const CatalogueOptions &options);
    bool takesArguments;
};

constexpr Command Commands[] = {
    {"add", CatalogueCommands::add, true},      {"remove", CatalogueCommands::remove, true},
    {"list", CatalogueCommands::list, false},   {"search", CatalogueCommands::search, true},
    {"stats", CatalogueCommands::stats, false}, {"vacuum", CatalogueCommands::vacuum, false},
};

int runTool(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption catalogue({u"c"_s, u"catalogue"_s}, {}, u"FILE"_s);
    const QCommandLineOption language({u"l"_s, u"language"_s}, {}, u"CODE"_s);
    const QCommandLineOption limit({u"n"_s, u"limit"_s}, {}, u"NUMBER"_s, u"0"_s);
    const QCommandLineOption check(u"check"_s);
    const QCommandLineOption quiet({u"q"_s, u"quiet"_s}, QString());
    const QCommandLineOption help({u"h"_s, u"help"_s}, QString());
    const QCommandLineOption version({u"v"_s, u"version"_s}, QString());
    parser.addOptions({catalogue, language, limit, check, quiet, help, version});
    if (!parser.parse(QCoreApplication::arguments()))
        return misuse(parser.errorText());
    if (parser.isSet(help) || parser.isSet(version)) {
        std::cout << (parser.isSet(help) ? Usage : "plovendix-catalogue " PLOVENDIX_VERSION "\n");
        return CatalogueCommands::Success;
    }
    CatalogueOptions options;
    options.path = parser.isSet(catalogue) ? parser.value(catalogue) : standardOwnCataloguePath();
    options.language = LanguageCodes::shared().code(parser.value(language));
    options.isQuiet = parser.isSet(quiet);
    options.checks = parser.isSet(check);
    bool isNumber = false;
    options.limit = parser.value(limit).toLongLong(&isNumber);
    if (!isNumber || options.limit < 0)
        return misuse(u"--limit needs a number"_s);
    if (parser.isSet(language) && options.language.isEmpty())
        return misuse(u"--language needs a code, as \"de\" or \"ger\""_s);

    const QStringList words = parser.positionalArguments();
    if (words.isEmpty())
        return misuse(u"a command is missing"_s);
    const auto command = std::find_if(std::begin(Commands), std::end(Commands), [&](const Command &one) {
        return words.first() == QLatin1StringView(one.name);
    });
    if (command == std::end(Commands))
        return misuse(u"unknown command "_s + words.first());
    options.arguments = words.mid(1);
    if (command->takesArguments && options.arguments.isEmpty())
        return misuse(words.first() + u" needs an argument"_s);
    if (!command->takesArguments && !options.arguments.isEmpty())
        return misuse(words.first() + u" takes no argument"_s);
    return command->run(options);
}
} // namespace

int main(int argc, char **argv)
{
    const int status = runTool(argc, argv);
    if (std::cout.flush())
        return status;
    std::cerr << "plovendix-catalogue: the output could not be written\n";
    return CatalogueCommands::Failure;
}
