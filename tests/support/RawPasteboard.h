#pragma once
#include <QMimeData>

/// A pasteboard as it comes from another program: its content under one type, exactly as sent.
class RawPasteboard final : public QMimeData
{
public:
    RawPasteboard(const QString &type, const QByteArray &content) : m_type(type), m_content(content) {}

    QStringList formats() const override { return {m_type}; }
    bool hasFormat(const QString &type) const override { return type == m_type; }

protected:
    QVariant retrieveData(const QString &type, QMetaType) const override
    {
        return type == m_type ? QVariant(m_content) : QVariant();
    }

private:
    QString m_type;
    QByteArray m_content;
};
