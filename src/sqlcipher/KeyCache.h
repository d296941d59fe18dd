#pragma once

#include <QByteArray>

#include <map>
#include <mutex>
#include <utility>

// The encryption keys that this process has derived. Deriving one from a pass phrase takes tens of
// milliseconds, and the databases are opened around almost every statement. Any thread: who asks
// for a key that is being derived waits for it, all others do not.
//
// A key belongs to a pass phrase and a salt, and the salt stands at the head of each file: a file
// that is replaced by one with another salt gets a key of its own. Keys stay, also those that open
// nothing: a damaged file is met again with each statement, and must cost one derivation in all.
class KeyCache
{
public:
    static constexpr int saltSize = 16; // bytes
    static constexpr int rounds = 64000; // of PBKDF2-HMAC-SHA1, SQLCipher 3's default

    static KeyCache& instance();

    // The key in the form that SQLCipher takes without deriving anything:
    // x'<64 hex digits of the key><32 hex digits of the salt>'. Empty when it cannot be derived.
    QByteArray rawKey(const QByteArray& passPhrase, const QByteArray& salt);

private:
    struct Entry
    {
        std::once_flag derived;
        QByteArray key;
    };

    Entry& entry(const QByteArray& passPhrase, const QByteArray& salt);

    std::mutex m_mutex; // for the map, not for what is in it
    std::map<std::pair<QByteArray, QByteArray>, Entry> m_entries;
};
