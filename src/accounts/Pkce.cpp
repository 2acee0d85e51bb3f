#include "accounts/Pkce.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <random>

QString Pkce::codeVerifier()
{
    constexpr int length = 64;
    const QString alphabet =
        QStringLiteral("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~");
    std::uniform_int_distribution<qsizetype> place(0, alphabet.size() - 1);
    QString verifier(length, Qt::Uninitialized);
    for (QChar& c : verifier) {
        c = alphabet[place(*QRandomGenerator::system())];
    }
    return verifier;
}

QString Pkce::codeChallenge(const QString& codeVerifier)
{
    return base64Url(QCryptographicHash::hash(codeVerifier.toUtf8(), QCryptographicHash::Sha256));
}

QString base64Url(const QByteArray& bytes)
{
    return QString::fromLatin1(
        bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}
