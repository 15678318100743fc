#include "PropertyListGuard.h"
#include "BinaryPropertyListCheck.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

using namespace Qt::StringLiterals;

namespace
{
constexpr char Magic[] = "bplist00";
/// Copies one token; false when the list is refused.
bool copyToken(QXmlStreamReader &reader, QXmlStreamWriter &writer, int &depth, int &values)
{
    switch (reader.readNext()) {
    case QXmlStreamReader::DTD:
        return reader.entityDeclarations().isEmpty();
    case QXmlStreamReader::StartElement:
        if (depth == 0 && reader.name() != u"plist")
            return false;
        writer.writeStartElement(reader.name().toString());
        ++values;
        return ++depth <= MaxPropertyListDepth + 1 && values <= MaxPropertyListValues;
    case QXmlStreamReader::EndElement:
        writer.writeEndElement();
        --depth;
        return true;
    case QXmlStreamReader::Characters:
        writer.writeCharacters(reader.text().toString());
        return true;
    default:
        return true;
    }
}
} // namespace

bool isBinaryPropertyList(const QByteArray &content)
{
    return content.startsWith(Magic);
}

bool isHarmlessBinaryPropertyList(const QByteArray &content)
{
    return BinaryPropertyListCheck(content).passes();
}

QByteArray plainXmlPropertyList(const QByteArray &content)
{
    QXmlStreamReader reader(content);
    reader.setNamespaceProcessing(false);
    QByteArray plain;
    QXmlStreamWriter writer(&plain);
    writer.writeStartDocument();
    int depth = 0;
    int values = 0;
    while (!reader.atEnd()) {
        if (!copyToken(reader, writer, depth, values))
            return {};
    }
    if (reader.hasError() || values == 0)
        return {};
    writer.writeEndDocument();
    return plain;
}
