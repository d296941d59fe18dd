#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// What a statement has to do with keys. Only the plainest forms are taken apart, for the driver to
// carry out itself; all others are SQLCipher's to read, and the driver only knows that they are
// there. Comments may stand anywhere.
namespace KeyStatements {

// The pass phrase of PRAGMA key = '...' or "..." for the main database; nothing for any other
// statement, and nothing where there is no pass phrase to derive from: '' and raw keys (x'...').
std::optional<QByteArray> passPhraseOf(const QString& sql);

// Whether the statement gives or changes the main database's key, in whatever form.
bool givesKey(const QString& sql);

// Whether the statement may set how the main database's key is derived or used.
bool setsParameter(const QString& sql);

struct Attachment
{
    QByteArray file;
    QByteArray schema;
};

// The parts of ATTACH '...' AS ... that names no key; nothing for any other statement, and nothing
// for ':memory:' and '', which are no files.
std::optional<Attachment> attachmentOf(const QString& sql);

} // namespace KeyStatements
