#include "OneTimeUpload.h"

#include <cstring>

OneTimeUpload::OneTimeUpload(const QByteArray &content, QObject *parent)
    : QIODevice(parent), m_content(content)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 OneTimeUpload::bytesAvailable() const
{
    return m_content.size() - m_read;
}

qint64 OneTimeUpload::readData(char *data, qint64 maxSize)
{
    const qint64 count = std::min(maxSize, m_content.size() - m_read);
    if (count == 0)
        return -1;
    std::memcpy(data, m_content.constData() + m_read, static_cast<std::size_t>(count));
    m_read += count;
    return count;
}
