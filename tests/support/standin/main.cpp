#include "StandIn.h"

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
void printLine(const QString &line)
{
    std::fprintf(stdout, "%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

QByteArray logLine(const ReceivedRequest &request, const ServedAnswer &answer, qint64 milliseconds)
{
    QJsonObject headers;
    for (auto it = request.headers.cbegin(); it != request.headers.cend(); ++it)
        headers[QString::fromLatin1(it.key())] = QString::fromLatin1(it.value());
    const QJsonObject line{{u"milliseconds"_s, milliseconds},
                           {u"method"_s, QString::fromLatin1(request.method)},
                           {u"target"_s, QString::fromLatin1(request.target)},
                           {u"port"_s, request.port},
                           {u"headers"_s, headers},
                           {u"body"_s, QString::fromUtf8(request.body)},
                           {u"status"_s, answer.status}};
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}
} // namespace

/// Serves until it is told to end. Prints the addresses and keys to use, then "ready".
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Stands in for the subtitle service and the film database. Behaviours:\n  "_s +
        Behaviours::names().join(u"\n  "_s));
    parser.addHelpOption();
    const QCommandLineOption log(u"log"_s, u"Writes each request as a line of JSON."_s, u"file"_s);
    const QCommandLineOption drip(u"drip"_s, u"Milliseconds between the bytes that drip."_s, u"ms"_s,
                                  u"300"_s);
    parser.addOptions({log, drip});
    parser.addPositionalArgument(u"behaviours"_s, u"Names of behaviours, with @ENDPOINT where wanted."_s);
    parser.process(application);

    StandIn standIn;
    standIn.select(parser.positionalArguments());
    standIn.setDripInterval(parser.value(drip).toInt());
    QFile file(parser.value(log));
    if (parser.isSet(log) && !file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        qCritical("The log could not be opened");
        return 1;
    }
    QElapsedTimer running;
    running.start();
    const auto note = [&](const ReceivedRequest &request, const ServedAnswer &answer) {
        if (file.isOpen())
            file.write(logLine(request, answer, running.elapsed()));
    };
    for (LoopbackServer *server :
         {&standIn.main(), &standIn.vip(), &standIn.links(), &standIn.images(), &standIn.foreign()})
        server->setObserver(note);
    printLine(u"SubtitleServiceURL="_s + standIn.subtitleURL().toString());
    printLine(u"MetadataServiceURL="_s + standIn.filmURL().toString());
    printLine(u"PLOVENDIX_SUBTITLE_API_KEY="_s + SubtitleStandIn::ApiKey);
    printLine(u"PLOVENDIX_SUBTITLE_PASSWORD="_s + SubtitleStandIn::Password);
    printLine(u"SubtitleServiceUser="_s + SubtitleStandIn::UserName);
    printLine(u"PLOVENDIX_METADATA_API_KEY="_s + QString::fromLatin1(FilmStandIn::Key));
    printLine(u"ready"_s);
    return QGuiApplication::exec();
}
