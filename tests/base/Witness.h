#pragma once
#include <base/UserDefaults.h>

/// Keeps what an observer was told.
class Witness final
{
public:
    Witness(UserDefaults &defaults, const QString &key)
        : m_observation(defaults.observe(key, [this](const QVariant &value) { m_seen += value; }))
    {
    }
    QVariantList seen() const { return m_seen; }

private:
    QVariantList m_seen;
    UserDefaults::Observation m_observation;
};
