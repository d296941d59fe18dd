// A setting's name and value, a line each: what is stored is they, and nothing else changes.

#include "Dispenser.h"
#include "Fuzz.h"
#include "SqlTest.h"
#include "database/SqlText.h"
#include "database/TableDictionary.h"

#include <QMap>
#include <QRegularExpression>

namespace {

using Settings = QMap<QString, QString>;

TestConnection& shared()
{
    static TestConnection database(Dispenser::sharedDatabase);
    return database;
}

Settings settings()
{
    Settings all;
    QSqlQuery query(shared());
    query.exec("SELECT name, value FROM dictionary");
    while (query.next())
        all.insert(query.value(0).toString(), query.value(1).toString());
    return all;
}

void startAnew()
{
    static const bool saved
        = QSqlQuery(shared()).exec("CREATE TEMP TABLE saved AS SELECT * FROM dictionary");
    HOLDS(saved && QSqlQuery(shared()).exec("DELETE FROM dictionary")
              && QSqlQuery(shared()).exec("INSERT INTO dictionary SELECT * FROM saved"),
          "cannot start anew");
}

bool fits(const QString& text)
{
    static const QRegularExpression literal("\\A([^'\\x00]|'')*\\z");
    return literal.match(text).hasMatch();
}

QString halved(QString text)
{
    return text.replace("''", "'");
}

} // namespace

void tryInput(const QByteArray& input)
{
    const QStringList lines = linesOf(input, 2);
    const QString& name = lines.constFirst();
    const QString& value = lines.constLast();

    static TestConnection memory(":memory:", {});
    QSqlQuery query(memory);
    const bool selected = query.exec(SqlText::fill("SELECT '%1', '%2'", name, value));
    HOLDS(selected == (fits(name) && fits(value)), lines);
    if (selected)
        HOLDS(query.next() && query.value(0) == halved(name) && query.value(1) == halved(value),
              lines << query.value(0) << query.value(1));

    startAnew();
    Settings wanted = settings();
    if (selected)
        wanted.insert(halved(name), halved(value));
    TableDictionary dictionary;
    HOLDS(dictionary.setDictionaryValue(name, value) == selected && settings() == wanted, lines);
    HOLDS(!selected || dictionary.getDictionaryValue(name) == halved(value), lines);
}
