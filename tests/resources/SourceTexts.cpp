#include "SourceTexts.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto DotMatchesAll = QRegularExpression::DotMatchesEverythingOption;
const QString Literal = uR"RX((?:u8?)?"((?:[^"\\\n]|\\.)*)"(?:_s|_L1)?)RX"_s;
const QString Literals = uR"RX(((?:(?:u8?)?"(?:[^"\\\n]|\\.)*"(?:_s|_L1)?\s*)+))RX"_s;

QString withoutComments(const QString &code)
{
    static const QRegularExpression part(
        uR"RX(("(?:[^"\\\n]|\\.)*"|'(?:[^'\\\n]|\\.)')|//[^\n]*|/\*.*?\*/)RX"_s, DotMatchesAll);
    return QString(code).replace(part, u"\\1"_s);
}

QString unescaped(const QString &text)
{
    QString result;
    for (qsizetype place = 0; place < text.size(); ++place) {
        if (text.at(place) != u'\\' || place + 1 == text.size()) {
            result += text.at(place);
            continue;
        }
        const QChar sign = text.at(++place);
        if (sign == u'n') {
            result += u'\n';
        } else if (sign == u'u') {
            result += QChar(text.mid(place + 1, 4).toUShort(nullptr, 16));
            place += 4;
        } else {
            result += sign;
        }
    }
    return result;
}

/// Adjacent literals as the one text that the compiler makes of them.
QString joined(const QString &literals)
{
    static const QRegularExpression literal(Literal);
    QString text;
    for (auto match = literal.globalMatch(literals); match.hasNext();)
        text += unescaped(match.next().captured(1));
    return text;
}

bool looksLikeASentence(const QString &text)
{
    static const QRegularExpression placeholderOrQuote(u"%(?:\\d\\$)?@|“"_s);
    static const QRegularExpression word(u"[A-Za-z]{3}"_s);
    return placeholderOrQuote.match(text).hasMatch() && word.match(text).hasMatch();
}

void addFiles(SourceTexts &texts, const QString &folder, const QStringList &patterns)
{
    QDirIterator files(folder, patterns, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s cannot be read", qUtf8Printable(file.fileName()));
        const QByteArray content = file.readAll();
        texts.add(file.fileName().endsWith(u".ui") ? textsOfScene(content)
                                                   : textsOfCode(QString::fromUtf8(content)));
    }
}
} // namespace

void SourceTexts::add(const SourceTexts &other)
{
    shown += other.shown;
    literals += other.literals;
}

SourceTexts textsOfCode(const QString &code)
{
    static const QRegularExpression call(
        u"\\blocali[sz]ed?(?:String|Text)?\\(\\s*(?:\\w+(?:::\\w+)?\\(\\s*)?"_s + Literals);
    static const QRegularExpression literals(Literals);
    const QString plain = withoutComments(code);
    SourceTexts texts;
    for (auto match = call.globalMatch(plain); match.hasNext();)
        texts.shown += joined(match.next().captured(1));
    for (auto match = literals.globalMatch(plain); match.hasNext();) {
        const QString text = joined(match.next().captured(1));
        texts.literals += text;
        if (looksLikeASentence(text))
            texts.shown += text;
    }
    return texts;
}

SourceTexts textsOfScene(const QByteArray &scene)
{
    SourceTexts texts;
    QXmlStreamReader reader(scene);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != u"string")
            continue;
        const bool translatable = reader.attributes().value(u"notr"_s) != u"true";
        const QString text = reader.readElementText();
        texts.literals += text;
        if (translatable && !text.isEmpty())
            texts.shown += text;
    }
    return texts;
}

SourceTexts textsOfTree(const QString &sourceTree)
{
    SourceTexts texts;
    for (const QString &room :
         {u"app"_s, u"base"_s, u"features"_s, u"media"_s, u"model"_s, u"net"_s, u"sources"_s, u"ui"_s})
        addFiles(texts, sourceTree + u'/' + room, {u"*.cpp"_s, u"*.h"_s});
    addFiles(texts, sourceTree + u"/resources"_s, {u"*.ui"_s});
    return texts;
}
