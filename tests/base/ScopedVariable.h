#pragma once
#include <QByteArray>

/// Gives an environment variable another value, or none, until the end of the scope.
class ScopedVariable final
{
public:
    ScopedVariable(const char *name, const QByteArray &value) : ScopedVariable(name) { qputenv(name, value); }
    /// Unsets it.
    explicit ScopedVariable(const char *name)
        : m_name(name), m_wasSet(qEnvironmentVariableIsSet(name)), m_before(qgetenv(name))
    {
        qunsetenv(name);
    }
    ~ScopedVariable()
    {
        if (m_wasSet)
            qputenv(m_name, m_before);
        else
            qunsetenv(m_name);
    }
    ScopedVariable(const ScopedVariable &) = delete;
    ScopedVariable &operator=(const ScopedVariable &) = delete;

private:
    const char *m_name;
    bool m_wasSet;
    QByteArray m_before;
};
