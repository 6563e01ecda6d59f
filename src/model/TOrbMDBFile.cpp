#include "model/TOrbMDBFile.h"

#include "model/FileReader.h"
#include "util/fileSize.h"
#include "util/finderCompare.h"
#include "util/format.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

namespace vellum {

namespace {
TimePoint toTime(const struct statx_timestamp &ts)
{
    return static_cast<double>(ts.tv_sec) + ts.tv_nsec / 1e9;
}
} // namespace

TOrbMDBFile::TOrbMDBFile() : m_createDate(now()), m_modifyDate(m_createDate), m_lastOpenDate(m_createDate) {}

TOrbMDBFile::~TOrbMDBFile() = default;

std::unique_ptr<TOrbMDBFile> TOrbMDBFile::fromPath(const std::string &path)
{
    auto file = std::make_unique<TOrbMDBFile>();
    const size_t slash = path.rfind('/');
    std::string folder = slash == std::string::npos ? "." : path.substr(0, slash);
    if (slash == 0)
        folder = "";
    const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    const size_t dot = base.rfind('.');
    if (dot == std::string::npos || dot == 0) {
        file->setName(base);
    } else {
        file->setName(base.substr(0, dot));
        file->setFileExtension(base.substr(dot + 1));
    }
    file->setPath(folder);
    struct statx st {};
    if (statx(AT_FDCWD, path.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &st) == 0) {
        file->setSize(st.stx_size);
        file->setCreateDate(toTime((st.stx_mask & STATX_BTIME) ? st.stx_btime : st.stx_ctime));
        file->setModifyDate(toTime(st.stx_mtime));
        file->setLastOpenDate(toTime(st.stx_atime));
    }
    return file;
}

std::string TOrbMDBFile::fullPath() const
{
    return formatObjects("%@/%@.%@", {m_path, m_name, m_ext});
}

std::string TOrbMDBFile::openPath() const
{
    std::string path = m_path + "/" + m_name;
    if (!m_ext.empty())
        path += "." + m_ext;
    return path;
}

TOrbMDBTable *TOrbMDBFile::addTable(std::unique_ptr<TOrbMDBTable> table)
{
    table->setFile(this);
    m_tables.push_back(std::move(table));
    return m_tables.back().get();
}

TOrbMDBTable *TOrbMDBFile::tableNamed(std::string_view name) const
{
    for (const auto &table : m_tables)
        if (table->name() == name)
            return table.get();
    return nullptr;
}

TOrbMDBForeignKey *TOrbMDBFile::addForeignKey(std::unique_ptr<TOrbMDBForeignKey> key)
{
    key->setFile(this);
    m_allForeignKeys.push_back(std::move(key));
    return m_allForeignKeys.back().get();
}

TOrbMDBLinkedTable *TOrbMDBFile::addLinkedTable(std::unique_ptr<TOrbMDBLinkedTable> table)
{
    table->setFile(this);
    m_linkedTables.push_back(std::move(table));
    return m_linkedTables.back().get();
}

TOrbMDBQuery *TOrbMDBFile::addQuery(std::unique_ptr<TOrbMDBQuery> query)
{
    query->setFile(this);
    m_queries.push_back(std::move(query));
    return m_queries.back().get();
}

bool TOrbMDBFile::open(FileReader &reader, LoadObserver *observer)
{
    if (m_fActive)
        return true;
    m_openFailure = OpenFailure::None;
    m_losses.clear();
    if (!reader.read(*this, observer)) {
        if (m_openFailure == OpenFailure::None)
            m_openFailure = OpenFailure::Other;
        m_tables.clear();
        m_allForeignKeys.clear();
        m_linkedTables.clear();
        m_queries.clear();
        return false;
    }
    sortLoadedLists();
    m_fActive = true;
    return true;
}

void TOrbMDBFile::sortLoadedLists()
{
    std::stable_sort(m_tables.begin(), m_tables.end(),
                     [](const auto &a, const auto &b) { return a->compareByName(*b) < 0; });
    const auto byName = [](const auto &a, const auto &b) { return a->compareByName(*b) < 0; };
    std::stable_sort(m_allForeignKeys.begin(), m_allForeignKeys.end(), byName);
    std::stable_sort(m_linkedTables.begin(), m_linkedTables.end(), byName);
    std::stable_sort(m_queries.begin(), m_queries.end(), byName);
}

void TOrbMDBFile::close()
{
    for (auto &table : m_tables)
        table->close();
    m_tables.clear();
    m_allForeignKeys.clear();
    m_linkedTables.clear();
    m_queries.clear();
    m_losses.clear();
    m_fActive = false;
}

std::optional<std::vector<const TOrbMDBForeignKey *>> TOrbMDBFile::foreignKeysForTable(std::string_view tableName) const
{
    if (m_allForeignKeys.empty())
        return std::nullopt;
    std::vector<const TOrbMDBForeignKey *> out;
    for (const auto &key : m_allForeignKeys)
        if (key->referencingTable() == tableName)
            out.push_back(key.get());
    return out;
}

TOrbMDBForeignKey *TOrbMDBFile::findForeignKeyByName(std::string_view name) const
{
    for (const auto &key : m_allForeignKeys)
        if (key->name() == name)
            return key.get();
    return nullptr;
}

int TOrbMDBFile::compareByName(const TOrbMDBObject &other) const
{
    const int byName = finderCompare(m_name, other.name());
    if (byName != 0)
        return byName;
    if (const auto *otherFile = dynamic_cast<const TOrbMDBFile *>(&other))
        return finderCompare(m_path, otherFile->m_path);
    return 0;
}

int TOrbMDBFile::compareByLastOpenDate(const TOrbMDBFile &other) const
{
    if (other.m_lastOpenDate < m_lastOpenDate)
        return -1;
    if (other.m_lastOpenDate > m_lastOpenDate)
        return 1;
    return 0;
}

void TOrbMDBFile::informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const
{
    labels = {"Name", "Where", "Size", "Created", "Modified", "Last opened"};
    values = {formatObjects("%@.%@", {m_name, m_ext}), m_path,
              formatComputerFileSize(m_size),          dateWithFinderFormat(m_createDate),
              dateWithFinderFormat(m_modifyDate),      dateWithFinderFormat(m_lastOpenDate)};
    if (m_databasePasswordSet) {
        labels.push_back("Password protected");
        values.push_back(std::string("YES"));
    }
    // What the last open could not read, one row a loss, after the file's own rows.
    for (const LossReport &loss : m_losses) {
        labels.push_back("Not read");
        values.push_back(lossText(loss));
    }
}

} // namespace vellum
