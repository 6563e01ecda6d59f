#pragma once

#include "model/TOrbMDBObject.h"

#include <string>

namespace vellum {

class TOrbMDBFile;

/// A table the database only refers to: a link to a table of another Access file, or to a
/// table reached over ODBC. The file lists it under its own name; its rows live elsewhere.
class TOrbMDBLinkedTable : public TOrbMDBObject {
public:
    enum class Kind : unsigned char { Access, Odbc };

    TOrbMDBFile *file() const { return m_file; }
    void setFile(TOrbMDBFile *file) { m_file = file; }
    Kind kind() const { return m_kind; }
    void setKind(Kind kind) { m_kind = kind; }
    /// The target database's path as stored (Access links); empty for ODBC links.
    const std::string &database() const { return m_database; }
    void setDatabase(std::string v) { m_database = std::move(v); }
    /// The table's name in the target.
    const std::string &targetTable() const { return m_targetTable; }
    void setTargetTable(std::string v) { m_targetTable = std::move(v); }
    /// The stored connect text (ODBC links; Access links may hold options such as ";DATABASE=").
    const std::string &connect() const { return m_connect; }
    void setConnect(std::string v) { m_connect = std::move(v); }

    /// Where the rows live, in one line: "DATABASE : TABLE" for a table of another Access file,
    /// "ODBC TABLE" for one reached over ODBC (the connect text is left out: it often holds a
    /// password).
    std::string targetDescription() const;

    /// "ACCESS" or "ODBC".
    static const char *kindName(Kind kind);

protected:
    void informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const override;

private:
    TOrbMDBFile *m_file = nullptr;
    Kind m_kind = Kind::Access;
    std::string m_database;
    std::string m_targetTable;
    std::string m_connect;
};

} // namespace vellum
