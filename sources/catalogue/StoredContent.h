#pragma once
#include <QByteArray>

/// A subtitle's content as a catalogue stores it: plain, or packed in a separate table.
struct StoredContent
{
    QByteArray digest; // SHA-1 of the content
    QByteArray inRow;
    QByteArray apart;

    static StoredContent plain(const QByteArray &content);
    static StoredContent packed(const QByteArray &content);

    /// Unpacks a content; empty when the bytes are damaged or would unpack to more than a subtitle's limit.
    static QByteArray unpacked(const QByteArray &bytes);
};
