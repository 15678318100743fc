#pragma once
#include <QByteArray>

/// A subtitle's content as a catalogue keeps it: as it is, or packed and apart from its row.
struct StoredContent
{
    QByteArray digest; // SHA-1 of the content
    QByteArray inRow;
    QByteArray apart;

    static StoredContent plain(const QByteArray &content);
    static StoredContent packed(const QByteArray &content);

    /// The content again; empty when the bytes are damaged or would unpack to more than a subtitle has.
    static QByteArray unpacked(const QByteArray &bytes);
};
