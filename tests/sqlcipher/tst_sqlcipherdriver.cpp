#include "Dispenser.h"
#include "SqlTest.h"

#include <QCoreApplication>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlRecord>
#include <QtPlugin>

#include <cmath>
#include <limits>

Q_IMPORT_PLUGIN(SqlCipherPlugin)

// What Qt's SQL classes and their users expect of a driver, held against this one.
class TestSqlCipherDriver : public QObject
{
    Q_OBJECT

    TestFiles m_files;

private slots:
    void valuesComeBackAsTheyWereBound_data()
    {
        QTest::addColumn<QVariant>("bound");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QVariant>("read");
        const QString beyondBmp = QString::fromUtf8("caf\u00e9 \U0001F964 \u6f22");
        const qint64 largest = std::numeric_limits<qint64>::max();
        const QByteArray bytes("\0\xff\0a", 4);
        QTest::newRow("null text") << QVariant(QString()) << "null" << QVariant(QString());
        QTest::newRow("empty text") << QVariant("") << "text" << QVariant("");
        QTest::newRow("text") << QVariant(beyondBmp) << "text" << QVariant(beyondBmp);
        QTest::newRow("64 bits") << QVariant(largest) << "integer" << QVariant(largest);
        QTest::newRow("unsigned") << QVariant(quint64(7)) << "integer" << QVariant(qint64(7));
        QTest::newRow("beyond 64 bits")
            << QVariant(quint64(largest) + 1) << "text" << QVariant("9223372036854775808");
        QTest::newRow("true") << QVariant(true) << "integer" << QVariant(qint64(1));
        QTest::newRow("double") << QVariant(M_PI) << "real" << QVariant(M_PI);
        QTest::newRow("blob") << QVariant(bytes) << "blob" << QVariant(bytes);
    }

    void valuesComeBackAsTheyWereBound()
    {
        QFETCH(QVariant, bound);
        QFETCH(QVariant, read);
        TestConnection database(m_files.next());
        QSqlQuery query(database);
        QVERIFY_SQL(query, query.exec("CREATE TABLE t (v)"));
        QVERIFY_SQL(query, query.prepare("INSERT INTO t VALUES (:v)"));
        query.bindValue(":v", bound);
        QVERIFY_SQL(query, query.exec());
        QVERIFY_SQL(query, query.exec("SELECT v, typeof(v) FROM t"));
        QVERIFY(query.next());
        QCOMPARE(query.value(0), read);
        QCOMPARE(query.isNull(0), read.isNull());
        QTEST(query.value(1).toString(), "kind");
        QVERIFY(!query.next());
    }

    void parametersTakeAsManyValuesAsTheyAre()
    {
        const struct
        {
            const char* parameters;
            QVariantMap named;
            QVariantList positional;
            const char* result;
        } cases[] = {
            {"?||?", {}, {1, 2}, "12"},
            {"?2||?1", {}, {1, 2}, "12"}, // Qt makes names of them
            {"@x||$y", {}, {1, 2}, "12"},
            {"/* ? :z */ ?", {}, {1}, "1"},
            {"?||?", {}, {1}, "mismatch"},
            {"ifnull(?, 'null')", {}, {}, "mismatch"},
            {"?||?", {}, {1, 2, 3}, "mismatch"},
            {"5", {}, {1}, "mismatch"},
            {":y||:x", {{":x", 1}, {":y", 2}}, {}, "21"},
            {":x||:x", {{":x", 1}}, {}, "11"},
            {":x||:x", {}, {1, 2}, "mismatch"},
            {"/* :z */ :x", {{":x", 1}, {":a", 2}}, {}, "1"},
            {"ifnull(:x, 'null')", {}, {}, "null"},
        };
        TestConnection database(m_files.next());
        for (const auto& it : cases) {
            QSqlQuery query(database);
            QVERIFY_SQL(query, query.prepare(QLatin1String("SELECT ") + it.parameters));
            for (auto value = it.named.cbegin(); value != it.named.cend(); ++value)
                query.bindValue(value.key(), value.value());
            for (const QVariant& value : it.positional)
                query.addBindValue(value);
            for (int run = 0; run < 2; ++run) {
                const bool executed = query.exec();
                QVERIFY(query.lastError().isValid() != executed);
                QCOMPARE(query.next() ? query.value(0).toString() : QString("mismatch"),
                         QString(it.result));
            }
        }
    }

    void aStatementRunsAgainAfterItsEndAndAfterFinish()
    {
        TestConnection database(m_files.next());
        QSqlQuery query(database);
        QVERIFY_SQL(query, query.exec("CREATE TABLE t (id INTEGER PRIMARY KEY, v TEXT)"));
        QVERIFY_SQL(query, query.prepare("INSERT INTO t (v) VALUES (?)"));
        for (int row = 1; row <= 3; ++row) {
            query.bindValue(0, QString::number(row * 10));
            QVERIFY_SQL(query, query.exec());
            QCOMPARE(query.lastInsertId().toInt(), row);
        }
        QVERIFY_SQL(query, query.prepare("SELECT v FROM t WHERE id >= ? ORDER BY id"));
        query.addBindValue(2);
        for (int run = 0; run < 2; ++run) { // the second time with the binding it has
            QVERIFY_SQL(query, query.exec());
            QCOMPARE(query.numRowsAffected(), -1);
            QVERIFY(query.next());
            QCOMPARE(query.value(0).toString(), QString("20"));
            query.finish();
        }
        QVERIFY_SQL(query, query.prepare("INSERT INTO t (v) VALUES (:v || :v)"));
        query.bindValue(":v", QVariantList {"a", "b"});
        QVERIFY_SQL(query, query.execBatch());
        QCOMPARE(database.value("SELECT group_concat(v) FROM t"), QString("10,20,30,aa,bb"));
    }

    void aTransactionEndsOnceWhoeverEndsIt()
    {
        TestConnection database(m_files.next());
        QSqlQuery query(database);
        QVERIFY_SQL(query, query.exec("CREATE TABLE t AS SELECT 1 AS v"));
        QVERIFY(!database->commit() && !database->rollback()); // none was begun
        QVERIFY(database->transaction() && !database->transaction());
        QVERIFY_SQL(query, query.exec("UPDATE t SET v = 2"));
        QCOMPARE(query.numRowsAffected(), 1);
        QVERIFY(database->rollback() && !database->rollback());

        QVERIFY_SQL(query, query.exec("PRAGMA cache_size=5"));
        QVERIFY_SQL(query, query.exec("PRAGMA max_page_count=20"));
        QVERIFY(query.next());
        QVERIFY(database->transaction());
        QVERIFY_SQL(query, query.exec("UPDATE t SET v = 3"));
        QVERIFY(!query.exec("INSERT INTO t VALUES (zeroblob(100000))"));
        QCOMPARE(query.lastError().databaseText(), QString("database or disk is full"));
        QVERIFY(!database->commit()); // SQLite has rolled back itself
        QVERIFY(database->rollback() && !database->rollback());
        QCOMPARE(database.value("SELECT v FROM t"), QString("1"));
    }

    void closingEndsLiveStatementsAndTheConnectionOpensAgain()
    {
        const QString file = m_files.next();
        QSqlQuery query;
        {
            TestConnection database(file);
            query = QSqlQuery(database);
            QVERIFY_SQL(query, query.exec("CREATE TABLE t AS SELECT 1 AS v UNION SELECT 2"));
            QVERIFY_SQL(query, query.exec("SELECT v FROM t"));
            QVERIFY(query.next());
            database->close();
            QVERIFY(!query.isActive() && !query.next() && !query.exec());
            QCOMPARE(query.lastError().databaseText(), QString("No query"));
            QVERIFY(!Dispenser::isOpenHere(file));
            QVERIFY(database->open());
            QSqlQuery(database).exec("PRAGMA key='d8pantry%'");
            QCOMPARE(database.value("SELECT count(*) FROM t"), QString("2"));
        }
        QVERIFY(!query.exec()); // it outlives its driver
        QVERIFY(!query.lastInsertId().isValid());
    }

    void metadataNamesColumnsTablesAndKeys()
    {
        TestConnection database(m_files.next());
        QSqlQuery query(database);
        QVERIFY_SQL(query,
                    query.exec("CREATE TABLE \"a b\" (id INTEGER PRIMARY KEY,"
                               " name TEXT NOT NULL, size REAL, data BLOB)"));
        QCOMPARE(database->tables(), QStringList("a b"));
        QCOMPARE(database->primaryIndex("a b").fieldName(0), QString("id"));
        const QSqlRecord record = database->record("a b");
        QCOMPARE(record.count(), 4);
        QCOMPARE(database->record("main.a b").count(), record.count());
        QCOMPARE(record.field("size").type(), QVariant::Double);
        QCOMPARE(record.field("name").requiredStatus(), QSqlField::Required);
        QVERIFY_SQL(query, query.exec("SELECT size AS s, id + 1 FROM \"a b\""));
        QCOMPARE(query.record().fieldName(0), QString("s"));
    }

    void errorsCarryTheEnginesOwnText()
    {
        TestConnection database(m_files.next());
        QSqlQuery query(database);
        QVERIFY_SQL(query, query.exec("CREATE TABLE t AS SELECT 1 AS v"));
        QVERIFY_SQL(query, query.exec("CREATE UNIQUE INDEX i ON t (v)"));
        const QMap<QString, QString> texts {
            {"SELEC", R"(near "SELEC": syntax error)"},
            {"SELECT * FROM nowhere", "no such table: nowhere"},
            {"INSERT INTO t VALUES (1)", "UNIQUE constraint failed: t.v"},
            {"SELECT 1; SELECT 2", ""}, // the driver's own errors have no text of the engine
            {"-- nothing", "No query"},
            {QString("SELECT 1") + QChar::Null, ""}, // SQLite would run what stands before it
            {QString("PRAGMA key='d8pantry%'") + QChar::Null + "'", ""},
        };
        for (auto it = texts.begin(); it != texts.end(); ++it) {
            QVERIFY(!query.exec(it.key()));
            QVERIFY(query.lastError().isValid());
            QCOMPARE(query.lastError().databaseText(), it.value());
        }
        QVERIFY_SQL(query, query.exec("SELECT 1"));
        TestConnection nowhere("/nowhere/at/all.db");
        QVERIFY(nowhere->isOpenError());
        QCOMPARE(nowhere->lastError().databaseText(), QString("unable to open database file"));
    }
};

DISPENSER_TEST_MAIN(TestSqlCipherDriver, QCoreApplication)
#include "tst_sqlcipherdriver.moc"
