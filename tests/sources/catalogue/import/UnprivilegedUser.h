#pragma once
#include <QtGlobal>
#include <unistd.h>

/// UnprivilegedUser's rights on files, for as long as this lives; the superuser may read and write
/// everything.
class UnprivilegedUser final
{
public:
    UnprivilegedUser() : m_person(::geteuid()) { change(m_person == 0 ? 65534 : m_person); }
    ~UnprivilegedUser() { change(m_person); }
    UnprivilegedUser(const UnprivilegedUser &) = delete;
    UnprivilegedUser &operator=(const UnprivilegedUser &) = delete;

private:
    static void change(uid_t person)
    {
        if (::seteuid(person) != 0)
            qFatal("the rights on files cannot be changed");
    }
    const uid_t m_person;
};
