#include "PropertyList.h"

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

/// The value of the element that has begun, read to its end. Another kind of element stops the reader.
QVariant readValue(QXmlStreamReader &reader)
{
    const QString kind = reader.name().toString();
    const QString text = reader.readElementText();
    bool isValid = true;
    QVariant value;
    if (kind == "string"_L1)
        value = text;
    else if (kind == "integer"_L1)
        value = text.toLongLong(&isValid);
    else if (kind == "real"_L1)
        value = text.toDouble(&isValid);
    else if (kind == "true"_L1 || kind == "false"_L1)
        value = kind == "true"_L1;
    if (!isValid || !value.isValid())
        reader.raiseError(u"no value: "_s + kind);
    return value;
}

QVariantMap readDictionary(QXmlStreamReader &reader)
{
    QVariantMap map;
    while (reader.readNextStartElement()) {
        const bool isKey = reader.name() == "key"_L1;
        const QString key = reader.readElementText();
        if (isKey && reader.readNextStartElement())
            map.insert(key, readValue(reader));
        else
            reader.raiseError(u"a key without a value"_s);
    }
    return map;
}
} // namespace

Result<QVariantMap> parsePropertyList(const QByteArray &content)
{
    if (content.size() > MaxBytes)
        return failure(u"larger than 8 MiB"_s);
    QXmlStreamReader reader(content);
    reader.setNamespaceProcessing(false);
    if (!readRoot(reader) || !reader.readNextStartElement() || reader.name() != "dict"_L1)
        return failure(u"no dictionary"_s);
    const QVariantMap map = readDictionary(reader);
    if (reader.readNextStartElement())
        reader.raiseError(u"a second value"_s);
    while (!reader.atEnd())
        reader.readNext();
    if (reader.hasError())
        return failure(u"no property list: "_s + reader.errorString());
    return map;
}

Result<QVariantMap> readPropertyList(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(path + u": "_s + file.errorString());
    Result<QVariantMap> list = parsePropertyList(file.read(MaxBytes + 1));
    return list ? list : failure(path + u": "_s + list.error().detail);
}
