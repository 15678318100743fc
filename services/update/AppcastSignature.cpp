#include "AppcastSignature.h"

#include <platform/FatalFault.h>

#include <sodium.h>

using namespace Qt::StringLiterals;

namespace
{
static_assert(AppcastSignature::KeyBytes == crypto_sign_PUBLICKEYBYTES);

constexpr auto Form = "plovendix-update-1\n";

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
} // namespace

QByteArray AppcastSignature::signedBytes(const QString &identifier, const AppcastItem &item)
{
    QByteArray bytes = Form;
    for (const QString &text : {identifier, item.version, item.link, item.notes}) {
        const QByteArray encoded = text.toUtf8();
        bytes += QByteArray::number(encoded.size()) + ':' + encoded + ',';
    }
    return bytes;
}

bool AppcastSignature::isValid(const QString &identifier, const AppcastItem &item,
                               const QByteArray &publicKey)
{
    if (publicKey.size() != KeyBytes || item.signature.size() != crypto_sign_BYTES)
        return false;
    prepareLibrary();
    const QByteArray bytes = signedBytes(identifier, item);
    return crypto_sign_verify_detached(bytesOf(item.signature), bytesOf(bytes), lengthOf(bytes),
                                       bytesOf(publicKey)) == 0;
}

AppcastSignature::KeyPair AppcastSignature::makeKeyPair()
{
    prepareLibrary();
    KeyPair pair{QByteArray(crypto_sign_PUBLICKEYBYTES, '\0'), QByteArray(crypto_sign_SECRETKEYBYTES, '\0')};
    crypto_sign_keypair(writableBytesOf(pair.publicKey), writableBytesOf(pair.secretKey));
    return pair;
}

QByteArray AppcastSignature::sign(const QString &identifier, const AppcastItem &item,
                                  const QByteArray &secretKey)
{
    if (secretKey.size() != crypto_sign_SECRETKEYBYTES)
        return {};
    prepareLibrary();
    const QByteArray bytes = signedBytes(identifier, item);
    QByteArray signature(crypto_sign_BYTES, '\0');
    crypto_sign_detached(writableBytesOf(signature), nullptr, bytesOf(bytes), lengthOf(bytes),
                         bytesOf(secretKey));
    return signature;
}
