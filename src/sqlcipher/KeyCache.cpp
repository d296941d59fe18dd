#include "sqlcipher/KeyCache.h"

#include <nettle/pbkdf2.h>

namespace {

constexpr int keySize = 32;

const uint8_t* bytesOf(const QByteArray& bytes)
{
    return reinterpret_cast<const uint8_t*>(bytes.constData());
}

// By Nettle, which takes half as long as the library that SQLCipher uses itself: no other work of a
// start takes longer.
QByteArray derive(const QByteArray& passPhrase, const QByteArray& salt)
{
    QByteArray key(keySize, '\0');
    pbkdf2_hmac_sha1(static_cast<std::size_t>(passPhrase.size()), bytesOf(passPhrase),
                     KeyCache::rounds, static_cast<std::size_t>(salt.size()), bytesOf(salt),
                     keySize, reinterpret_cast<uint8_t*>(key.data()));
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
    Entry& wanted = entry(passPhrase, salt);
    std::call_once(wanted.derived, [&] { wanted.key = derive(passPhrase, salt); });
    return wanted.key;
}

KeyCache::Entry& KeyCache::entry(const QByteArray& passPhrase, const QByteArray& salt)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_entries[{passPhrase, salt}]; // stays where it is: a map's entries never move
}
