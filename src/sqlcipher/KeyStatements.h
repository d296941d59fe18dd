#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The two kinds of statements that the driver carries out itself, because they give a key.
namespace KeyStatements {

// The pass phrase of "PRAGMA key='...'"; nothing for any other statement.
std::optional<QByteArray> passPhraseOf(const QString& sql);

struct Attachment
{
    QByteArray file;
    QByteArray schema;
};

// The parts of "ATTACH DATABASE '...' AS ..." that names no key of its own; nothing for any other.
std::optional<Attachment> attachmentOf(const QString& sql);

} // namespace KeyStatements
