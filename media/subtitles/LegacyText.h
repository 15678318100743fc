#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

/// A text as a character set reads it.
struct LegacyText
{
    QString text;
    bool hasErrors = false; // bytes that are no character of the set; U+FFFD stands for them

    /// By the toolkit's decoders, or the system's for what those do not know; nothing for a set that neither
    /// knows. Any thread.
    static std::optional<LegacyText> read(const QByteArray &bytes, const QByteArray &set);
};
