#include "sqlcipher/KeyStatements.h"

#include <QRegularExpression>

namespace KeyStatements {

namespace {

// "_" stands for blanks and comments, "<name>" for a name with or without quotation marks.
// To SQLite a vertical tabulator is blank, but only behind another blank.
QRegularExpression statementPattern(QString pattern)
{
    static const QRegularExpression name(QStringLiteral("<([^>]+)>"));
    pattern.replace(
        QLatin1Char('_'),
        QStringLiteral("(?:[ \\t\\n\\f\\r]\\x0b*|--[^\\n]*(?:\\n|$)|/\\*.*?(?:\\*/|$))*+"));
    pattern.replace(name, QStringLiteral("(?:\\1|\"\\1\"|'\\1'|`\\1`|\\[\\1\\])"));
    return QRegularExpression(QLatin1Char('^') + pattern,
                              QRegularExpression::CaseInsensitiveOption
                                  | QRegularExpression::DotMatchesEverythingOption);
}

// SQLCipher carries its pragmas out while they are prepared, so those behind EXPLAIN too.
const QString anyPragmaOfMain
    = QStringLiteral("(?:_;)*_(?:EXPLAIN\\b_(?:QUERY_PLAN\\b_)?)?PRAGMA\\b_(?:<main>_\\._)?");

// Whether the word can be there as a statement's first one, which only blanks, comments, semicolons
// and EXPLAIN may precede: almost every statement is spared the regular expressions, most of them
// even the search.
bool mayBegin(const char* word, const QString& sql)
{
    const QChar first = sql.isEmpty() ? QChar() : sql.at(0).toLower();
    const bool isOtherWord
        = first >= 'a' && first <= 'z' && first != 'e' && first != QLatin1Char(*word);
    return !isOtherWord && sql.contains(QLatin1String(word), Qt::CaseInsensitive);
}

// The text of a literal, or the name that a quoted identifier stands for.
QString unquoted(const QString& text)
{
    const QChar mark = text.at(0);
    if (mark != QLatin1Char('\'') && mark != QLatin1Char('"'))
        return text;
    return text.mid(1, text.size() - 2).replace(QString(2, mark), mark);
}

bool isPassPhrase(const QString& key)
{
    return !key.isEmpty() && !key.startsWith(QLatin1String("x'"), Qt::CaseInsensitive);
}

// The pass phrase where the statement is as programs of the platform write it; nothing for any
// other form. Such a program gets by without the regular expressions, and that without half a
// megabyte of their library.
std::optional<QByteArray> plainPassPhraseOf(const QString& sql)
{
    const QLatin1String head("PRAGMA key='");
    const QLatin1String tail("';");
    if (sql.size() < head.size() + tail.size() || !sql.startsWith(head) || !sql.endsWith(tail))
        return {};
    const QString key = sql.mid(head.size()).chopped(tail.size());
    if (key.isEmpty() || key.contains(QLatin1Char('\'')))
        return {};
    return key.toUtf8();
}

bool isFile(const QString& name)
{
    return !name.isEmpty() && name != QLatin1String(":memory:");
}

} // namespace

std::optional<QByteArray> passPhraseOf(const QString& sql)
{
    if (!mayBegin("pragma", sql))
        return {};
    if (auto passPhrase = plainPassPhraseOf(sql))
        return passPhrase;
    static const QRegularExpression pattern = statementPattern(QStringLiteral(
        "_PRAGMA\\b_(?:<main>_\\._)?<key>_=_('(?:[^']|'')*'|\"(?:[^\"]|\"\")*\")_;?_$"));
    const QRegularExpressionMatch match = pattern.match(sql);
    if (!match.hasMatch() || !isPassPhrase(unquoted(match.captured(1))))
        return {};
    return unquoted(match.captured(1)).toUtf8();
}

bool givesKey(const QString& sql)
{
    if (!mayBegin("pragma", sql))
        return false;
    static const QRegularExpression pattern
        = statementPattern(anyPragmaOfMain + QStringLiteral("<(?:hex)?(?:re)?key>_[=(]"));
    return pattern.match(sql).hasMatch();
}

bool setsParameter(const QString& sql)
{
    if (!mayBegin("pragma", sql))
        return false;
    static const QRegularExpression pattern
        = statementPattern(anyPragmaOfMain + QStringLiteral("[\"'`\\[]?(?:cipher|kdf|fast)"));
    return pattern.match(sql).hasMatch();
}

std::optional<Attachment> attachmentOf(const QString& sql)
{
    if (!mayBegin("attach", sql))
        return {};
    static const QRegularExpression pattern
        = statementPattern(QStringLiteral("_ATTACH\\b_(?:DATABASE\\b_)?('(?:[^']|'')*')_AS\\b_"
                                          "((?!\\d)\\w+|'(?:[^']|'')*'|\"(?:[^\"]|\"\")*\")_;?_$"));
    const QRegularExpressionMatch match = pattern.match(sql);
    if (!match.hasMatch() || !isFile(unquoted(match.captured(1))))
        return {};
    return Attachment {unquoted(match.captured(1)).toUtf8(), unquoted(match.captured(2)).toUtf8()};
}

} // namespace KeyStatements
