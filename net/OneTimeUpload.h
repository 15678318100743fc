#pragma once
#include <QByteArray>
#include <QIODevice>

/// A request body that can be read once and not rewound. Qt repeats a request when a kept-alive connection
/// breaks before the answer; with such a body it reports the failure instead, so nothing is sent twice.
class OneTimeUpload final : public QIODevice
{
public:
    OneTimeUpload(const QByteArray &content, QObject *parent);

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override;
    bool seek(qint64) override { return false; } // the base class would log a warning
    bool atEnd() const override { return bytesAvailable() == 0; }

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray m_content;
    qint64 m_read = 0;
};
