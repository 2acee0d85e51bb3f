#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Signatures of update packages, by Ed25519.
namespace UpdateSignature {

constexpr qsizetype keyLength = 32; // bytes

/// Whether `data` is what the owner of the public key has signed. False, too, for a key or a signature that
/// is none.
bool isValid(const QByteArray& publicKey, const QByteArray& signature, QByteArrayView data);

} // namespace UpdateSignature
