#include "ServiceStatus.h"

ServiceStatus &ServiceStatus::shared()
{
    static ServiceStatus instance;
    return instance;
}

void ServiceStatus::setValue(const Value &value)
{
    if (m_value == value)
        return;
    m_value = value;
    Q_EMIT changed();
}
