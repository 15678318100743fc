#pragma once
#include <QString>

namespace base
{
/// An expected failure as a value: its domain, a code within that domain, and the sentence that is shown.
/// `detail` is for the log only and is never shown.
struct Error
{
    QString domain;
    int code = 0;
    QString localizedDescription;
    QString detail = {};
};
} // namespace base
