#include "Judge.h"

#include "RawDatabase.h"

#include <QCryptographicHash>

namespace {

QByteArray hashOf(const Files& files)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        hash.addData(it.key() + '\n' + QByteArray::number(it.value().size()) + '\n' + it.value());
    return hash.result();
}

} // namespace

Judge::Judge(const Files& before, const QStringList& transactions)
    : m_key(RawDatabase::keyOf(before.first()))
{
    RawDatabase database(before, m_key);
    m_contents.append(database.content());
    for (const QString& transaction : transactions) {
        database.run(transaction.toUtf8());
        m_contents.append(database.content());
    }
    if (!database.fault().isEmpty())
        qFatal("%s", database.fault().constData());
}

Judge::Finding Judge::look(const Files& files)
{
    const QByteArray hash = hashOf(files);
    if (!m_found.contains(hash))
        m_found.insert(hash, judge(files));
    return m_found.value(hash);
}

Judge::Finding Judge::judge(const Files& files) const
{
    RawDatabase database(files, m_key);
    database.check();
    const QByteArray content = database.content();
    if (!database.fault().isEmpty())
        return {-1, database.fault()};
    const int transactions = m_contents.indexOf(content);
    return {transactions, transactions < 0 ? "neither before nor after a transaction" : ""};
}
