#pragma once
#include <QMetaType>
#include <QObject>
#include <QString>

/// One entry of the language catalogue. Its two fields are readable by bindings and never change.
class Language final
{
    Q_GADGET
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString iso639_1 READ iso639_1 CONSTANT)

public:
    Language() = delete;
    Language(const QString &name, const QString &iso639_1) : m_name(name), m_iso639_1(iso639_1) {}

    /// As the person's locale calls it; "-" for the separator entry.
    QString name() const { return m_name; }
    /// The two-letter code, "pb" for Brazilian Portuguese, "-" for the separator entry, and three letters
    /// where ISO 639-1 has no code.
    QString iso639_1() const { return m_iso639_1; }

    /// The code alone decides.
    bool operator==(const Language &other) const { return m_iso639_1 == other.m_iso639_1; }

private:
    QString m_name;
    QString m_iso639_1;
};
