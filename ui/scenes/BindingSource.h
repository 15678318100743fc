#pragma once
#include <base/UserDefaults.h>
#include <QMetaProperty>
#include <QObject>
#include <QPointer>
#include <QVariant>

/// The value behind a bound control. Main thread only.
class BindingSource : public QObject
{
    Q_OBJECT

public:
    virtual QVariant value() const = 0;
    virtual void setValue(const QVariant &value) = 0;

Q_SIGNALS:
    void valueChanged();
    /// The value's object was destroyed.
    void gone();
};

/// A property of an object, followed by its NOTIFY signal; without one it is read once. A missing property is
/// a fatal fault.
class PropertySource final : public BindingSource
{
    Q_OBJECT

public:
    PropertySource(QObject &object, const QString &property);

    QVariant value() const override;
    void setValue(const QVariant &value) override;

private:
    Q_SLOT void announceChange() { Q_EMIT valueChanged(); }

    QPointer<QObject> m_object;
    QMetaProperty m_property;
};

/// A key of the standard user defaults.
class DefaultsSource final : public BindingSource
{
    Q_OBJECT

public:
    explicit DefaultsSource(const QString &key);

    QVariant value() const override;
    void setValue(const QVariant &value) override;

private:
    QString m_key;
    UserDefaults::Observation m_observation;
};
