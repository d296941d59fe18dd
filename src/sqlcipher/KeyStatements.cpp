#include "sqlcipher/KeyStatements.h"

#include <QRegularExpression>

namespace KeyStatements {

namespace {

constexpr auto options = QRegularExpression::CaseInsensitiveOption;

bool startsWithWord(const QString& sql, QLatin1String word)
{
    return QStringView(sql).trimmed().startsWith(word, Qt::CaseInsensitive);
}

QByteArray unquoted(QString literal)
{
    return literal.replace(QLatin1String("''"), QLatin1String("'")).toUtf8();
}

} // namespace

std::optional<QByteArray> passPhraseOf(const QString& sql)
{
    // Almost every statement is neither: no regular expression for those.
    if (!startsWithWord(sql, QLatin1String("pragma")))
        return {};
    static const QRegularExpression pattern(
        QStringLiteral("^\\s*PRAGMA\\s+key\\s*=\\s*'((?:[^']|'')*)'\\s*;?\\s*$"), options);
    const QRegularExpressionMatch match = pattern.match(sql);
    if (!match.hasMatch())
        return {};
    return unquoted(match.captured(1));
}

std::optional<Attachment> attachmentOf(const QString& sql)
{
    if (!startsWithWord(sql, QLatin1String("attach")))
        return {};
    static const QRegularExpression pattern(
        QStringLiteral(
            "^\\s*ATTACH\\s+(?:DATABASE\\s+)?'((?:[^']|'')*)'\\s+AS\\s+(\\w+)\\s*;?\\s*$"),
        options);
    const QRegularExpressionMatch match = pattern.match(sql);
    if (!match.hasMatch())
        return {};
    return Attachment {unquoted(match.captured(1)), match.captured(2).toUtf8()};
}

} // namespace KeyStatements
