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

/// Whether the key's owner signed the bytes. False for an invalid key.
bool isSignatureOf(const QByteArray &bytes, const QByteArray &signature, const QByteArray &publicKey);
/// The signature of the bytes; empty when the key is not a secret key.
QByteArray signatureOf(const QByteArray &bytes, const QByteArray &secretKey);

/// Whether the key's owner signed the item or the feed for this program.
template <class Signed>
bool isValid(const QString &identifier, const Signed &content, const QByteArray &publicKey)
{
    return isSignatureOf(signedBytes(identifier, content), content.signature, publicKey);
}
template <class Signed>
QByteArray sign(const QString &identifier, const Signed &content, const QByteArray &secretKey)
{
    return signatureOf(signedBytes(identifier, content), secretKey);
}

struct KeyPair
{
    QByteArray publicKey;
    QByteArray secretKey;
};
/// For the signing tool and the tests.
KeyPair makeKeyPair();
} // namespace AppcastSignature
