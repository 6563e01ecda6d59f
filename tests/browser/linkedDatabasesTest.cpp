#include "browser/linkedDatabases.h"

#include "model/TOrbMDBFile.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace vellum {
namespace {

std::unique_ptr<TOrbMDBLinkedTable> link(TOrbMDBLinkedTable::Kind kind, const std::string &database)
{
    auto out = std::make_unique<TOrbMDBLinkedTable>();
    out->setName("Orders");
    out->setKind(kind);
    out->setDatabase(database);
    out->setTargetTable("Orders");
    return out;
}

void touch(const std::string &path)
{
    std::ofstream(path) << "x";
}

TEST(LinkedDatabases, TheStoredPathElseAFileOfItsNameBesideTheDatabase)
{
    test::TempDir dir;
    ASSERT_FALSE(dir.path().empty());
    std::filesystem::create_directory(dir.file("db"));
    std::filesystem::create_directory(dir.file("other"));
    touch(dir.file("beside.mdb"));
    touch(dir.file("Mixed.MDB"));
    touch(dir.file("other/absolute.mdb"));
    touch(dir.file("db/sub.mdb"));
    std::filesystem::create_directory(dir.file("folder.mdb")); // a folder is no database
    touch(dir.file("noextension"));

    using Kind = TOrbMDBLinkedTable::Kind;
    struct Case {
        Kind kind;
        std::string stored;
        std::optional<std::string> found;
    };
    const Case cases[] = {
        {Kind::Access, "C:\\data\\beside.mdb", dir.file("beside.mdb")},
        {Kind::Access, "\\\\server\\share\\beside.mdb", dir.file("beside.mdb")},
        {Kind::Access, "C:\\data\\mixed.mdb", dir.file("Mixed.MDB")}, // written on Windows in another case
        {Kind::Access, dir.file("other/absolute.mdb"), dir.file("other/absolute.mdb")},
        {Kind::Access, "db/sub.mdb", dir.file("db/sub.mdb")}, // relative to the database's folder
        {Kind::Access, "/nowhere/beside.mdb", dir.file("beside.mdb")},
        {Kind::Access, "C:\\data\\absent.mdb", std::nullopt},
        {Kind::Access, "C:\\data\\folder.mdb", std::nullopt},
        {Kind::Access, "C:\\data\\noextension", std::nullopt},
        {Kind::Access, dir.file("noextension"), std::nullopt},
        {Kind::Access, "C:\\data\\", std::nullopt},
        {Kind::Access, "..", std::nullopt},
        {Kind::Access, "", std::nullopt},
        {Kind::Odbc, "beside.mdb", std::nullopt}, // an ODBC link has no file
    };
    for (const Case &c : cases) {
        const auto found = findLinkedDatabase(*link(c.kind, c.stored), dir.path());
        EXPECT_EQ(found, c.found) << c.stored;
    }
    EXPECT_EQ(storedFileName("C:\\db\\linkee1.mdb"), "linkee1.mdb");
    EXPECT_EQ(storedFileName("/a/b.accdb"), "b.accdb");
    EXPECT_EQ(storedFileName("plain.mdb"), "plain.mdb");
}

TEST(LinkedDatabases, TargetTableByNameIgnoringCase)
{
    TOrbMDBFile file;
    for (const char *name : {"table1", "Table1", "Orders"}) {
        auto table = std::make_unique<TOrbMDBTable>();
        table->setName(name);
        file.addTable(std::move(table));
    }
    EXPECT_EQ(findLinkedTargetTable(file, "Table1"), file.tables()[1].get()); // the exact name first
    EXPECT_EQ(findLinkedTargetTable(file, "TABLE1"), file.tables()[0].get());
    EXPECT_EQ(findLinkedTargetTable(file, "orders"), file.tables()[2].get());
    EXPECT_EQ(findLinkedTargetTable(file, "Order"), nullptr);
}

} // namespace
} // namespace vellum
