#include "model/TOrbMDBTable.h"

#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBForeignKey.h"

#include <algorithm>
#include <charconv>
#include <set>

namespace vellum {

std::optional<CellValue> TOrbMDBRow::value(std::string_view columnName) const
{
    const auto position = m_table->columnIndex(columnName);
    if (!position)
        return std::nullopt;
    return m_table->cell(m_index, *position);
}

CellValue TOrbMDBRow::cell(std::size_t column) const
{
    return m_table->cell(m_index, column);
}

TOrbMDBColumn *TOrbMDBTable::addColumn(std::unique_ptr<TOrbMDBColumn> column)
{
    column->setTable(this);
    m_columnIndex.emplace(column->name(), m_columns.size());
    m_columns.push_back(std::move(column));
    return m_columns.back().get();
}

std::optional<std::size_t> TOrbMDBTable::columnIndex(std::string_view name) const
{
    const auto it = m_columnIndex.find(std::string(name));
    if (it == m_columnIndex.end())
        return std::nullopt;
    return it->second;
}

TOrbMDBColumn *TOrbMDBTable::columnNamed(std::string_view name) const
{
    const auto position = columnIndex(name);
    return position ? m_columns[*position].get() : nullptr;
}

TableStore &TOrbMDBTable::mutableStore()
{
    if (!m_storeSized) {
        m_store = TableStore(m_columns.size());
        m_storeSized = true;
    }
    return m_store;
}

TOrbMDBIndex *TOrbMDBTable::addIndex(std::unique_ptr<TOrbMDBIndex> index)
{
    index->setTable(this);
    m_indices.push_back(std::move(index));
    return m_indices.back().get();
}

void TOrbMDBTable::sortIndices()
{
    std::stable_sort(m_indices.begin(), m_indices.end(),
                     [](const auto &a, const auto &b) { return a->compareByName(*b) < 0; });
}

void TOrbMDBTable::setColumnPrimaryKey()
{
    if (m_columns.empty() || m_indices.empty())
        return;
    std::set<std::string> keyNames;
    for (const auto &index : m_indices)
        if (index->isPrimaryKey())
            for (const IndexKey &key : index->keys())
                keyNames.insert(key.name);
    for (const auto &column : m_columns)
        if (keyNames.count(column->name()))
            column->setIsPrimaryKey(true);
}

bool TOrbMDBTable::isOLEColumn(std::string_view name) const
{
    for (const auto &column : m_columns)
        if (column->name() == name && column->dataType() == "OLE")
            return true;
    return false;
}

std::optional<std::vector<const TOrbMDBForeignKey *>> TOrbMDBTable::foreignKeys() const
{
    if (!m_file)
        return std::nullopt;
    return m_file->foreignKeysForTable(m_name);
}

void TOrbMDBTable::close()
{
    m_columns.clear();
    m_columnIndex.clear();
    m_store.clear();
    m_store = TableStore(0);
    m_storeSized = false;
    m_indices.clear();
    m_complex.clear();
}

void TOrbMDBTable::setComplexValues(std::size_t column, std::unique_ptr<ComplexColumnValues> values)
{
    const auto it = std::lower_bound(m_complex.begin(), m_complex.end(), column,
                                     [](const auto &entry, std::size_t position) { return entry.first < position; });
    if (it != m_complex.end() && it->first == column)
        it->second = std::move(values);
    else
        m_complex.emplace(it, column, std::move(values));
}

const ComplexColumnValues *TOrbMDBTable::complexValues(std::size_t column) const
{
    for (const auto &[position, values] : m_complex)
        if (position == column)
            return values.get();
    return nullptr;
}

ComplexColumnValues *TOrbMDBTable::mutableComplexValues(std::size_t column)
{
    for (const auto &[position, values] : m_complex)
        if (position == column)
            return values.get();
    return nullptr;
}

void TOrbMDBTable::attachComplex(CellValue &value, std::size_t column) const
{
    if (!value.isText())
        return;
    const ComplexColumnValues *values = complexValues(column);
    if (!values)
        return;
    std::int64_t id = 0;
    const char *end = value.text.data() + value.text.size();
    const auto [last, error] = std::from_chars(value.text.data(), end, id);
    if (error != std::errc() || last != end)
        return;
    value.complex = &values->find(id);
}

void TOrbMDBTable::informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const
{
    labels = {"Name", "Number of rows", "Number of columns"};
    values = {m_name, static_cast<long long>(rowCount()), static_cast<long long>(m_columns.size())};
}

} // namespace vellum
