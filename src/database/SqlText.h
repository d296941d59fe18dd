#pragma once

#include <QString>

// Statements put together from texts that come from outside: settings, file names, messages.
namespace SqlText {

// Fills the places "%1", "%2" ... of a pattern with the texts, in one pass, so that a "%1" in a
// text stays. Nothing is escaped: a text goes in as it is. But one that stands between apostrophes
// ("'%2'") and would end its literal, by an apostrophe that is not doubled, and any that holds a
// NUL give a refused statement: a text never acts as SQL.
template <typename... Texts> QString fill(const QString& pattern, const Texts&... texts);

// A column's name as it is, when it is plain (letters, digits and underscores, no digit first); any
// other text makes the statement that it is put into fail, as an unknown column does.
QString column(const QString& name);

// A statement, or a part of one, that fails when it is prepared.
QString refused(const QString& sql);
// The same without what refuses it, as the log shows it.
QString shown(const QString& sql);

bool fitsIntoLiteral(const QString& text);

} // namespace SqlText

template <typename... Texts> QString SqlText::fill(const QString& pattern, const Texts&... texts)
{
    static_assert(sizeof...(texts) < 10, "a place is one digit");
    char literal[] = "'%0'";
    const auto mayStand = [&](const QString& text) {
        ++literal[2];
        const bool inLiteral = pattern.contains(QLatin1String(literal));
        return !text.contains(QChar::Null) && (!inLiteral || fitsIntoLiteral(text));
    };
    const bool allMay = (mayStand(texts) && ...);
    const QString sql = pattern.arg(QString(texts)...);
    return allMay ? sql : refused(sql);
}
