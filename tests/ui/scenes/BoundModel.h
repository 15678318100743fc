#pragma once
#include <QMetaMethod>
#include <QObject>
#include <QVariant>

/// What controls are bound to. Every write notifies, whether it changed anything or not.
class BoundModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariant value READ value WRITE setValue NOTIFY changed)
    Q_PROPERTY(int atMostTen READ atMostTen WRITE setAtMostTen NOTIFY changed)
    Q_PROPERTY(QString constant READ constant CONSTANT)

public:
    QVariant value() const { return m_value; }
    void setValue(const QVariant &value)
    {
        m_value = value;
        ++writes;
        Q_EMIT changed();
    }
    int atMostTen() const { return m_value.toInt(); }
    void setAtMostTen(int number) { setValue(qMin(number, 10)); }
    QString constant() const { return QStringLiteral("always"); }

    bool hasReceivers() const { return isSignalConnected(QMetaMethod::fromSignal(&BoundModel::changed)); }

    int writes = 0;

Q_SIGNALS:
    void changed();

private:
    QVariant m_value;
};
