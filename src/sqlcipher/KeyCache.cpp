#include "sqlcipher/KeyCache.h"

#include <openssl/evp.h>

namespace {

constexpr int keySize = 32;

QByteArray derive(const QByteArray& passPhrase, const QByteArray& salt)
{
    QByteArray key(keySize, '\0');
    const int done = PKCS5_PBKDF2_HMAC_SHA1(
        passPhrase.constData(), passPhrase.size(),
        reinterpret_cast<const unsigned char*>(salt.constData()), salt.size(), KeyCache::rounds,
        keySize, reinterpret_cast<unsigned char*>(key.data()));
    return done == 1 ? "x'" + key.toHex() + salt.toHex() + "'" : QByteArray();
}

} // namespace

KeyCache& KeyCache::instance()
{
    static KeyCache cache;
    return cache;
}

QByteArray KeyCache::rawKey(const QByteArray& passPhrase, const QByteArray& salt)
{
    Entry& wanted = entry(passPhrase, salt);
    std::call_once(wanted.derived, [&] { wanted.key = derive(passPhrase, salt); });
    return wanted.key;
}

KeyCache::Entry& KeyCache::entry(const QByteArray& passPhrase, const QByteArray& salt)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_entries[{passPhrase, salt}]; // stays where it is: a map's entries never move
}
