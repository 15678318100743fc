#include "BindingSource.h"

#include <base/FatalFault.h>

#include <QMetaMethod>

PropertySource::PropertySource(QObject &object, const QString &property) : m_object(&object)
{
    const QMetaObject *meta = object.metaObject();
    m_property = meta->property(meta->indexOfProperty(property.toUtf8().constData()));
    if (!m_property.isValid())
        fatalFault(QStringLiteral("The %1 \"%2\" has no property \"%3\" to bind to")
                       .arg(QString::fromUtf8(meta->className()), object.objectName(), property));
    if (m_property.hasNotifySignal()) {
        const int slot = metaObject()->indexOfSlot("announceChange()");
        connect(&object, m_property.notifySignal(), this, metaObject()->method(slot));
    }
    connect(&object, &QObject::destroyed, this, &BindingSource::gone);
}

QVariant PropertySource::value() const
{
    return m_object ? m_property.read(m_object) : QVariant();
}

void PropertySource::setValue(const QVariant &value)
{
    if (m_object && m_property.isWritable())
        m_property.write(m_object, value);
}

DefaultsSource::DefaultsSource(const QString &key) : m_key(key)
{
    m_observation =
        UserDefaults::standard().observe(key, [this](const QVariant &) { Q_EMIT valueChanged(); });
}

QVariant DefaultsSource::value() const
{
    // The defaults have a property of this name, which is "en" when nothing is stored.
    if (m_key == QLatin1String("languageCode"))
        return UserDefaults::standard().languageCode();
    return UserDefaults::standard().object(m_key);
}

void DefaultsSource::setValue(const QVariant &value)
{
    UserDefaults::standard().setObject(m_key, value);
}
