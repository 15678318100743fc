#pragma once
#include <QSet>
#include <QString>
#include <QStringList>

/// What a stand-in does other than its best. Each behaviour has a name; "NAME@ENDPOINT" limits it to one
/// endpoint
/// ("search", "login", "logout", "user", "download", "link", "find", "show", "configuration", "image"). One
/// that could meet any endpoint means the search, or for subtitles and posters theirs, unless it says so.
class Behaviours final
{
public:
    /// An unknown name stops the program: a test that asks for nothing would prove nothing.
    void select(const QString &behaviour);
    void clear() { m_selected.clear(); }

    bool has(QLatin1StringView name) const { return m_selected.contains(name); }
    bool has(QLatin1StringView name, QLatin1StringView endpoint) const;
    /// As above, and from then on no more.
    bool takeOnce(QLatin1StringView name, QLatin1StringView endpoint);

    static QStringList names();

private:
    QSet<QString> m_selected;
};
