#pragma once
#include <QString>

/// An expected failure as a value: who reports it, a number within that domain, and the sentence a person
/// reads. `detail` is for the log only and never shown.
struct Error
{
    QString domain;
    int code = 0;
    QString localizedDescription;
    QString detail = {};
};
