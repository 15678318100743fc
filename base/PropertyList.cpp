#include "PropertyList.h"
#include "PropertyListGuard.h"

#include <plist/plist.h>

#include <QDateTime>
#include <QFile>

#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 MaxBytes = 8LL * 1024 * 1024;
constexpr qint64 SecondsFrom1970To2001 = 978'307'200; // dates in property lists count from 2001

struct FreeNode
{
    void operator()(void *node) const { plist_free(node); }
};
struct FreeMemory
{
    // The library hands out what malloc gave it.
    void operator()(void *memory) const { std::free(memory); } // NOLINT(cppcoreguidelines-no-malloc)
};
using Node = std::unique_ptr<void, FreeNode>;
template <class T>
using Memory = std::unique_ptr<T, FreeMemory>;

Error failure(const QString &detail)
{
    return Error{u"PropertyList"_s, 1, u"The property list could not be read."_s, detail};
}

QVariant valueOf(plist_t node);

QVariant mapOf(plist_t node)
{
    QVariantMap map;
    plist_dict_iter rawIterator = nullptr;
    plist_dict_new_iter(node, &rawIterator);
    const Memory<void> iterator(rawIterator);
    while (iterator) {
        char *rawKey = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iterator.get(), &rawKey, &value);
        const Memory<char> key(rawKey);
        if (!value)
            break;
        map.insert(QString::fromUtf8(key.get()), valueOf(value));
    }
    return map;
}

QVariant listOf(plist_t node)
{
    QVariantList list;
    const std::uint32_t size = plist_array_get_size(node);
    for (std::uint32_t index = 0; index < size; ++index)
        list += valueOf(plist_array_get_item(node, index));
    return list;
}

QVariant dateOf(plist_t node)
{
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    const qint64 milliseconds = (seconds + SecondsFrom1970To2001) * 1000 + microseconds / 1000;
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
}

QVariant textOf(plist_t node)
{
    std::uint64_t length = 0;
    const char *text = plist_get_string_ptr(node, &length);
    return QString::fromUtf8(text, static_cast<qsizetype>(length));
}

QVariant bytesOf(plist_t node)
{
    std::uint64_t length = 0;
    const char *bytes = plist_get_data_ptr(node, &length);
    return QByteArray(bytes, static_cast<qsizetype>(length));
}

QVariant numberOf(plist_t node)
{
    std::uint64_t number = 0;
    plist_get_uint_val(node, &number);
    return static_cast<qlonglong>(number);
}

QVariant realOf(plist_t node)
{
    double number = 0;
    plist_get_real_val(node, &number);
    return number;
}

QVariant booleanOf(plist_t node)
{
    std::uint8_t truth = 0;
    plist_get_bool_val(node, &truth);
    return truth != 0;
}

QVariant valueOf(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_DICT:
        return mapOf(node);
    case PLIST_ARRAY:
        return listOf(node);
    case PLIST_STRING:
        return textOf(node);
    case PLIST_DATA:
        return bytesOf(node);
    case PLIST_DATE:
        return dateOf(node);
    case PLIST_UINT:
        return numberOf(node);
    case PLIST_REAL:
        return realOf(node);
    case PLIST_BOOLEAN:
        return booleanOf(node);
    default:
        return {};
    }
}

Node parsed(const QByteArray &content)
{
    plist_t root = nullptr;
    if (isBinaryPropertyList(content)) {
        if (isHarmlessBinaryPropertyList(content))
            plist_from_bin(content.constData(), static_cast<std::uint32_t>(content.size()), &root);
        return Node(root);
    }
    const QByteArray plain = plainXmlPropertyList(content);
    if (!plain.isEmpty())
        plist_from_xml(plain.constData(), static_cast<std::uint32_t>(plain.size()), &root);
    return Node(root);
}
} // namespace

Result<QVariant> parsePropertyList(const QByteArray &content)
{
    if (content.size() > MaxBytes)
        return failure(u"larger than 8 MiB"_s);
    const Node root = parsed(content);
    const QVariant value = root ? valueOf(root.get()) : QVariant();
    if (!value.isValid())
        return failure(u"no property list"_s);
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
