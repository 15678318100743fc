#pragma once
#include <QMetaMethod>
#include <QObject>
#include <QVariant>

/// What tests bind controls to. Every write notifies, whether it changed anything or not.
class BoundModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool flag READ flag WRITE setFlag NOTIFY changed)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed)
    Q_PROPERTY(int atMostTen READ atMostTen WRITE setAtMostTen NOTIFY changed)
    Q_PROPERTY(QVariant anything READ anything WRITE setAnything NOTIFY changed)
    Q_PROPERTY(QString constant READ constant CONSTANT)

public:
    bool flag() const { return m_flag; }
    void setFlag(bool flag) { write(m_flag, flag); }
    QString text() const { return m_text; }
    void setText(const QString &text) { write(m_text, text); }
    int atMostTen() const { return m_atMostTen; }
    void setAtMostTen(int number) { write(m_atMostTen, qMin(number, 10)); }
    QVariant anything() const { return m_anything; }
    void setAnything(const QVariant &value) { write(m_anything, value); }
    QString constant() const { return QStringLiteral("always"); }

    int writes() const { return m_writes; }
    int receiversOfChange() const
    {
        return isSignalConnected(QMetaMethod::fromSignal(&BoundModel::changed)) ? 1 : 0;
    }

Q_SIGNALS:
    void changed();

private:
    template <class Value>
    void write(Value &member, const Value &value)
    {
        member = value;
        ++m_writes;
        Q_EMIT changed();
    }

    bool m_flag = false;
    QString m_text;
    int m_atMostTen = 0;
    QVariant m_anything;
    int m_writes = 0;
};
