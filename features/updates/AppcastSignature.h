#pragma once
#include "Appcast.h"

/// Ed25519 signatures of versions and of feeds. What is signed binds the program, the version, the link and
/// the notes together, so that none can be exchanged for another's; and a feed's date and its items, so that
/// no old list can be given a new date. Plain functions, any thread.
namespace AppcastSignature
{
inline constexpr qsizetype KeyBytes = 32;

/// The bytes that are signed: a line with the name of this form, then the four texts in UTF-8, each with its
/// length in bytes in front ("3:1.1,"), so that no text can run into the next.
QByteArray signedBytes(const QString &identifier, const AppcastItem &item);
/// The same of a feed: the name of that form, the program, the date and each item's signature in base64.
QByteArray signedBytes(const QString &identifier, const AppcastFeed &feed);
/// Whether the item was signed for this program by the owner of the key. False for a key that is none.
bool isValid(const QString &identifier, const AppcastItem &item, const QByteArray &publicKey);
bool isValid(const QString &identifier, const AppcastFeed &feed, const QByteArray &publicKey);

struct KeyPair
{
    QByteArray publicKey;
    QByteArray secretKey;
};
/// For the maker's tool and the tests.
KeyPair makeKeyPair();
/// Empty where the key is no secret key.
QByteArray sign(const QString &identifier, const AppcastItem &item, const QByteArray &secretKey);
QByteArray sign(const QString &identifier, const AppcastFeed &feed, const QByteArray &secretKey);
} // namespace AppcastSignature
