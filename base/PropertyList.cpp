#include "PropertyList.h"

#include <QDateTime>
#include <QFile>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 MaxBytes = 8LL * 1024 * 1024;

base::Error failure(const QString &detail)
{
    return base::Error{u"PropertyList"_s, 1, u"The property list could not be read."_s, detail};
}

/// The reader stops at the root, unless an entity is declared before it.
bool readRoot(QXmlStreamReader &reader)
{
    while (!reader.atEnd() && reader.readNext() != QXmlStreamReader::StartElement) {
        if (!reader.entityDeclarations().isEmpty())
            return false;
    }
    return reader.name() == "plist"_L1;
}

QVariant scalarOf(QStringView kind, const QString &text)
{
    bool isValid = true;
    QVariant value;
    if (kind == "string"_L1)
        value = text;
    else if (kind == "integer"_L1)
        value = text.toLongLong(&isValid);
    else if (kind == "real"_L1)
        value = text.toDouble(&isValid);
    else if (kind == "data"_L1)
        value = QByteArray::fromBase64(text.toLatin1());
    else if (kind == "date"_L1 && QDateTime::fromString(text, Qt::ISODate).isValid())
        value = QDateTime::fromString(text, Qt::ISODate);
    else if ((kind == "true"_L1 || kind == "false"_L1) && text.isEmpty())
        value = kind == "true"_L1;
    return isValid ? value : QVariant();
}

/// The value of the element that has begun, read to its end; an error stops the reader.
QVariant readValue(QXmlStreamReader &reader, int depth)
{
    if (depth == MaxPropertyListDepth)
        reader.raiseError(u"nested too deep"_s);
    const QString kind = reader.name().toString();
    const bool isMap = kind == "dict"_L1;
    if (!isMap && kind != "array"_L1) {
        const QVariant value = scalarOf(kind, reader.readElementText());
        if (!value.isValid())
            reader.raiseError(u"no value: "_s + kind);
        return value;
    }
    QVariantMap map;
    QVariantList list;
    while (reader.readNextStartElement()) {
        if (!isMap) {
            list += readValue(reader, depth + 1);
            continue;
        }
        const bool isKey = reader.name() == "key"_L1;
        const QString key = reader.readElementText();
        if (isKey && reader.readNextStartElement())
            map.insert(key, readValue(reader, depth + 1));
        else
            reader.raiseError(u"a key without a value"_s);
    }
    return isMap ? QVariant(map) : QVariant(list);
}
} // namespace

Result<QVariant> parsePropertyList(const QByteArray &content)
{
    if (content.size() > MaxBytes)
        return failure(u"larger than 8 MiB"_s);
    QXmlStreamReader reader(content);
    reader.setNamespaceProcessing(false);
    if (!readRoot(reader) || !reader.readNextStartElement())
        return failure(u"no property list"_s);
    const QVariant value = readValue(reader, 0);
    if (reader.readNextStartElement())
        reader.raiseError(u"a second value"_s);
    while (!reader.atEnd())
        reader.readNext();
    if (reader.hasError())
        return failure(u"no property list: "_s + reader.errorString());
    return value;
}

Result<QVariant> readPropertyList(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(path + u": "_s + file.errorString());
    Result<QVariant> list = parsePropertyList(file.read(MaxBytes + 1));
    return list ? list : failure(path + u": "_s + list.error().detail);
}
