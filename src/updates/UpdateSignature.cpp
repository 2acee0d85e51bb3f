#include "updates/UpdateSignature.h"

#include <openssl/evp.h>

#include <memory>

namespace {

const unsigned char* bytes(QByteArrayView view)
{
    return reinterpret_cast<const unsigned char*>(view.data());
}

} // namespace

bool UpdateSignature::isValid(const QByteArray& publicKey, const QByteArray& signature, QByteArrayView data)
{
    if (publicKey.size() != keyLength) {
        return false;
    }
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(
        EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, bytes(publicKey), keyLength), &EVP_PKEY_free);
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    return key && context && EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) == 1 &&
           EVP_DigestVerify(context.get(), bytes(signature), static_cast<size_t>(signature.size()),
                            bytes(data), static_cast<size_t>(data.size())) == 1;
}
