#include <features/updates/AppcastSignature.h>
#include <features/updates/ReleaseVersion.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QUrl>
#include <QXmlStreamWriter>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Failed = 1;
constexpr int UsageError = 2;
const QString Identifier = u"com.quorvane.Plovendix"_s;

constexpr auto Usage =
    "Usage: plovendix-sign-update new-key KEYFILE\n"
    "       plovendix-sign-update public-key KEYFILE\n"
    "       plovendix-sign-update item KEYFILE VERSION LINK [NOTESFILE]\n"
    "       plovendix-sign-update feed KEYFILE [ITEMFILE...]\n"
    "\n"
    "new-key makes a key pair, writes its secret half to KEYFILE and prints the public half,\n"
    "which goes into Info.plist as SUPublicEDKey. item prints the signed entry of a feed; feed\n"
    "prints a feed of such entries, dated now and signed as a whole.\n";

int complain(const QString &message)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(message));
    return Failed;
}

void print(const QByteArray &text)
{
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
}

/// The last half of an Ed25519 secret key is the public one.
QByteArray publicHalf(const QByteArray &secretKey)
{
    return secretKey.right(AppcastSignature::KeyBytes);
}

std::optional<QByteArray> contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

int makeKey(const QString &path)
{
    const auto pair = AppcastSignature::makeKeyPair();
    QFile file(path);
    // Never over a key that versions out there are signed with.
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly,
                   QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return complain(path + u": "_s + file.errorString());
    file.write(pair.secretKey.toBase64() + '\n');
    file.close();
    if (file.error() != QFileDevice::NoError)
        return complain(path + u": "_s + file.errorString());
    print(pair.publicKey.toBase64() + '\n');
    return 0;
}

QString base64(const QByteArray &signature)
{
    return QString::fromLatin1(signature.toBase64());
}

void write(QXmlStreamWriter &xml, const AppcastItem &item)
{
    xml.writeStartElement(u"item"_s);
    xml.writeTextElement(u"title"_s, u"Plovendix "_s + item.version);
    xml.writeTextElement(u"link"_s, item.link);
    xml.writeTextElement(u"description"_s, item.notes);
    xml.writeTextElement(Appcast::Namespace, u"version"_s, item.version);
    xml.writeTextElement(Appcast::Namespace, u"signature"_s, base64(item.signature));
    xml.writeEndElement();
}

/// What `body` writes, as a text in which our namespace has its prefix.
template <class Body>
QByteArray written(Body body)
{
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeNamespace(Appcast::Namespace, u"update"_s);
    body(xml);
    return text.trimmed() + '\n';
}

QByteArray written(const AppcastFeed &feed)
{
    return written([&feed](QXmlStreamWriter &xml) {
        xml.writeStartElement(u"rss"_s);
        xml.writeAttribute(u"version"_s, u"2.0"_s);
        xml.writeStartElement(u"channel"_s);
        xml.writeTextElement(u"title"_s, u"Plovendix"_s);
        xml.writeTextElement(Appcast::Namespace, u"date"_s, feed.date);
        xml.writeTextElement(Appcast::Namespace, u"signature"_s, base64(feed.signature));
        for (const AppcastItem &item : feed.items)
            write(xml, item);
        xml.writeEndDocument();
    });
}

int makeItem(const QByteArray &secretKey, const QStringList &words)
{
    AppcastItem item{words.value(0), words.value(1), {}, {}};
    const QUrl link(item.link, QUrl::StrictMode);
    if (!ReleaseVersion::parse(item.version))
        return complain(u"\"%1\" is no version"_s.arg(item.version));
    if (!link.isValid() || link.scheme() != "https"_L1 || link.host().isEmpty())
        return complain(u"\"%1\" is no address that begins with https"_s.arg(item.link));
    if (words.size() > 2) {
        const auto notes = contentOf(words.at(2));
        if (!notes)
            return complain(u"\"%1\" cannot be read"_s.arg(words.at(2)));
        // As a reader of the feed gets them: without the layout around, and with plain line ends.
        item.notes = QString::fromUtf8(*notes).replace(u"\r\n"_s, u"\n"_s).trimmed();
    }
    item.signature = AppcastSignature::sign(Identifier, item, secretKey);
    print(written([&item](QXmlStreamWriter &xml) { write(xml, item); }));
    return 0;
}

/// Only of items that the same key has signed.
int makeFeed(const QByteArray &secretKey, const QStringList &paths)
{
    AppcastFeed feed{{}, QDateTime::currentDateTimeUtc().toString(Qt::ISODate), {}};
    for (const QString &path : paths) {
        const auto content = contentOf(path);
        const auto read =
            Appcast::parse("<rss><channel>" + content.value_or(QByteArray()) + "</channel></rss>");
        if (!content || !read || read->items.isEmpty())
            return complain(u"\"%1\" holds no item"_s.arg(path));
        feed.items += read->items;
    }
    for (const AppcastItem &item : std::as_const(feed.items)) {
        if (!AppcastSignature::isValid(Identifier, item, publicHalf(secretKey)))
            return complain(u"version %1 is not signed with this key"_s.arg(item.version));
    }
    feed.signature = AppcastSignature::sign(Identifier, feed, secretKey);
    print(written(feed));
    return 0;
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments().mid(1);
    const QString order = words.value(0);
    if (order == "new-key"_L1 && words.size() == 2)
        return makeKey(words.at(1));
    const bool isItem = order == "item"_L1 && (words.size() == 4 || words.size() == 5);
    const bool isFeed = order == "feed"_L1 && words.size() >= 2;
    if (!isItem && !isFeed && !(order == "public-key"_L1 && words.size() == 2)) {
        std::fputs(Usage, stderr);
        return UsageError;
    }
    const auto secretKey = QByteArray::fromBase64(contentOf(words.at(1)).value_or(QByteArray()).trimmed());
    if (secretKey.size() != 2 * AppcastSignature::KeyBytes)
        return complain(u"\"%1\" holds no key"_s.arg(words.at(1)));
    if (isItem)
        return makeItem(secretKey, words.mid(2));
    if (isFeed)
        return makeFeed(secretKey, words.mid(2));
    print(publicHalf(secretKey).toBase64() + '\n');
    return 0;
}
