#include "Services/UpdateSignature.h"

#include <sodium.h>

namespace zelk {

namespace {

const unsigned char *bytesOf(const QByteArray &bytes) {
    return reinterpret_cast<const unsigned char *>(bytes.constData());
}

} // namespace

std::optional<QByteArray> readUpdateKey(const QString &base64) {
    const auto key = QByteArray::fromBase64Encoding(base64.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!key || (*key).size() != crypto_sign_PUBLICKEYBYTES)
        return std::nullopt;
    return *key;
}

bool isSignedBy(const QByteArray &key, const QByteArray &signature, QFile &file) {
    if (key.size() != crypto_sign_PUBLICKEYBYTES || signature.size() != crypto_sign_BYTES || sodium_init() < 0)
        return false;
    const qint64 size = file.size();
    const uchar *content = size > 0 ? file.map(0, size) : nullptr;
    if (!content)
        return false;
    const bool good = crypto_sign_verify_detached(bytesOf(signature), content, static_cast<unsigned long long>(size),
                                                  bytesOf(key)) == 0;
    file.unmap(const_cast<uchar *>(content));
    return good;
}

} // namespace zelk
