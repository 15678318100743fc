#pragma once
#include <QString>
#include <QVariant>

/// How one value is written in the settings file and read back; see SettingsFile for the rules. Any thread.

/// The text of a value without quotes; also the text of a value of another type.
QString plainSettingsText(const QVariant &value);
/// The same, quoted when it would not read back as a text.
QString settingsTextFromValue(const QVariant &value);
QVariant settingsValueFromText(const QString &text);
