#include "Appcast.h"

#include "UpdateErrors.h"

#include <QXmlStreamReader>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{
constexpr qsizetype MaxItems = 500;

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
                return refuse(isWebPage(m_xml.name()) ? UpdateFault::WebPage : UpdateFault::NoFeed);
            m_xml.skipCurrentElement();
        }
        return m_fault || m_xml.hasError() ? false : refuse(UpdateFault::NoFeed);
    }

    bool nextStart()
    {
        while (m_xml.readNext() != QXmlStreamReader::Invalid) {
            if (m_xml.isStartElement())
                return true;
            if (m_xml.isDTD())
                return refuse(isWebPage(m_xml.dtdName()) ? UpdateFault::WebPage : UpdateFault::Declarations);
            if (m_xml.isEndElement() || m_xml.isEndDocument())
                return false;
        }
        return false;
    }

    bool refuse(UpdateFault fault)
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

    base::Error fault() const
    {
        if (m_fault)
            return updateError(*m_fault, u"line %1"_s.arg(m_xml.lineNumber()));
        const bool cut = m_xml.error() == QXmlStreamReader::PrematureEndOfDocumentError;
        return updateError(cut ? UpdateFault::CutShort : UpdateFault::NoFeed,
                           u"line %1: %2"_s.arg(m_xml.lineNumber()).arg(m_xml.errorString()));
    }

    QXmlStreamReader m_xml;
    AppcastFeed m_feed;
    std::optional<UpdateFault> m_fault;
};
} // namespace

Result<AppcastFeed> Appcast::parse(const QByteArray &feed)
{
    if (feed.size() > MaxBytes)
        return updateError(UpdateFault::TooLarge, u"%1 bytes"_s.arg(feed.size()));
    return Reader(feed).read();
}
