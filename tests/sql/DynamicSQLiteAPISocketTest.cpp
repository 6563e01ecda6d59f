#include "sql/DynamicSQLiteAPISocket.h"
#include "sql/SQLiteAPISocket.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace vellum {
namespace {

DBSocketAddress fileAddress(const std::string &path, const std::string &password = std::string())
{
    DBSocketAddress address;
    address.setDbFilePath(path);
    address.setPassword(password);
    return address;
}

std::string readFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

/// A connected socket on a new database file in `dir`.
std::unique_ptr<DynamicSQLiteAPISocket> newDatabase(const test::TempDir &dir, const std::string &name)
{
    const DBSocketAddress address = fileAddress(dir.file(name));
    EXPECT_EQ(SQLiteAPISocket::CreateDbFile(false, address), std::nullopt);
    auto socket = std::make_unique<DynamicSQLiteAPISocket>();
    socket->setDestinationAddress(address);
    EXPECT_TRUE(socket->connect()) << socket->getLastErrorMessage();
    return socket;
}

TEST(DynamicSQLiteAPISocket, CreateDbFileMakesNewFileAndRefusesExistingOne)
{
    test::TempDir dir;
    const std::string path = dir.file("new.sqlite");
    EXPECT_EQ(SQLiteAPISocket::CreateDbFile(false, fileAddress(path)), std::nullopt);
    EXPECT_TRUE(std::filesystem::exists(path));

    const std::string existing = dir.file("existing.sqlite");
    std::ofstream(existing) << "not a database";
    EXPECT_EQ(SQLiteAPISocket::CreateDbFile(false, fileAddress(existing)), "Database file exists already");
    EXPECT_EQ(readFile(existing), "not a database");

    const std::optional<std::string> unreachable =
        SQLiteAPISocket::CreateDbFile(false, fileAddress(dir.file("missing-folder/x.sqlite")));
    ASSERT_TRUE(unreachable.has_value());
    EXPECT_EQ(*unreachable, "unable to open database file");
    EXPECT_EQ(SQLiteAPISocket::CreateDbFile(false, fileAddress("")), "Database file path is invalid");
}

TEST(DynamicSQLiteAPISocket, GetSocketForAddressCarriesTheReasonOfAnUnusableFile)
{
    test::TempDir dir;
    struct Case {
        std::string path;
        std::string reason;
    };
    const Case cases[] = {
        {"", "Database file path is not correct"},
        {dir.file("absent.sqlite"), "Database file cannot be opened (No such file or directory)"},
    };
    for (const Case &c : cases) {
        std::unique_ptr<SQLiteAPISocket> socket = SQLiteAPISocket::GetSocketForAddress(fileAddress(c.path));
        ASSERT_EQ(dynamic_cast<DynamicSQLiteAPISocket *>(socket.get()), nullptr) << c.path;
        testing::internal::CaptureStdout();
        EXPECT_FALSE(socket->connect());
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "WTF???\n");
        EXPECT_EQ(socket->getLastErrorMessage(), c.reason);
        EXPECT_NE(socket->errorNo(), 0);
    }
    ASSERT_EQ(SQLiteAPISocket::CreateDbFile(false, fileAddress(dir.file("ok.sqlite"))), std::nullopt);
    std::unique_ptr<SQLiteAPISocket> usable = SQLiteAPISocket::GetSocketForAddress(fileAddress(dir.file("ok.sqlite")));
    EXPECT_NE(dynamic_cast<DynamicSQLiteAPISocket *>(usable.get()), nullptr);
}

TEST(DynamicSQLiteAPISocket, ErrorTextsInOrderOfPrecedence)
{
    test::TempDir dir;
    DynamicSQLiteAPISocket socket;
    EXPECT_EQ(socket.getLastErrorMessage(), "Database file path is invalid");
    EXPECT_FALSE(socket.connect());
    socket.setDestinationAddress(fileAddress(dir.file("db.sqlite")));
    EXPECT_EQ(socket.getLastErrorMessage(), "No connection handler!");
    EXPECT_EQ(socket.errorNo(), -1);
    EXPECT_EQ(socket.runQuery("SELECT 1", 8), -1);

    // Read-write without create: the file must exist.
    EXPECT_FALSE(socket.connect());
    EXPECT_EQ(socket.getLastErrorMessage(), "unable to open database file");

    auto db = newDatabase(dir, "ok.sqlite");
    EXPECT_EQ(db->runQuery("SELEC 1", 7), 1);
    EXPECT_EQ(db->getLastErrorMessage(), "near \"SELEC\": syntax error");
    EXPECT_EQ(db->errorNo(), 1);
    EXPECT_EQ(db->runQuery("SELECT 1", 8), 0);
    EXPECT_EQ(db->getLastErrorMessage(), "");
    EXPECT_EQ(db->errorNo(), 0);
}

TEST(DynamicSQLiteAPISocket, QueryRunsOnlyTheFirstStatement)
{
    test::TempDir dir;
    auto db = newDatabase(dir, "two.sqlite");
    const std::string two = "CREATE TABLE a (x); CREATE TABLE b (y);";
    EXPECT_EQ(db->runQuery(two.data(), two.size()), 0);
    const std::string names = "SELECT group_concat(name, ',') FROM sqlite_master";
    ASSERT_EQ(db->runQueryStr(names), 0);
    std::unique_ptr<SQLiteDBResult> result = db->grabPendingDbResult();
    ASSERT_TRUE(result);
    SQLRowTable rows;
    ASSERT_EQ(result->fetchRows(rows, 0), 1u);
    EXPECT_EQ(rows[0][0], "a");
}

TEST(DynamicSQLiteAPISocket, FetchRowsAllAtOnceOrInSteps)
{
    test::TempDir dir;
    auto db = newDatabase(dir, "rows.sqlite");
    ASSERT_EQ(db->runQueryStr("CREATE TABLE t (id INTEGER, txt TEXT, bin BLOB)"), 0);
    for (const char *insert : {"INSERT INTO t VALUES (1, 'one', x'00ff10')", "INSERT INTO t VALUES (2, NULL, NULL)",
                               "INSERT INTO t VALUES (3, '', x'')", "INSERT INTO t VALUES (4, 'four', NULL)",
                               "INSERT INTO t VALUES (5, 'five', NULL)"})
        ASSERT_EQ(db->runQueryStr(insert), 0) << db->getLastErrorMessage();
    EXPECT_EQ(db->getAffectedRows(), 1);
    EXPECT_EQ(db->getInsertId(), 5u);
    EXPECT_EQ(db->latestResultInfo().affectedRows, 1);

    ASSERT_EQ(db->runQueryStr("SELECT id, txt, bin FROM t ORDER BY id"), 0);
    std::unique_ptr<SQLiteDBResult> all = db->grabPendingDbResult();
    ASSERT_TRUE(all && all->hasTableBody());
    EXPECT_EQ(all->numberOfColumns(), 3);
    EXPECT_EQ(all->getAffectedRows(), 0);
    SQLRowTable rows;
    EXPECT_EQ(all->fetchRows(rows, 0), 5u);
    EXPECT_EQ(all->fetchRows(rows, 0), 0u);
    EXPECT_TRUE(all->fetchIsOver());
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_EQ(rows[0][0], "1");
    EXPECT_EQ(rows[0][2], std::string("\x00\xff\x10", 3));
    EXPECT_EQ(rows[1][1], std::nullopt);
    EXPECT_EQ(rows[1][2], std::nullopt);
    EXPECT_EQ(rows[2][1], "");

    ASSERT_EQ(db->runQueryStr("SELECT id FROM t ORDER BY id"), 0);
    std::unique_ptr<SQLiteDBResult> stepped = db->grabPendingDbResult();
    ASSERT_TRUE(stepped);
    SQLRowTable chunks;
    const std::uint64_t expected[] = {2, 2, 1, 0, 0};
    for (std::uint64_t count : expected)
        EXPECT_EQ(stepped->fetchRows(chunks, 2), count);
    EXPECT_EQ(chunks.size(), 5u);
    EXPECT_EQ(stepped->numberOfFetchedRows(), 5u);

    // A statement without columns hands out no rows.
    ASSERT_EQ(db->runQueryStr("DELETE FROM t WHERE id > 3"), 0);
    std::unique_ptr<SQLiteDBResult> deleted = db->grabPendingDbResult();
    ASSERT_TRUE(deleted);
    EXPECT_FALSE(deleted->hasTableBody());
    EXPECT_EQ(deleted->getAffectedRows(), 2);
    EXPECT_EQ(deleted->fetchRows(rows, 0), 0u);
}

TEST(DynamicSQLiteAPISocket, ResultOutlivingItsSocketIsInvalidated)
{
    test::TempDir dir;
    auto db = newDatabase(dir, "outlive.sqlite");
    ASSERT_EQ(db->runQueryStr("SELECT 1 UNION ALL SELECT 2"), 0);
    std::unique_ptr<SQLiteDBResult> result = db->grabPendingDbResult();
    ASSERT_TRUE(result);
    db.reset();
    SQLRowTable rows;
    EXPECT_EQ(result->fetchRows(rows, 0), 0u);
    EXPECT_EQ(result->socket(), nullptr);
    EXPECT_EQ(result->getErrorMessage(), "");
}

TEST(DynamicSQLiteAPISocket, VersionNumbers)
{
    DynamicSQLiteAPISocket socket;
    ASSERT_TRUE(socket.holdsLibrary());
    const std::string info = socket.getServerInfo(); // "3.15.2"
    int major = 0, minor = 0, patch = 0;
    ASSERT_EQ(std::sscanf(info.c_str(), "%d.%d.%d", &major, &minor, &patch), 3) << info;
    EXPECT_EQ(socket.getServerVersion(), major * 1000000 + minor * 1000 + patch);
    EXPECT_EQ(socket.getSimplifiedServerVersion(), major * 10000 + minor * 100 + patch);
}

TEST(DynamicSQLiteAPISocket, PasswordKeysTheDatabase)
{
    test::TempDir dir;
    const std::string path = dir.file("secret.sqlite");
    ASSERT_EQ(SQLiteAPISocket::CreateDbFile(false, fileAddress(path, "s3cret")), std::nullopt);
    {
        DynamicSQLiteAPISocket keyed;
        keyed.setDestinationAddress(fileAddress(path, "s3cret"));
        ASSERT_TRUE(keyed.connect()) << keyed.getLastErrorMessage();
        ASSERT_EQ(keyed.runQueryStr("CREATE TABLE t (x TEXT)"), 0) << keyed.getLastErrorMessage();
        ASSERT_EQ(keyed.runQueryStr("INSERT INTO t VALUES ('hidden text')"), 0);
    }
    EXPECT_EQ(readFile(path).find("hidden text"), std::string::npos);
    {
        // Re-keying takes the password of the settings the socket holds now.
        DynamicSQLiteAPISocket rekeyed;
        rekeyed.setDestinationAddress(fileAddress(path, "s3cret"));
        ASSERT_TRUE(rekeyed.connect());
        ASSERT_EQ(rekeyed.runQueryStr("SELECT count(*) FROM t"), 0);
        rekeyed.setDestinationAddress(fileAddress(path, "n3w"));
        EXPECT_TRUE(rekeyed.setEncryptionPassword());
    }

    struct Case {
        const char *password;
        bool readable;
    };
    for (const Case &c : {Case{"n3w", true}, Case{"s3cret", false}, Case{"", false}, Case{"wrong", false}}) {
        DynamicSQLiteAPISocket socket;
        socket.setDestinationAddress(fileAddress(path, c.password));
        ASSERT_TRUE(socket.connect());
        EXPECT_EQ(socket.runQueryStr("SELECT x FROM t") == 0, c.readable) << c.password;
        EXPECT_EQ(socket.getLastErrorMessage().empty(), c.readable) << socket.getLastErrorMessage();
    }
}

TEST(DynamicSQLiteAPISocket, PasswordLengthCountsUtf16Units)
{
    EXPECT_EQ(passwordLengthInCharacters("abc"), 3);
    EXPECT_EQ(passwordLengthInCharacters("p\xc3\xa4ss"), 4);       // ä: 2 bytes, 1 unit
    EXPECT_EQ(passwordLengthInCharacters("\xe6\x97\xa5"), 1);      // 日: 3 bytes, 1 unit
    EXPECT_EQ(passwordLengthInCharacters("\xf0\x9f\x98\x80x"), 3); // emoji: 4 bytes, 2 units
    EXPECT_EQ(passwordLengthInCharacters(""), 0);
}

} // namespace
} // namespace vellum
