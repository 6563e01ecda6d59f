#include "model/querySql.h"

#include <algorithm>
#include <memory>

namespace vellum {
namespace {

using Type = TOrbMDBQuery::Type;

// Row attributes.
constexpr int kTypeAttribute = 1;
constexpr int kParameterAttribute = 2;
constexpr int kFlagAttribute = 3;
constexpr int kRemoteDbAttribute = 4;
constexpr int kTableAttribute = 5;
constexpr int kColumnAttribute = 6;
constexpr int kJoinAttribute = 7;
constexpr int kWhereAttribute = 8;
constexpr int kGroupByAttribute = 9;
constexpr int kHavingAttribute = 10;
constexpr int kOrderByAttribute = 11;

// Bits of the flags row.
constexpr int kSelectStar = 0x01;
constexpr int kDistinct = 0x02;
constexpr int kOwnerAccess = 0x04;
constexpr int kDistinctRow = 0x08;
constexpr int kTop = 0x10;
constexpr int kPercent = 0x20;
// In a union query's flags row: set for UNION, clear for UNION ALL.
constexpr int kUnionDistinct = 0x02;
// A column row of an append query that holds one of its VALUES.
constexpr int kAppendValue = 0x8000;
// Column and GROUP BY rows of a crosstab: the pivot, or a row heading.
constexpr int kCrosstabPivot = 0x01;
constexpr int kCrosstabNormal = 0x02;
// The text parameter type, whose row may give a length.
constexpr int kTextParameter = 10;
// The catalog entry's flag bits that give the query's kind.
constexpr std::uint32_t kKindMask = 0xF0;

// How a union query names its two halves (the table rows' second name).
constexpr const char *kUnionFirst = "X7YZ_____1";
constexpr const char *kUnionSecond = "X7YZ_____2";

/// Catalog kind bits and the type-row code of each kind.
struct KindCodes {
    Type type;
    std::uint32_t objectFlag;
    int rowCode;
};
constexpr KindCodes kKinds[] = {
    {Type::Select, 0, 1},          {Type::MakeTable, 80, 2},    {Type::Append, 64, 3},
    {Type::Update, 48, 4},         {Type::Delete, 32, 5},       {Type::CrossTab, 16, 6},
    {Type::DataDefinition, 96, 7}, {Type::PassThrough, 112, 8}, {Type::Union, 128, 9},
};

const KindCodes *kindOfObjectFlag(std::uint32_t flag)
{
    for (const KindCodes &kind : kKinds)
        if (kind.objectFlag == flag)
            return &kind;
    return nullptr;
}

const KindCodes *kindOfRowCode(int code)
{
    for (const KindCodes &kind : kKinds)
        if (kind.rowCode == code)
            return &kind;
    return nullptr;
}

/// Access's names of parameter types by the column type code they declare.
const char *parameterTypeName(int code)
{
    switch (code) {
    case 0:
        return "Value";
    case 1:
        return "Bit";
    case 2:
        return "Byte";
    case 3:
        return "Short";
    case 4:
        return "Long";
    case 5:
        return "Currency";
    case 6:
        return "IEEESingle";
    case 7:
        return "IEEEDouble";
    case 8:
        return "DateTime";
    case 9:
        return "Binary";
    case 10:
        return "Text";
    case 11:
        return "LongBinary";
    case 12:
        return "LongText";
    case 15:
        return "Guid";
    case 16:
        return "Decimal";
    default:
        return nullptr;
    }
}

const char *joinWords(int code)
{
    switch (code) {
    case 1:
        return " INNER JOIN ";
    case 2:
        return " LEFT JOIN ";
    case 3:
        return " RIGHT JOIN ";
    default:
        return nullptr;
    }
}

bool isNameCharacter(unsigned char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

bool isBracketed(const std::string &text)
{
    return text.size() >= 2 && text.front() == '[' && text.back() == ']';
}

void appendBracketed(std::string &out, const std::string &text)
{
    if (isBracketed(text)) {
        out += text;
    } else {
        out += '[';
        out += text;
        out += ']';
    }
}

void appendName(std::string &out, const std::string &text)
{
    if (std::all_of(text.begin(), text.end(), [](char c) { return isNameCharacter(static_cast<unsigned char>(c)); }))
        out += text;
    else
        appendBracketed(out, text);
}

bool equalsIgnoringCase(const std::string &a, const std::string &b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto lower = [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; };
        if (lower(a[i]) != lower(b[i]))
            return false;
    }
    return true;
}

std::string joined(const std::vector<std::string> &parts, const char *separator)
{
    std::string out;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i)
            out += separator;
        out += parts[i];
    }
    return out;
}

/// A parameter's name as Access declares it: a reference to a form's control
/// ("Forms!Orders!OrderID") with each part bracketed, the way it is written where it is used;
/// another name bracketed when it needs it ("[Beginning Date]"). A name stored with its brackets
/// stays as it is.
std::string parameterName(const std::string &name)
{
    if (name.empty() || name.front() == '[')
        return name;
    if (name.find('!') == std::string::npos) {
        std::string out;
        appendName(out, name);
        return out;
    }
    std::string out;
    std::size_t start = 0;
    for (;;) {
        const std::size_t bang = name.find('!', start);
        const std::string part = name.substr(start, bang == std::string::npos ? std::string::npos : bang - start);
        appendBracketed(out, part);
        if (bang == std::string::npos)
            break;
        out += '!';
        start = bang + 1;
    }
    return out;
}

/// " AS alias" for a column or table alias.
void appendAlias(std::string &out, const std::optional<std::string> &alias)
{
    if (!alias)
        return;
    out += " AS ";
    appendName(out, *alias);
}

/// " IN 'path' [type]" when the data lives in another database.
void appendRemoteDb(std::string &out, const std::optional<std::string> &path, const std::optional<std::string> &type)
{
    if (!path && !type)
        return;
    out += " IN '";
    if (path)
        out += *path;
    out += '\'';
    if (type) {
        out += " [";
        out += *type;
        out += ']';
    }
}

/// A source of rows in the FROM clause: a table (with its alias) or a join of two sources.
struct Source {
    std::string key;  ///< the name the joins use: the alias, else the table name
    std::string text; ///< a table's text
    int joinType = 0; ///< 0 for a table
    std::unique_ptr<Source> left;
    std::unique_ptr<Source> right;
    std::vector<std::string> conditions; ///< of a join, in the order written

    bool isJoin() const { return joinType != 0; }
    bool contains(const std::string &name) const
    {
        return isJoin() ? left->contains(name) || right->contains(name) : equalsIgnoringCase(key, name);
    }
    /// Writes the source; joins below the top are parenthesised. False on an unknown join kind.
    bool write(std::string &out, bool top) const
    {
        if (!isJoin()) {
            out += text;
            return true;
        }
        const char *words = joinWords(joinType);
        if (!words)
            return false;
        if (!top)
            out += '(';
        if (!left->write(out, false))
            return false;
        out += words;
        if (!right->write(out, false))
            return false;
        out += " ON ";
        if (conditions.size() > 1)
            out += '(' + joined(conditions, ") AND (") + ')';
        else
            out += conditions.front();
        if (!top)
            out += ')';
        return true;
    }
};

std::unique_ptr<Source> tableSource(const std::string &name)
{
    auto source = std::make_unique<Source>();
    source->key = name;
    source->text = quotedQueryName(name, true);
    return source;
}

/// The rows of a query, sorted by what they describe, and the clauses built from them.
class QueryRows {
public:
    explicit QueryRows(const std::vector<QueryRow> &rows) : m_rows(rows) {}

    std::vector<const QueryRow *> withAttribute(int attribute) const
    {
        std::vector<const QueryRow *> found;
        for (const QueryRow &row : m_rows)
            if (row.attribute == attribute)
                found.push_back(&row);
        return found;
    }
    /// The row of a clause that has at most one (the first when a damaged definition has more).
    const QueryRow &single(int attribute) const
    {
        static const QueryRow kEmpty{};
        for (const QueryRow &row : m_rows)
            if (row.attribute == attribute)
                return row;
        return kEmpty;
    }
    int flags() const { return single(kFlagAttribute).flag.value_or(0); }
    bool hasFlag(int mask) const { return (flags() & mask) != 0; }

    std::string parameters() const
    {
        std::vector<std::string> declared;
        for (const QueryRow *row : withAttribute(kParameterAttribute)) {
            std::string text = parameterName(row->name1.value_or(std::string()));
            const int code = row->flag.value_or(0);
            if (const char *type = parameterTypeName(code)) {
                text += ' ';
                text += type;
                if (code == kTextParameter && row->extra.value_or(0) > 0)
                    text += '(' + std::to_string(*row->extra) + ')';
            }
            declared.push_back(std::move(text));
        }
        return declared.empty() ? std::string() : "PARAMETERS " + joined(declared, ", ") + ";\n";
    }

    /// The FROM list: tables, then each join combining the sources of its two tables.
    bool fromTables(std::vector<std::string> &out, std::string &error) const
    {
        std::vector<std::unique_ptr<Source>> sources;
        for (const QueryRow *row : withAttribute(kTableAttribute)) {
            auto source = std::make_unique<Source>();
            if (row->expression) {
                appendBracketed(source->text, *row->expression);
                source->text += '.';
            }
            if (row->name1)
                source->text += quotedQueryName(*row->name1, true);
            appendAlias(source->text, row->name2);
            source->key = row->name2 ? *row->name2 : row->name1.value_or(std::string());
            sources.push_back(std::move(source));
        }
        for (const QueryRow *join : withAttribute(kJoinAttribute)) {
            const std::string from = join->name1.value_or(std::string());
            const std::string to = join->name2.value_or(std::string());
            const std::string condition = join->expression.value_or(std::string());
            const int type = join->flag.value_or(0);
            std::unique_ptr<Source> left;
            std::unique_ptr<Source> right;
            Source *both = nullptr; // the one source that already holds both tables
            for (auto it = sources.begin(); it != sources.end() && (!left || !right);) {
                if (!left && (*it)->contains(from)) {
                    if (!right && (*it)->contains(to)) {
                        both = it->get();
                        break;
                    }
                    left = std::move(*it);
                    it = sources.erase(it);
                } else if (!right && (*it)->contains(to)) {
                    right = std::move(*it);
                    it = sources.erase(it);
                } else {
                    ++it;
                }
            }
            if (both) {
                // Another condition of a join already written: Access keeps them in reverse.
                if (!both->isJoin() || both->joinType != type) {
                    error = "inconsistent joins between " + from + " and " + to;
                    return false;
                }
                both->conditions.insert(both->conditions.begin(), condition);
                continue;
            }
            auto combined = std::make_unique<Source>();
            combined->joinType = type;
            combined->left = left ? std::move(left) : tableSource(from);
            combined->right = right ? std::move(right) : tableSource(to);
            combined->conditions.push_back(condition);
            sources.push_back(std::move(combined));
        }
        for (const auto &source : sources) {
            std::string text;
            if (!source->write(text, true)) {
                error = "a join of unknown kind";
                return false;
            }
            out.push_back(std::move(text));
        }
        return true;
    }

    std::vector<std::string> orderings() const
    {
        std::vector<std::string> out;
        for (const QueryRow *row : withAttribute(kOrderByAttribute)) {
            std::string text = row->expression.value_or(std::string());
            if (row->name1 && equalsIgnoringCase(*row->name1, "D"))
                text += " DESC";
            out.push_back(std::move(text));
        }
        return out;
    }

private:
    const std::vector<QueryRow> &m_rows;
};

/// What differs between the statements built on a SELECT: which column and GROUP BY rows they
/// take, whether "SELECT" and its predicate open the text, what follows the columns.
struct SelectParts {
    std::vector<const QueryRow *> columns;
    std::vector<const QueryRow *> groupBy;
    bool selectPrefix = true;
    std::string into; ///< " INTO target" of a make-table query
};

std::string selectPredicate(const QueryRows &rows)
{
    std::string predicate;
    if (rows.hasFlag(kDistinct))
        predicate = "DISTINCT";
    else if (rows.hasFlag(kDistinctRow))
        predicate = "DISTINCTROW";
    if (rows.hasFlag(kTop)) {
        if (!predicate.empty())
            predicate += ' ';
        predicate += "TOP " + rows.single(kFlagAttribute).name1.value_or(std::string());
        if (rows.hasFlag(kPercent))
            predicate += " PERCENT";
    }
    return predicate;
}

bool appendSelect(std::string &out, const QueryRows &rows, const SelectParts &parts, std::string &error)
{
    if (parts.selectPrefix) {
        out += "SELECT ";
        const std::string predicate = selectPredicate(rows);
        if (!predicate.empty())
            out += predicate + ' ';
    }
    std::vector<std::string> columns;
    for (const QueryRow *row : parts.columns) {
        std::string text = row->expression.value_or(std::string());
        appendAlias(text, row->name1);
        columns.push_back(std::move(text));
    }
    if (rows.hasFlag(kSelectStar))
        columns.emplace_back("*");
    out += joined(columns, ", ");
    out += parts.into;
    std::vector<std::string> tables;
    if (!rows.fromTables(tables, error))
        return false;
    if (!tables.empty()) {
        out += "\nFROM " + joined(tables, ", ");
        const QueryRow &remote = rows.single(kRemoteDbAttribute);
        appendRemoteDb(out, remote.name1, remote.expression);
    }
    if (const auto &where = rows.single(kWhereAttribute).expression)
        out += "\nWHERE " + *where;
    std::vector<std::string> groupings;
    for (const QueryRow *row : parts.groupBy)
        groupings.push_back(row->expression.value_or(std::string()));
    if (!groupings.empty())
        out += "\nGROUP BY " + joined(groupings, ", ");
    if (const auto &having = rows.single(kHavingAttribute).expression)
        out += "\nHAVING " + *having;
    const auto orderings = rows.orderings();
    if (!orderings.empty())
        out += "\nORDER BY " + joined(orderings, ", ");
    return true;
}

std::vector<const QueryRow *> filtered(std::vector<const QueryRow *> rows, int mask, bool set)
{
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [&](const QueryRow *row) { return ((row->flag.value_or(0) & mask) != 0) != set; }),
               rows.end());
    return rows;
}

/// A union half as stored, its line breaks made single newlines and its ends trimmed.
std::string unionPart(const std::string &text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' || text[i] == '\n') {
            while (i + 1 < text.size() && (text[i + 1] == '\r' || text[i + 1] == '\n'))
                ++i;
            out += '\n';
        } else {
            out += text[i];
        }
    }
    const auto first = out.find_first_not_of(" \t\n\r");
    if (first == std::string::npos)
        return std::string();
    return out.substr(first, out.find_last_not_of(" \t\n\r") - first + 1);
}

/// The statement itself, without PARAMETERS, owner-access option and the closing ";".
bool appendStatement(std::string &out, Type type, const QueryRows &rows, std::string &error)
{
    const auto columns = rows.withAttribute(kColumnAttribute);
    const auto groupBy = rows.withAttribute(kGroupByAttribute);
    const QueryRow &typeRow = rows.single(kTypeAttribute);
    switch (type) {
    case Type::Select:
        return appendSelect(out, rows, {columns, groupBy, true, {}}, error);
    case Type::MakeTable: {
        std::string into = " INTO " + quotedQueryName(typeRow.name1.value_or(std::string()), true);
        appendRemoteDb(into, typeRow.name2, typeRow.expression);
        return appendSelect(out, rows, {columns, groupBy, true, into}, error);
    }
    case Type::Append: {
        out += "INSERT INTO " + quotedQueryName(typeRow.name1.value_or(std::string()), true);
        std::vector<std::string> targets;
        for (const QueryRow *row : columns)
            if (row->name2)
                targets.push_back(quotedQueryName(*row->name2, true));
        if (!targets.empty())
            out += " (" + joined(targets, ", ") + ')';
        appendRemoteDb(out, typeRow.name2, typeRow.expression);
        out += '\n';
        std::vector<std::string> values;
        for (const QueryRow *row : filtered(columns, kAppendValue, true))
            values.push_back(row->expression.value_or(std::string()));
        if (!values.empty()) {
            out += "VALUES (" + joined(values, ", ") + ')';
            return true;
        }
        return appendSelect(out, rows, {filtered(columns, kAppendValue, false), groupBy, true, {}}, error);
    }
    case Type::Update: {
        std::vector<std::string> tables;
        if (!rows.fromTables(tables, error))
            return false;
        out += "UPDATE " + joined(tables, ", ");
        const QueryRow &remote = rows.single(kRemoteDbAttribute);
        appendRemoteDb(out, remote.name1, remote.expression);
        std::vector<std::string> settings;
        for (const QueryRow *row : columns)
            settings.push_back(quotedQueryName(row->name2.value_or(std::string()), true) + " = " +
                               row->expression.value_or(std::string()));
        out += "\nSET " + joined(settings, ", ");
        if (const auto &where = rows.single(kWhereAttribute).expression)
            out += "\nWHERE " + *where;
        return true;
    }
    case Type::Delete:
        out += "DELETE ";
        return appendSelect(out, rows, {columns, groupBy, false, {}}, error);
    case Type::CrossTab: {
        const auto transform = filtered(columns, kCrosstabPivot | kCrosstabNormal, false);
        const auto pivot = filtered(columns, kCrosstabPivot, true);
        if (!transform.empty() && transform.front()->expression) {
            out += "TRANSFORM " + *transform.front()->expression;
            appendAlias(out, transform.front()->name1);
            out += '\n';
        }
        if (!appendSelect(
                out, rows,
                {filtered(columns, kCrosstabNormal, true), filtered(groupBy, kCrosstabNormal, true), true, {}}, error))
            return false;
        out += "\nPIVOT ";
        if (!pivot.empty())
            out += pivot.front()->expression.value_or(std::string());
        return true;
    }
    case Type::Union: {
        std::optional<std::string> first;
        std::optional<std::string> second;
        for (const QueryRow *row : rows.withAttribute(kTableAttribute)) {
            if (row->name2 == kUnionFirst && !first)
                first = unionPart(row->expression.value_or(std::string()));
            else if (row->name2 == kUnionSecond && !second)
                second = unionPart(row->expression.value_or(std::string()));
        }
        if (!first || !second) {
            error = "a half of the union is missing";
            return false;
        }
        out += *first + "\nUNION " + (rows.hasFlag(kUnionDistinct) ? "" : "ALL ") + *second;
        const auto orderings = rows.orderings();
        if (!orderings.empty())
            out += "\nORDER BY " + joined(orderings, ", ");
        return true;
    }
    case Type::DataDefinition:
    case Type::PassThrough:
    case Type::Unknown: {
        std::string text = typeRow.expression.value_or(std::string());
        while (!text.empty() && text.back() == '\0')
            text.pop_back();
        out += text;
        return true;
    }
    }
    return true;
}

/// The kind by the catalog entry's flags; the type row decides where they say SELECT, and a
/// type row that contradicts them leaves the kind unknown.
Type queryType(std::uint32_t objectFlags, const QueryRows &rows)
{
    std::uint32_t kindFlag = objectFlags & kKindMask;
    const std::optional<int> rowCode = rows.single(kTypeAttribute).flag;
    if (kindFlag == 0 && rowCode)
        if (const KindCodes *byRow = kindOfRowCode(*rowCode))
            kindFlag = byRow->objectFlag;
    const KindCodes *kind = kindOfObjectFlag(kindFlag);
    if (!kind || (rowCode && *rowCode != kind->rowCode))
        return Type::Unknown;
    return kind->type;
}

} // namespace

std::string quotedQueryName(const std::string &text, bool dotted)
{
    std::string out;
    if (!dotted) {
        appendName(out, text);
        return out;
    }
    // Split at every "."; empty parts at the end are dropped, as a dotted name never ends in one.
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t dot = text.find('.', start);
        parts.push_back(text.substr(start, dot == std::string::npos ? std::string::npos : dot - start));
        if (dot == std::string::npos)
            break;
        start = dot + 1;
    }
    while (parts.size() > 1 && parts.back().empty())
        parts.pop_back();
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i)
            out += '.';
        appendName(out, parts[i]);
    }
    return out;
}

RebuiltQuery rebuildQuery(std::uint32_t objectFlags, const std::vector<QueryRow> &rows)
{
    const QueryRows queryRows(rows);
    RebuiltQuery result;
    result.type = queryType(objectFlags, queryRows);
    // Data-definition, pass-through and unknown queries are their stored text alone.
    const bool standardClauses =
        result.type != Type::DataDefinition && result.type != Type::PassThrough && result.type != Type::Unknown;
    std::string sql;
    if (standardClauses)
        sql += queryRows.parameters();
    if (!appendStatement(sql, result.type, queryRows, result.error))
        return result;
    if (standardClauses) {
        if (queryRows.hasFlag(kOwnerAccess))
            sql += "\nWITH OWNERACCESS OPTION";
        sql += ';';
    }
    result.sql = std::move(sql);
    return result;
}

} // namespace vellum
