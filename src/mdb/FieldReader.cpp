#include "mdb/FieldReader.h"

#include "mdb/longValues.h"
#include "model/ole/decodeOleCell.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace vellum {
namespace {

constexpr unsigned char kCalculatedFlags = 0xC0;
constexpr int kTypeLargeNumber = 0x13;
constexpr int kTypeExtendedDateTime = 0x14;

} // namespace

bool isCalculatedColumn(const ColumnDescriptorFlags &flags)
{
    return (flags.extFlags & kCalculatedFlags) == kCalculatedFlags;
}

int storedValueType(const MdbColumn &column, bool calculated)
{
    if (calculated) {
        if (const char *resultType = mdb_col_get_prop(&column, "ResultType")) {
            char *end = nullptr;
            const long code = std::strtol(resultType, &end, 10);
            if (end != resultType && *end == '\0' && code > 0 && code < 0x100)
                return static_cast<int>(code);
        }
    }
    return column.col_type;
}

FieldReader::FieldReader(MdbHandle *mdb, std::vector<MdbColumn *> columns,
                         const std::vector<ColumnDescriptorFlags> &flags, const std::string &jet3Charset)
    : m_mdb(mdb), m_jet3(mdb->f->jet_version == MDB_VER_JET3), m_longValueLimit(longValueLimit(mdb))
{
    m_fields.reserve(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const bool calculated = !m_jet3 && i < flags.size() && isCalculatedColumn(flags[i]);
        m_fields.push_back(Field{columns[i], decodeFor(storedValueType(*columns[i], calculated)), calculated});
    }
    if (m_jet3)
        m_jet3Iconv = iconv_open("UTF-8", jet3Charset.c_str());
}

FieldReader::~FieldReader()
{
    if (m_jet3Iconv != reinterpret_cast<iconv_t>(-1))
        iconv_close(m_jet3Iconv);
}

FieldReader::Decode FieldReader::decodeFor(int type)
{
    switch (type) {
    case MDB_BOOL:
        return Decode::Boolean;
    case MDB_BYTE:
        return Decode::Byte;
    case MDB_INT:
        return Decode::Integer;
    case MDB_LONGINT:
        return Decode::LongInteger;
    case MDB_MONEY:
        return Decode::Currency;
    case MDB_FLOAT:
        return Decode::Single;
    case MDB_DOUBLE:
        return Decode::Double;
    case MDB_DATETIME:
        return Decode::DateTime;
    case MDB_TEXT:
        return Decode::Text;
    case MDB_OLE:
        return Decode::Ole;
    case MDB_MEMO:
        return Decode::Memo;
    case MDB_REPID:
        return Decode::ReplicationId;
    case MDB_NUMERIC:
        return Decode::Numeric;
    case MDB_COMPLEX:
        return Decode::LongInteger; // the id of the row's values in a hidden table
    case kTypeLargeNumber:
        return Decode::LargeNumber;
    case kTypeExtendedDateTime:
        return Decode::ExtendedDateTime;
    default:
        return Decode::Bytes;
    }
}

bool FieldReader::appendRow(TableStore &store)
{
    bool heavy = false;
    for (const Field &field : m_fields) {
        MdbColumn &column = *field.column;
        if (field.decode == Decode::Boolean && !field.calculated) {
            // A Boolean lives in the row's null mask: libmdb leaves 0 here for a set bit (true).
            store.appendText(column.cur_value_len == 0 ? "1" : "0", 1);
            continue;
        }
        if (column.cur_value_len <= 0 || column.cur_value_start < 0 ||
            static_cast<std::size_t>(column.cur_value_start) + static_cast<std::size_t>(column.cur_value_len) >
                static_cast<std::size_t>(m_mdb->fmt->pg_size)) {
            store.appendNull();
            continue;
        }
        StoredBytes bytes(static_cast<const unsigned char *>(m_mdb->pg_buf) + column.cur_value_start,
                          static_cast<std::size_t>(column.cur_value_len));
        if (field.calculated) {
            appendCalculated(store, field.decode, bytes, column);
            continue;
        }
        if (field.decode == Decode::Ole)
            heavy = true;
        appendValue(store, field.decode, bytes, column);
    }
    return heavy;
}

void FieldReader::appendCalculated(TableStore &store, Decode decode, StoredBytes bytes, const MdbColumn &column)
{
    // A calculated Memo is a long value whose content is wrapped; every other result is wrapped
    // in place.
    std::optional<std::string> longValue;
    if (decode == Decode::Memo) {
        longValue = readLong(bytes);
        if (!longValue)
            return store.appendNull();
        bytes = StoredBytes(reinterpret_cast<const unsigned char *>(longValue->data()), longValue->size());
    }
    const auto inner = unwrapCalculatedValue(bytes);
    if (!inner) {
        ++m_undecoded;
        store.appendNull();
        return;
    }
    switch (decode) {
    case Decode::Boolean:
        if (inner->empty())
            return appendDecoded(store, std::nullopt);
        return store.appendText((*inner)[0] != 0 ? "1" : "0", 1);
    case Decode::Memo:
    case Decode::Text:
        return inner->empty() ? store.appendNull() : appendText(store, *inner);
    case Decode::Numeric:
        return appendDecoded(store, decodeCalculatedNumeric(*inner));
    default:
        return appendValue(store, decode, *inner, column);
    }
}

std::optional<std::string> FieldReader::readLong(StoredBytes bytes)
{
    auto value = readLongValue(m_mdb, bytes, m_longValueLimit);
    if (!value) {
        ++m_undecoded;
        ++m_lostLongValues;
    }
    return value;
}

void FieldReader::appendDecoded(TableStore &store, const std::optional<std::string> &text)
{
    if (!text) {
        ++m_undecoded;
        store.appendNull();
        return;
    }
    store.appendText(text->data(), text->size());
}

void FieldReader::appendText(TableStore &store, StoredBytes bytes)
{
    if (!m_jet3) {
        m_scratch.clear();
        appendUnicodeText(m_scratch, bytes);
        store.appendText(m_scratch.data(), m_scratch.size());
        return;
    }
    if (m_jet3Iconv == reinterpret_cast<iconv_t>(-1)) {
        store.appendText(reinterpret_cast<const char *>(bytes.data()), bytes.size());
        return;
    }
    // Jet 3 text in the file's code page; a byte the code page does not define becomes U+FFFD.
    m_scratch.assign(bytes.size() * 3 + 4, '\0');
    char *in = const_cast<char *>(reinterpret_cast<const char *>(bytes.data()));
    std::size_t inLeft = bytes.size();
    char *out = m_scratch.data();
    std::size_t outLeft = m_scratch.size();
    iconv(m_jet3Iconv, nullptr, nullptr, nullptr, nullptr);
    while (inLeft > 0) {
        if (iconv(m_jet3Iconv, &in, &inLeft, &out, &outLeft) != static_cast<std::size_t>(-1))
            break;
        if (errno != EILSEQ && errno != EINVAL)
            break;
        if (outLeft < 3)
            break;
        std::memcpy(out, "\xEF\xBF\xBD", 3);
        out += 3;
        outLeft -= 3;
        ++in;
        --inLeft;
    }
    store.appendText(m_scratch.data(), static_cast<std::size_t>(out - m_scratch.data()));
}

void FieldReader::appendValue(TableStore &store, Decode decode, StoredBytes bytes, const MdbColumn &column)
{
    switch (decode) {
    case Decode::Boolean: // handled by the caller: the value is not in the bytes
        break;
    case Decode::Byte:
        return appendDecoded(store, decodeInteger(bytes, 1));
    case Decode::Integer:
        return appendDecoded(store, decodeInteger(bytes, 2));
    case Decode::LongInteger:
        return appendDecoded(store, decodeInteger(bytes, 4));
    case Decode::LargeNumber:
        return appendDecoded(store, decodeInteger(bytes, 8));
    case Decode::Currency:
        return appendDecoded(store, decodeCurrency(bytes));
    case Decode::Single:
        return appendDecoded(store, decodeSingle(bytes));
    case Decode::Double:
        return appendDecoded(store, decodeDouble(bytes));
    case Decode::DateTime:
        return appendDecoded(store, decodeDateTime(bytes));
    case Decode::ReplicationId:
        return appendDecoded(store, decodeReplicationId(bytes));
    // libmdb keeps a Numeric column's scale in col_prec (and the precision in col_scale).
    case Decode::Numeric:
        return appendDecoded(store, decodeNumeric(bytes, static_cast<unsigned>(column.col_prec)));
    case Decode::ExtendedDateTime:
        return appendDecoded(store, decodeExtendedDateTime(bytes));
    case Decode::Text:
        return appendText(store, bytes);
    case Decode::Bytes:
        return store.appendText(reinterpret_cast<const char *>(bytes.data()), bytes.size());
    case Decode::Memo: {
        const auto value = readLong(bytes);
        if (!value)
            return store.appendNull();
        return appendText(store, StoredBytes(reinterpret_cast<const unsigned char *>(value->data()), value->size()));
    }
    case Decode::Ole: {
        const auto value = readLong(bytes);
        if (m_oleBytes)
            return value ? store.appendText(value->data(), value->size()) : store.appendNull();
        std::unique_ptr<TOrbBlobData> blob =
            value && !value->empty() ? decodeOleCell(value->data(), value->size()) : nullptr;
        if (blob)
            store.appendBlob(std::move(blob));
        else
            store.appendNull();
        return;
    }
    }
}

} // namespace vellum
