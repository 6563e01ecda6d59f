#include "sql/SQLEscapeMethods.h"
#include "sql/SQLContext.h"
#include "sql/SQLEncoding.h"
#include "sql/SQLiteEscapeMethods.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace vellum {
namespace {

TEST(SQLiteEscapeMethods, EscapesSingleQuotesOnly)
{
    struct Case {
        std::string input;
        std::string expected;
    };
    const Case cases[] = {
        {"O'Brien", "O''Brien"},
        {"no quotes at all", "no quotes at all"},
        {"", ""},
        {"''", "''''"},
        {"back\\slash \"double\" tab\t", "back\\slash \"double\" tab\t"},
        {"Größe 表 'x'", "Größe 表 ''x''"},
    };
    SQLContext context;
    auto methods = std::make_shared<SQLiteEscapeMethods>();
    context.setSqlEscapeMethods(methods);
    for (const Case &c : cases)
        EXPECT_EQ(methods->EscStr(c.input), c.expected) << c.input;

    // Unbound escape methods use UTF-8.
    SQLiteEscapeMethods unbound;
    EXPECT_EQ(unbound.EscStr("é'"), "é''");
}

TEST(SQLiteEscapeMethods, OutputIsZeroTerminatedAndCounted)
{
    SQLiteEscapeMethods methods;
    char out[16];
    std::memset(out, 'z', sizeof out);
    EXPECT_EQ(methods.EscCStr("a'b", 3, out), 4u);
    EXPECT_STREQ(out, "a''b");
    EXPECT_EQ(methods.EscCStr("", 0, out), 0u);
    EXPECT_EQ(out[0], '\0');

    SQLEscapeMethods plain;
    std::memset(out, 'z', sizeof out);
    EXPECT_EQ(plain.EscCStr("a'b", 3, out), 3u);
    EXPECT_EQ(std::string(out, 4), "a'bz"); // copied unchanged, no terminator
    EXPECT_EQ(SQLEscapeMethods::maxOutputLengthOfInputLengthOfEscXStr(10), 21u);
}

TEST(SQLiteEscapeMethods, LongTextUsesSeparateBufferAndKeepsReusableOne)
{
    SQLiteEscapeMethods methods;
    EXPECT_EQ(methods.capacity(), 0u);
    EXPECT_EQ(methods.EscStr("short'"), "short''");
    EXPECT_EQ(methods.capacity(), SQLEscapeMethods::kReusableBufferSize);

    std::string longText;
    std::string expected;
    for (int i = 0; i < 300; ++i) {
        longText += "ab'";
        expected += "ab''";
    }
    EXPECT_EQ(methods.EscStr(longText), expected);
    EXPECT_EQ(methods.capacity(), SQLEscapeMethods::kReusableBufferSize);

    methods.reduceMemoryUseSafely();
    EXPECT_EQ(methods.capacity(), 0u);
    EXPECT_EQ(methods.EscStr(longText), expected);
}

TEST(SQLEscapeMethods, ConvertsThroughTheContextEncoding)
{
    SQLContext context;
    context.setEncoding(1); // ASCII: characters it lacks become "?"
    auto methods = std::make_shared<SQLiteEscapeMethods>();
    context.setSqlEscapeMethods(methods);
    EXPECT_EQ(methods->EscStr("Café 'x'"), "Caf? ''x''");
    context.setEncoding(5); // ISO Latin 1 round-trips é
    EXPECT_EQ(methods->EscStr("Café 'x'"), "Café ''x''");
}

TEST(SQLContext, CopySharesEscapeMethodsAndFacts)
{
    auto context = std::make_unique<SQLContext>();
    auto methods = std::make_shared<SQLiteEscapeMethods>();
    context->setServerType(ServerTypeSQLite);
    context->setEncoding(5);
    context->setVersion(3045);
    context->setEdition(2);
    context->setEnablesServerCharsetSupport(true);
    context->setDefaultSchema("main");
    context->setSqlEscapeMethods(methods);
    EXPECT_EQ(methods->sqlContext(), context.get());

    const std::unique_ptr<SQLContext> copy = context->copyAsSQLContext();
    EXPECT_EQ(copy->serverType(), ServerTypeSQLite);
    EXPECT_EQ(copy->encoding(), 5u);
    EXPECT_EQ(copy->version(), 3045);
    EXPECT_EQ(copy->edition(), 0); // not copied
    EXPECT_TRUE(copy->isEnablesServerCharsetSupport());
    EXPECT_EQ(copy->getDefaultSchema(), std::optional<std::string>("main"));
    EXPECT_EQ(copy->sqlEscapeMethods(), methods.get());
    EXPECT_EQ(methods->sqlContext(), context.get()); // still serving the original
    EXPECT_EQ(copy->options(), 0u);

    // The original going away makes the shared methods forget it; the copy keeps them.
    context.reset();
    EXPECT_EQ(methods->sqlContext(), nullptr);
    EXPECT_EQ(copy->sqlEscapeMethods()->EscStr("a'"), "a''");
}

TEST(SQLEscapeMethods, SwitchingDatabaseAndSchema)
{
    struct Socket : SQLSwitchableSocket {
        bool persistent = true;
        std::string lastQuery;
        bool hasPersistentConnection() const override { return persistent; }
        bool executeSwitchQuery(const std::string &query) override
        {
            lastQuery = query;
            return true;
        }
    };
    struct UseEscapes : SQLEscapeMethods {
        std::optional<std::string> getQueryToSwitchDB(const std::string &db) const override { return "USE " + db; }
    };
    Socket socket;
    SQLEscapeMethods plain;
    SQLiteEscapeMethods sqlite;
    UseEscapes use;
    EXPECT_FALSE(plain.isDatabaseEquivalentToSqlSchema());
    EXPECT_TRUE(sqlite.isDatabaseEquivalentToSqlSchema());
    EXPECT_FALSE(plain.dbSocketSwitchDB(socket, "x"));
    EXPECT_FALSE(sqlite.dbSocketSwitchDB(socket, "x"));
    EXPECT_FALSE(sqlite.dbSocketSwitchSqlSchema(socket, "x"));
    EXPECT_TRUE(use.dbSocketSwitchDB(socket, "x"));
    EXPECT_EQ(socket.lastQuery, "USE x");
    EXPECT_FALSE(use.dbSocketSwitchSqlSchema(socket, "x")); // the base has no schema query
    socket.persistent = false;
    EXPECT_TRUE(sqlite.dbSocketSwitchDB(socket, "x"));
    EXPECT_TRUE(plain.dbSocketSwitchSqlSchema(socket, "x"));
}

TEST(SQLEncoding, MySQLCharsetNames)
{
    struct Case {
        std::uint64_t code;
        const char *expected;
    };
    const Case cases[] = {
        {1, "ascii"},
        {7, "ascii"},
        {3, "ujis"},
        {4, "utf8"},
        {5, "latin1"},
        {8, "sjis"},
        {9, "latin2"},
        {10, "ucs2"},
        {11, "cp1251"},
        {15, "cp1250"},
        {30, "macroman"},
        {0x80000940, "euckr"},
        {0x80000930, "gb2312"},
        {0x80000A03, "big5"},
        {0x80000207, "greek"},
        {0x80000209, "latin5"},
        {0x80000600, "ascii"},
        {0x80000502, "cp1251"},
        {0x80000201, "latin1"},
        {0x80000FFF, "latin1"},
        {999, "latin1"},
        {0, "latin1"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(MySQLCharsetFromStringEncoding(c.code), c.expected) << std::hex << c.code;

    SQLContext context;
    context.setEncoding(4);
    EXPECT_EQ(context.backendCharset(), std::nullopt);
    context.setServerType(ServerTypeMySQL);
    EXPECT_EQ(context.backendCharset(), std::optional<std::string>("utf8"));
    EXPECT_EQ(context.queryCharset(), std::optional<std::string>("utf8"));
    context.setEncoding(30);
    EXPECT_EQ(context.resultCharset(), std::optional<std::string>("macroman"));
}

} // namespace
} // namespace vellum
