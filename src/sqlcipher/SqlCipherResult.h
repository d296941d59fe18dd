#pragma once

#include <QPointer>
#include <QSqlError>
#include <QSqlRecord>
#include <QSqlResult>
#include <QVariant>

#include <functional>

class SqlCipherDriver;
struct sqlite3_stmt;

// One statement of a SqlCipherDriver connection. It may outlive both the opening of its connection
// and the driver: it is then without a statement, and everything it is asked to do fails.
class SqlCipherResult : public QSqlResult
{
public:
    explicit SqlCipherResult(const SqlCipherDriver* driver);
    ~SqlCipherResult() override;

    // Ends the statement and makes the result inactive.
    void finalize();
    // Called by a dying driver.
    void loseDriver() { m_driver = nullptr; }

    QVariant handle() const override;

protected:
    bool reset(const QString& sql) override;
    bool prepare(const QString& sql) override;
    void bindValue(int position, const QVariant& value, QSql::ParamType type) override;
    using QSqlResult::bindValue; // by name
    bool exec() override;
    bool execBatch(bool arrayBind) override;
    void setForwardOnly(bool forward) override;
    bool fetch(int row) override;
    bool fetchFirst() override;
    bool fetchNext() override;
    bool fetchLast() override;
    QVariant data(int column) override;
    bool isNull(int column) override;
    int size() override;
    int numRowsAffected() override;
    QVariant lastInsertId() const override;
    QSqlRecord record() const override;
    void detachFromResultSet() override;

private:
    bool hasColumn(int column) const;
    bool prepareAction(const QString& sql);
    bool execAction();
    bool execStatement();
    bool bindValues();
    QVector<QVariant> valuesByParameter() const;
    bool step();
    bool fail(const QSqlError& error); // false

    SqlCipherDriver* m_driver; // null once the driver is gone
    sqlite3_stmt* m_statement = nullptr;
    std::function<QSqlError()> m_action; // what stands in for a statement that gives a key
    bool m_boundByPosition = false; // at least one value since the statement was prepared
    bool m_rowAhead = false; // exec has stepped to the first row already
    int m_rowsAffected = -1;
    QSqlRecord m_record; // of the last run
};

Q_DECLARE_OPAQUE_POINTER(sqlite3_stmt*)
Q_DECLARE_METATYPE(sqlite3_stmt*)
