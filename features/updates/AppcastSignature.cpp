#include "AppcastSignature.h"

#include <base/FatalFault.h>

#include <sodium.h>

using namespace Qt::StringLiterals;

namespace
{
static_assert(AppcastSignature::KeyBytes == crypto_sign_PUBLICKEYBYTES);

constexpr auto ItemForm = "plovendix-update-1\n";
constexpr auto FeedForm = "plovendix-feed-1\n";

void prepareLibrary()
{
    if (sodium_init() < 0)
        fatalFault(u"The signature library does not start"_s);
}

const unsigned char *bytesOf(const QByteArray &data)
{
    return reinterpret_cast<const unsigned char *>(data.constData());
}

unsigned char *writableBytesOf(QByteArray &data)
{
    return reinterpret_cast<unsigned char *>(data.data());
}

unsigned long long lengthOf(const QByteArray &data)
{
    return static_cast<unsigned long long>(data.size());
}

QByteArray joined(const QByteArray &form, const QStringList &texts)
{
    QByteArray bytes = form;
    for (const QString &text : texts) {
        const QByteArray encoded = text.toUtf8();
        bytes += QByteArray::number(encoded.size()) + ':' + encoded + ',';
    }
    return bytes;
}
} // namespace

QByteArray AppcastSignature::signedBytes(const QString &identifier, const AppcastItem &item)
{
    return joined(ItemForm, {identifier, item.version, item.link, item.notes});
}

QByteArray AppcastSignature::signedBytes(const QString &identifier, const AppcastFeed &feed)
{
    QStringList texts{identifier, feed.date};
    for (const AppcastItem &item : feed.items)
        texts += QString::fromLatin1(item.signature.toBase64());
    return joined(FeedForm, texts);
}

AppcastSignature::KeyPair AppcastSignature::makeKeyPair()
{
    prepareLibrary();
    KeyPair pair{QByteArray(crypto_sign_PUBLICKEYBYTES, '\0'), QByteArray(crypto_sign_SECRETKEYBYTES, '\0')};
    crypto_sign_keypair(writableBytesOf(pair.publicKey), writableBytesOf(pair.secretKey));
    return pair;
}

bool AppcastSignature::isSignatureOf(const QByteArray &bytes, const QByteArray &signature,
                                     const QByteArray &publicKey)
{
    if (publicKey.size() != KeyBytes || signature.size() != crypto_sign_BYTES)
        return false;
    prepareLibrary();
    return crypto_sign_verify_detached(bytesOf(signature), bytesOf(bytes), lengthOf(bytes),
                                       bytesOf(publicKey)) == 0;
}

QByteArray AppcastSignature::signatureOf(const QByteArray &bytes, const QByteArray &secretKey)
{
    if (secretKey.size() != crypto_sign_SECRETKEYBYTES)
        return {};
    prepareLibrary();
    QByteArray signature(crypto_sign_BYTES, '\0');
    crypto_sign_detached(writableBytesOf(signature), nullptr, bytesOf(bytes), lengthOf(bytes),
                         bytesOf(secretKey));
    return signature;
}
