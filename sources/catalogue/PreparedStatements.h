#pragma once
#include <SQLiteCpp/SQLiteCpp.h>
#include <QList>
#include <QString>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>

/// Caches the compiled statements of one connection, and binds values to their places in order. The texts are
/// literals; the database must outlive this object. Functions throw SQLite::Exception.
class PreparedStatements final
{
public:
    /// One use of a statement, which releases its locks at the end.
    struct Release
    {
        void operator()(SQLite::Statement *statement) const { statement->tryReset(); }
    };
    using Use = std::unique_ptr<SQLite::Statement, Release>;

    explicit PreparedStatements(SQLite::Database &database) : m_database(database) {}

    template <class... Values>
    Use use(const char *text, const Values &...values)
    {
        std::unique_ptr<SQLite::Statement> &kept = m_statements[text];
        if (!kept)
            kept = std::make_unique<SQLite::Statement>(m_database, text);
        int place = 0;
        (bind(*kept, ++place, values), ...);
        return Use(kept.get());
    }

    template <class... Values>
    void run(const char *text, const Values &...values)
    {
        use(text, values...)->exec();
    }

    /// Returns the number of the inserted row.
    template <class... Values>
    qint64 insert(const char *text, const Values &...values)
    {
        run(text, values...);
        return m_database.getLastInsertRowid();
    }

    /// The first column of the first row; none without a row.
    template <class... Values>
    std::optional<qint64> first(const char *text, const Values &...values)
    {
        Use statement = use(text, values...);
        return statement->executeStep() ? std::optional<qint64>(statement->getColumn(0).getInt64())
                                        : std::nullopt;
    }

    /// Whether there is a row.
    template <class... Values>
    bool has(const char *text, const Values &...values)
    {
        return use(text, values...)->executeStep();
    }

    /// The first column of all rows.
    template <class... Values>
    QList<qint64> all(const char *text, const Values &...values)
    {
        Use statement = use(text, values...);
        QList<qint64> rows;
        while (statement->executeStep())
            rows += statement->getColumn(0).getInt64();
        return rows;
    }

private:
    template <class Number>
    requires std::is_arithmetic_v<Number>
    static void bind(SQLite::Statement &statement, int place, Number value)
    {
        using Stored = std::conditional_t<std::is_integral_v<Number>, int64_t, double>;
        statement.bind(place, static_cast<Stored>(value));
    }
    static void bind(SQLite::Statement &statement, int place, const QString &text)
    {
        statement.bind(place, text.toStdString());
    }
    static void bind(SQLite::Statement &statement, int place, const QByteArray &blob)
    {
        statement.bind(place, blob.constData(), static_cast<int>(blob.size()));
    }
    template <class Value>
    static void bind(SQLite::Statement &statement, int place, const std::optional<Value> &value)
    {
        if (value)
            bind(statement, place, *value);
        else
            statement.bind(place);
    }

    SQLite::Database &m_database;
    std::unordered_map<std::string_view, std::unique_ptr<SQLite::Statement>> m_statements;
};
