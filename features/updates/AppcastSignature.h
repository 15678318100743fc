#pragma once
#include "Appcast.h"

/// Ed25519 signatures of versions and of feeds. A version's signature covers the program, the version, the
/// link and the notes, so that none can be exchanged; a feed's covers its date and items, so that an old list
/// cannot get a new date. Plain functions, any thread.
namespace AppcastSignature
{
inline constexpr qsizetype KeyBytes = 32;

/// The signed bytes: a line with the format's name, then the four texts in UTF-8, each with its length in
/// bytes before it ("3:1.1,"), so that the texts cannot be shifted.
QByteArray signedBytes(const QString &identifier, const AppcastItem &item);
/// The same for a feed: the format's name, the program, the date and each item's signature in base64.
QByteArray signedBytes(const QString &identifier, const AppcastFeed &feed);
/// Whether the key's owner signed the item for this program. False for an invalid key.
bool isValid(const QString &identifier, const AppcastItem &item, const QByteArray &publicKey);
bool isValid(const QString &identifier, const AppcastFeed &feed, const QByteArray &publicKey);

struct KeyPair
{
    QByteArray publicKey;
    QByteArray secretKey;
};
/// For the signing tool and the tests.
KeyPair makeKeyPair();
/// Empty when the key is not a secret key.
QByteArray sign(const QString &identifier, const AppcastItem &item, const QByteArray &secretKey);
QByteArray sign(const QString &identifier, const AppcastFeed &feed, const QByteArray &secretKey);
} // namespace AppcastSignature
