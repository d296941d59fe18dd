#include "sqlcipher/KeyCache.h"

#include <openssl/evp.h>

namespace {

// As SQLCipher 3 derives it.
constexpr int rounds = 64000;
constexpr int keySize = 32;

QByteArray derive(const QByteArray& passPhrase, const QByteArray& salt)
{
    QByteArray key(keySize, '\0');
    PKCS5_PBKDF2_HMAC_SHA1(passPhrase.constData(), passPhrase.size(),
                           reinterpret_cast<const unsigned char*>(salt.constData()), salt.size(),
                           rounds, keySize, reinterpret_cast<unsigned char*>(key.data()));
    return "x'" + key.toHex() + salt.toHex() + "'";
}

} // namespace

KeyCache& KeyCache::instance()
{
    static KeyCache cache;
    return cache;
}

QByteArray KeyCache::rawKey(const QByteArray& passPhrase, const QByteArray& salt)
{
    // Derived under the lock, so that threads that start together do the work once.
    const std::lock_guard<std::mutex> lock(m_mutex);
    QByteArray& key = m_keys[{passPhrase, salt}];
    if (key.isEmpty())
        key = derive(passPhrase, salt);
    return key;
}

void KeyCache::forget(const QByteArray& passPhrase, const QByteArray& salt)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_keys.erase({passPhrase, salt});
}
