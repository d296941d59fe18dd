#pragma once

#include <QByteArray>

#include <map>
#include <mutex>
#include <utility>

// The encryption keys that this process has derived. Deriving one from a pass phrase takes tens of
// milliseconds, and the databases are opened around almost every statement. Any thread.
//
// A key belongs to a pass phrase and a salt, and the salt stands at the head of each file: a file
// that is replaced by one with another salt gets a key of its own.
class KeyCache
{
public:
    static constexpr int saltSize = 16; // bytes

    static KeyCache& instance();

    // The key in the form that SQLCipher takes without deriving anything:
    // x'<64 hex digits of the key><32 hex digits of the salt>'.
    QByteArray rawKey(const QByteArray& passPhrase, const QByteArray& salt);

    // To be called when the key did not open the file: it may be made with other parameters.
    void forget(const QByteArray& passPhrase, const QByteArray& salt);

private:
    std::mutex m_mutex;
    std::map<std::pair<QByteArray, QByteArray>, QByteArray> m_keys;
};
