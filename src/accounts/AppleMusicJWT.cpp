#include "accounts/AppleMusicJWT.h"

#include "accounts/Pkce.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <openssl/core_names.h>
#include <openssl/ecdsa.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

#include <cmath>
#include <memory>
#include <optional>

namespace {

template<auto function>
struct Free {
    template<typename T>
    void operator()(T* object) const
    {
        function(object);
    }
};
using Bio = std::unique_ptr<BIO, Free<BIO_free>>;
using Key = std::unique_ptr<EVP_PKEY, Free<EVP_PKEY_free>>;
using Digest = std::unique_ptr<EVP_MD_CTX, Free<EVP_MD_CTX_free>>;
using Signature = std::unique_ptr<ECDSA_SIG, Free<ECDSA_SIG_free>>;

bool isP256(const EVP_PKEY& key)
{
    std::array<char, 64> group{};
    return EVP_PKEY_get_utf8_string_param(&key, OSSL_PKEY_PARAM_GROUP_NAME, group.data(), group.size(),
                                          nullptr) == 1 &&
           qstrcmp(group.data(), "prime256v1") == 0;
}

/// A key with a password is none: nobody is there to be asked for it.
Key parseKey(const QByteArray& pem)
{
    const Bio bio(BIO_new_mem_buf(pem.constData(), static_cast<int>(pem.size())));
    const auto noPassword = [](char*, int, int, void*) { return -1; };
    Key key(PEM_read_bio_PrivateKey(bio.get(), nullptr, noPassword, nullptr));
    return key && isP256(*key) ? std::move(key) : nullptr;
}

/// The signature's two numbers, 32 bytes each, the most significant first.
QByteArray rawSignature(const QByteArray& der)
{
    constexpr int numberSize = 32;
    const auto* bytes = reinterpret_cast<const unsigned char*>(der.constData());
    const Signature signature(d2i_ECDSA_SIG(nullptr, &bytes, der.size()));
    if (!signature) {
        return {};
    }
    QByteArray raw(2 * qsizetype(numberSize), '\0');
    auto* const target = reinterpret_cast<unsigned char*>(raw.data());
    const bool isWhole =
        BN_bn2binpad(ECDSA_SIG_get0_r(signature.get()), target, numberSize) == numberSize &&
        BN_bn2binpad(ECDSA_SIG_get0_s(signature.get()), target + numberSize, numberSize) == numberSize;
    return isWhole ? raw : QByteArray();
}

/// Empty when it cannot be signed.
QByteArray signature(EVP_PKEY& key, const QByteArray& text)
{
    const Digest digest(EVP_MD_CTX_new());
    if (EVP_DigestSignInit(digest.get(), nullptr, EVP_sha256(), nullptr, &key) != 1) {
        return {};
    }
    QByteArray der(EVP_PKEY_get_size(&key), '\0');
    auto size = static_cast<size_t>(der.size());
    const auto* const input = reinterpret_cast<const unsigned char*>(text.constData());
    if (EVP_DigestSign(digest.get(), reinterpret_cast<unsigned char*>(der.data()), &size, input,
                       static_cast<size_t>(text.size())) != 1) {
        return {};
    }
    der.truncate(static_cast<qsizetype>(size));
    return rawSignature(der);
}

QString encoded(const QJsonObject& object)
{
    return base64Url(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace

QString AppleMusicJWT::name(SigningError error)
{
    switch (error) {
    case SigningError::missingP8File:
        return QStringLiteral("missingP8File");
    case SigningError::malformedP8:
        return QStringLiteral("malformedP8");
    case SigningError::signingFailed:
        return QStringLiteral("signingFailed");
    case SigningError::base64Failed:
        return QStringLiteral("base64Failed");
    }
    return {};
}

std::variant<QString, AppleMusicJWT::SigningError> AppleMusicJWT::sign(const QString& pem,
                                                                       const QString& keyID,
                                                                       const QString& teamID,
                                                                       double ttlSeconds, Date now)
{
    const Key key = parseKey(pem.toUtf8());
    if (!key) {
        return SigningError::malformedP8;
    }
    const auto issued = static_cast<qint64>(std::floor(now.sinceUnixEpoch()));
    const QString header =
        encoded({{QStringLiteral("alg"), QStringLiteral("ES256")}, {QStringLiteral("kid"), keyID}});
    const QString claims = encoded({{QStringLiteral("iss"), teamID},
                                    {QStringLiteral("iat"), issued},
                                    {QStringLiteral("exp"), issued + static_cast<qint64>(ttlSeconds)}});
    const QString input = header + u'.' + claims;
    const QByteArray rawBytes = signature(*key, input.toUtf8());
    if (rawBytes.isEmpty()) {
        return SigningError::signingFailed;
    }
    return QString(input + u'.' + base64Url(rawBytes));
}
