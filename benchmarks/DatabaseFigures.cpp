#include "Figures.h"
#include "Measure.h"
#include "PlainDatabase.h"
#include "database/DatabaseFiles.h"
#include "database/TableDictionary.h"
#include "database/TableTranslations.h"

#include <functional>
#include <stdexcept>

namespace {

const QByteArray passPhrase = "d8pantry%";
const QByteArray shared = (DatabaseFiles::sharedFolder + DatabaseFiles::sharedFile).toUtf8();
const QByteArray defaults = (DatabaseFiles::defaultsFolder + DatabaseFiles::defaultsFile).toUtf8();

struct RawKeys
{
    QByteArray shared;
    QByteArray defaults;
};

void require(bool condition, const char* failure)
{
    if (!condition)
        throw std::runtime_error(failure);
}

// The seconds of a number of executions; a single one is too short for the clock.
double secondsOfMany(int executions, const std::function<void()>& work)
{
    return Measure::secondsOf([&] {
        for (int i = 0; i < executions; ++i)
            work();
    });
}

void readLanguage()
{
    require(TableDictionary().getDictionaryValue(QStringLiteral("language"))
                == QLatin1String("english"),
            "the dictionary gave no language");
}

void readLanguagePlainly(const QByteArray& key)
{
    PlainDatabase database(shared, key);
    require(database.text("SELECT value FROM dictionary WHERE name = 'language'") == "english",
            "the plain read gave no language");
}

double readAgainstRawKey(const QByteArray& rawKey)
{
    return Measure::bestRatio(
        60, [] { return secondsOfMany(20, readLanguage); },
        [&] { return secondsOfMany(20, [&] { readLanguagePlainly(rawKey); }); });
}

double readAgainstPassPhrase()
{
    return Measure::bestRatio(
        30, [] { return secondsOfMany(20, readLanguage) / 20; },
        [] { return Measure::secondsOf([] { readLanguagePlainly(passPhrase); }); });
}

double lookUp(const QByteArray& rawKey)
{
    const QString key = QStringLiteral("Update Software");
    TableTranslations translations;
    translations.lookUp(key);
    PlainDatabase database(shared, rawKey);
    PlainStatement statement(database,
                             "SELECT english,used FROM translations WHERE key='Update Software'");
    return Measure::bestRatio(
        100,
        [&] {
            return secondsOfMany(200, [&] {
                require(translations.lookUp(key) == key, "the look-up gave another text");
            });
        },
        [&] {
            return secondsOfMany(200, [&] {
                require(statement.text() == key.toUtf8(), "the plain look-up gave another text");
            });
        });
}

// As many rows as the platform's largest table has, of a text in four languages each.
void addTable(const QByteArray& file, const QByteArray& key)
{
    PlainDatabase database(file, key);
    database.run(R"(
        BEGIN;
        CREATE TABLE measured(id INTEGER PRIMARY KEY, key TEXT, english TEXT, french TEXT,
                              german TEXT, spanish TEXT, used INTEGER DEFAULT 0);
        WITH RECURSIVE count(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM count WHERE n < 2000)
        INSERT INTO measured SELECT n, 'key ' || n, 'an English text ' || n, 'un texte ' || n,
                                    'ein deutscher Text ' || n, 'un texto ' || n, 0 FROM count;
        COMMIT;)");
}

// What a restore has to run, from the opening to the closing.
void restorePlainly(const RawKeys& keys)
{
    const QByteArray definition = "select sql from defaults.sqlite_master where name='measured'";
    PlainDatabase database(shared, keys.shared);
    database.run("ATTACH DATABASE '" + defaults + "' AS defaults KEY \"" + keys.defaults + '"');
    require(!database.text(definition).isEmpty(), "the defaults hold no definition");
    database.run("BEGIN IMMEDIATE");
    database.run("DROP TABLE IF EXISTS main.measured");
    database.run(database.text(definition));
    database.run("INSERT INTO main.measured SELECT * FROM defaults.measured;");
    database.run("COMMIT");
    database.run("DETACH defaults");
}

double restore(const RawKeys& keys)
{
    addTable(shared, keys.shared);
    addTable(defaults, keys.defaults);
    const double ratio = Measure::bestRatio(
        100,
        [] {
            return Measure::secondsOf([] {
                require(DatabaseBase().genericRestoreTable(QStringLiteral("measured")),
                        "the restore failed");
            });
        },
        [&] { return Measure::secondsOf([&] { restorePlainly(keys); }); });
    require(PlainDatabase(shared, keys.shared).text("SELECT count(*) FROM measured") == "2000",
            "the restored table is not whole");
    return ratio;
}

} // namespace

Figures databaseFigures()
{
    const RawKeys keys {PlainDatabase::rawKeyOf(shared), PlainDatabase::rawKeyOf(defaults)};
    return {
        {"dictionary-read", readAgainstRawKey(keys.shared), 2.0},
        {"dictionary-read-passphrase", readAgainstPassPhrase(), 0.03},
        {"look-up", lookUp(keys.shared), 3.0},
        {"restore-table", restore(keys), 1.1},
    };
}
