#include "sql/SQLConnection.h"
#include "sql/SQLiteEscapeMethods.h"
#include "sql/SocketConnectHandler.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace vellum {
namespace {

/// The single value of a one-row, one-column query.
std::optional<std::string> scalar(SQLConnection &connection, const std::string &query)
{
    std::unique_ptr<SQLResult> result = connection.queryString(query);
    if (!result)
        return std::nullopt;
    SQLRowTable rows;
    if (result->fetchRows(rows, 0) != 1 || rows[0].empty())
        return std::nullopt;
    return rows[0][0];
}

TEST(SQLConnection, SQLiteTypeBindsItsDialect)
{
    SQLConnection sqlite(ServerTypeSQLite);
    EXPECT_EQ(sqlite.serverType(), ServerTypeSQLite);
    EXPECT_EQ(sqlite.encoding(), 4u);
    EXPECT_EQ(sqlite.defaultDatabase(), "main");
    EXPECT_NE(dynamic_cast<SQLiteEscapeMethods *>(sqlite.sqlEscapeMethods()), nullptr);
    EXPECT_EQ(sqlite.address().dbFilePath(), "");

    SQLConnection mysql(ServerTypeMySQL, "db.example", "me", "pw", 3306);
    EXPECT_EQ(mysql.encoding(), 5u);
    EXPECT_EQ(mysql.sqlEscapeMethods(), nullptr);
    EXPECT_EQ(mysql.address().port(), "3306");
    EXPECT_EQ(mysql.address().login(), "me");
    EXPECT_FALSE(mysql.connect(false));
    EXPECT_EQ(mysql.getLastErrorMessage(), "No connection has been made.");
}

TEST(SQLConnection, ConnectSetsJournalAndForeignKeys)
{
    test::TempDir dir;
    SQLConnection connection(ServerTypeSQLite);
    connection.setDbFilePath(dir.file("c.sqlite"));
    ASSERT_EQ(connection.createDbFile(false), std::nullopt);
    ASSERT_TRUE(connection.connect(false)) << connection.getLastErrorMessage();
    EXPECT_TRUE(connection.isConnected());
    EXPECT_GE(connection.version(), 3000000);
    EXPECT_EQ(scalar(connection, "PRAGMA journal_mode"), "memory");
    EXPECT_EQ(scalar(connection, "PRAGMA foreign_keys"), "1");
    // A standing connection is kept as it is.
    DBSocketBase *socket = connection.socket();
    EXPECT_TRUE(connection.connect(false));
    EXPECT_EQ(connection.socket(), socket);
    connection.disconnect();
    EXPECT_FALSE(connection.isConnected());
    EXPECT_EQ(connection.getLastErrorMessage(), "No connection has been made.");
}

TEST(SQLConnection, ConnectFailuresCarryTheirReason)
{
    test::TempDir dir;
    SQLConnection missing(ServerTypeSQLite);
    missing.setDbFilePath(dir.file("absent.sqlite"));
    testing::internal::CaptureStdout();
    EXPECT_FALSE(missing.connect(false));
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(missing.getLastErrorMessage(), "Database file cannot be opened (No such file or directory)");

    SQLConnection existing(ServerTypeSQLite);
    existing.setDbFilePath(dir.file("once.sqlite"));
    ASSERT_EQ(existing.createDbFile(false), std::nullopt);
    EXPECT_EQ(existing.createDbFile(false), "Database file exists already");
}

TEST(SQLConnection, ErrorOfAQueryUntilTheNextQueryAfterReadingIt)
{
    test::TempDir dir;
    SQLConnection connection(ServerTypeSQLite);
    connection.setDbFilePath(dir.file("e.sqlite"));
    ASSERT_EQ(connection.createDbFile(false), std::nullopt);
    ASSERT_TRUE(connection.connect(true));

    connection.queryString("CREATE TABLE t (id INTEGER PRIMARY KEY); CREATE TABLE u (x)");
    EXPECT_EQ(connection.getLastErrorMessage(), "");
    EXPECT_EQ(scalar(connection, "SELECT count(*) FROM sqlite_master"), "1");

    EXPECT_TRUE(connection.queryStringGrabsResult("INSERT INTO nowhere VALUES (1)", nullptr));
    EXPECT_TRUE(connection.queryStringGrabsResult("INSERT INTO t VALUES (1)", nullptr)); // first error kept
    EXPECT_EQ(connection.oldErrorMessage(), "no such table: nowhere");
    EXPECT_EQ(connection.oldErrorQuery(), "INSERT INTO nowhere VALUES (1)");
    EXPECT_EQ(connection.getLastErrorMessage(), ""); // the latest call succeeded
    EXPECT_FALSE(connection.queryStringGrabsResult("INSERT INTO t VALUES (2)", nullptr));
    EXPECT_EQ(connection.oldErrorMessage(), std::nullopt);

    connection.queryString("INSERT INTO t VALUES (2)");
    EXPECT_EQ(connection.getLastErrorMessage(), "UNIQUE constraint failed: t.id");
    EXPECT_EQ(scalar(connection, "SELECT count(*) FROM t"), "2");
}

/// A socket whose connect blocks until the test lets it go.
class BlockingSocket : public DBSocketBase {
public:
    std::atomic<bool> release{false};
    std::atomic<bool> closed{false};
    bool answer = true;

    bool setConnectOptions(const std::string &, const std::string &) override { return true; }
    bool connect() override
    {
        while (!release.load())
            std::this_thread::yield();
        return answer;
    }
    void close() override { closed.store(true); }
    int runQuery(const char *, std::size_t) override { return 0; }
    std::string getLastErrorMessage() const override { return std::string(); }
    int errorNo() const override { return 0; }
    bool ping() override { return true; }
    std::int64_t getServerVersion() const override { return 0; }
    std::int32_t getServerEdition() const override { return 0; }
};

TEST(SocketConnectHandler, OutcomeOfTheConnectThread)
{
    struct Case {
        bool answer;
        bool cancel;
        SocketConnectHandler::Outcome expected;
    };
    for (const Case &c :
         {Case{true, false, SocketConnectHandler::kConnected}, Case{false, false, SocketConnectHandler::kFailed},
          Case{true, true, SocketConnectHandler::kCancelled}}) {
        BlockingSocket socket;
        socket.answer = c.answer;
        int checks = 0;
        // The connect ends only after the waiting thread has asked the cancel check (twice unless
        // it cancels).
        const auto check = [&] {
            if (++checks == 2 || c.cancel)
                socket.release.store(true);
            return c.cancel;
        };
        EXPECT_EQ(SocketConnectHandler::ConnectWithSocket(socket, check), c.expected);
        EXPECT_EQ(socket.closed.load(), c.cancel);
        EXPECT_GE(checks, c.cancel ? 1 : 2);
    }
}

} // namespace
} // namespace vellum
