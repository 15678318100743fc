#pragma once
#include <QString>
#include <QVariant>

/// How one value is written in the settings file and read back; see SettingsFile for the rules. Any thread.

/// The text that stands for a value, without quotes: also how a value of another type reads as text.
QString plainSettingsText(const QVariant &value);
/// The same, in quotes where it would not read back as a text.
QString settingsTextFromValue(const QVariant &value);
QVariant settingsValueFromText(const QString &text);
