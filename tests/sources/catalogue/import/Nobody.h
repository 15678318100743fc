#pragma once
#include <QtGlobal>
#include <unistd.h>

/// Nobody's rights on files, for as long as this lives; the superuser may read and write everything.
class Nobody final
{
public:
    Nobody() : m_person(::geteuid()) { change(m_person == 0 ? 65534 : m_person); }
    ~Nobody() { change(m_person); }
    Nobody(const Nobody &) = delete;
    Nobody &operator=(const Nobody &) = delete;

private:
    static void change(uid_t person)
    {
        if (::seteuid(person) != 0)
            qFatal("the rights on files cannot be changed");
    }
    const uid_t m_person;
};
