#include "Appcast.h"

#include <base/LocalizedString.h>
#include <net/Redactor.h>

#include <QXmlStreamReader>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxItems = 500;
constexpr qsizetype MaxDetailLength = 500;

bool isWebPage(QStringView name)
{
    return name.compare("html"_L1, Qt::CaseInsensitive) == 0;
}

/// Reads one document. Elements at unexpected levels are skipped.
class Reader final
{
public:
    explicit Reader(const QByteArray &feed) : m_xml(feed) {}

    Result<AppcastFeed> read()
    {
        if (!enter(u"rss") || !enter(u"channel"))
            return fault();
        while (m_xml.readNextStartElement()) {
            readChannelElement();
        }
        // Read to the end of the document: a truncated feed is an error.
        while (!m_xml.atEnd())
            m_xml.readNext();
        if (m_xml.hasError())
            return fault();
        return m_feed;
    }

private:
    /// Enters the first child element of that name.
    bool enter(QStringView name)
    {
        while (nextStart()) {
            if (m_xml.name() == name)
                return true;
            if (name == u"rss")
                return refuse(isWebPage(m_xml.name()) ? Appcast::webPage(line()) : Appcast::noFeed(line()));
            m_xml.skipCurrentElement();
        }
        return m_fault || m_xml.hasError() ? false : refuse(Appcast::noFeed(line()));
    }

    bool nextStart()
    {
        while (m_xml.readNext() != QXmlStreamReader::Invalid) {
            if (m_xml.isStartElement())
                return true;
            if (m_xml.isDTD())
                return refuse(isWebPage(m_xml.dtdName()) ? Appcast::webPage(line()) : declarations());
            if (m_xml.isEndElement() || m_xml.isEndDocument())
                return false;
        }
        return false;
    }

    bool refuse(const base::Error &fault)
    {
        m_fault = fault;
        return false;
    }

    void readChannelElement()
    {
        const bool ours = m_xml.namespaceUri() == Appcast::Namespace;
        if (m_xml.name() == u"item" && m_feed.items.size() < MaxItems)
            readItem();
        else if (ours && m_xml.name() == u"date")
            m_feed.date = text();
        else if (ours && m_xml.name() == u"signature")
            m_feed.signature = QByteArray::fromBase64(text().toLatin1());
        else
            m_xml.skipCurrentElement();
    }

    void readItem()
    {
        AppcastItem item;
        while (m_xml.readNextStartElement()) {
            const bool ours = m_xml.namespaceUri() == Appcast::Namespace;
            if (ours && m_xml.name() == u"version")
                item.version = text();
            else if (ours && m_xml.name() == u"signature")
                item.signature = QByteArray::fromBase64(text().toLatin1());
            else if (m_xml.namespaceUri().isEmpty() && m_xml.name() == u"link")
                item.link = text();
            else if (m_xml.namespaceUri().isEmpty() && m_xml.name() == u"description")
                item.notes = text();
            else
                m_xml.skipCurrentElement();
        }
        if (!item.version.isEmpty())
            m_feed.items += item;
    }

    /// The text of the current element, trimmed.
    QString text() { return m_xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed(); }

    QString line() const { return u"line %1"_s.arg(m_xml.lineNumber()); }

    base::Error declarations() const
    {
        return Appcast::error(
            String::localize(
                u"The list of versions contains something that does not belong there and was not read."_s),
            u"a type declaration in "_s + line());
    }

    base::Error fault() const
    {
        if (m_fault)
            return *m_fault;
        const QString detail = line() + u": "_s + m_xml.errorString();
        if (m_xml.error() != QXmlStreamReader::PrematureEndOfDocumentError)
            return Appcast::noFeed(detail);
        return Appcast::error(
            String::localize(u"The list of versions did not arrive completely. Try again in a moment."_s),
            detail);
    }

    QXmlStreamReader m_xml;
    AppcastFeed m_feed;
    std::optional<base::Error> m_fault;
};
} // namespace

Result<AppcastFeed> Appcast::parse(const QByteArray &feed)
{
    if (feed.size() > MaxBytes)
        return error(
            String::localize(u"The list of versions is too long and was not read. Try again later."_s),
            u"%1 bytes"_s.arg(feed.size()));
    return Reader(feed).read();
}

base::Error Appcast::error(const QString &sentence, const QString &detail)
{
    return {u"Update"_s, 1, sentence, redacted(detail).left(MaxDetailLength)};
}

base::Error Appcast::noFeed(const QString &detail)
{
    return error(String::localize(u"What the update server sent is no list of versions. Try again later."_s),
                 u"no feed: "_s + detail);
}

base::Error Appcast::webPage(const QString &detail)
{
    return error(
        String::localize(
            u"Something else answered in place of the update server. If you are on a network that asks you "
            "to sign in, do that first; otherwise try again later."_s),
        u"another page: "_s + detail);
}
