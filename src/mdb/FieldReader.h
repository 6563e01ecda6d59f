#pragma once

#include "mdb/mdbColumnsUnsorted.h"
#include "mdb/mdbtoolsInclude.h"
#include "mdb/storedValues.h"
#include "model/TableStore.h"

#include <cstdint>
#include <iconv.h>
#include <string>
#include <vector>

namespace vellum {

/// The type a column's values are stored as: its own type code, or for a calculated column the
/// type its "ResultType" property names (the descriptor's code can differ: a calculated Currency
/// may be described as Double, a calculated Memo as Text).
int storedValueType(const MdbColumn &column, bool calculated);

/// True when the descriptor flags mark a calculated column (Access 2010 and later).
bool isCalculatedColumn(const ColumnDescriptorFlags &flags);

/// Reads the fields of the row libmdb has just fetched from their stored bytes (libmdb locates
/// every field of a fetched row: `cur_value_start` and `cur_value_len` into `mdb->pg_buf`) and
/// appends their values to a table store in Vellum's text forms. libmdb's own text conversion
/// is never used: it is wrong for many values and the slowest part of a load. One reader per
/// table read, on the thread that owns the handle.
class FieldReader {
public:
    /// `columns` in stored order, `flags[i]` the descriptor flag bytes of `columns[i]`; `jet3Charset`
    /// names the code page of Jet 3 text (iconv's name).
    FieldReader(MdbHandle *mdb, std::vector<MdbColumn *> columns, const std::vector<ColumnDescriptorFlags> &flags,
                const std::string &jet3Charset);
    ~FieldReader();
    FieldReader(const FieldReader &) = delete;
    FieldReader &operator=(const FieldReader &) = delete;

    /// Appends one value per column of the fetched row (between the store's beginRow and
    /// endRow, which the caller makes). Answers true when the row held OLE data.
    bool appendRow(TableStore &store);

    /// Makes OLE Object fields come out as their stored bytes (the whole long value, no OLE
    /// wrapper taken off) in a text cell: for readers that unwrap them their own way.
    void keepOleBytes() { m_oleBytes = true; }

    /// Values that were stored but could not be decoded (a broken long-value chain, a date
    /// outside the years Access knows, a field of the wrong size); each became the null marker.
    std::uint64_t undecodedValues() const { return m_undecoded; }
    /// Of those, the memo and OLE values whose stored pages could not be read.
    std::uint64_t lostLongValues() const { return m_lostLongValues; }

private:
    enum class Decode : unsigned char {
        Boolean,
        Byte,
        Integer,
        LongInteger,
        LargeNumber,
        Currency,
        Single,
        Double,
        DateTime,
        ReplicationId,
        Numeric,
        ExtendedDateTime,
        Text,
        Memo,
        Ole,
        Bytes, ///< Binary and types Vellum does not know: the bytes as stored
    };
    struct Field {
        MdbColumn *column;
        Decode decode;
        bool calculated;
    };

    static Decode decodeFor(int type);
    void appendValue(TableStore &store, Decode decode, StoredBytes bytes, const MdbColumn &column);
    void appendCalculated(TableStore &store, Decode decode, StoredBytes bytes, const MdbColumn &column);
    void appendText(TableStore &store, StoredBytes bytes);
    void appendDecoded(TableStore &store, const std::optional<std::string> &text);
    /// The whole value of a long-value field; nullopt (counted as undecoded) when it cannot be read.
    std::optional<std::string> readLong(StoredBytes bytes);

    MdbHandle *m_mdb;
    std::vector<Field> m_fields;
    bool m_jet3;
    bool m_oleBytes = false;
    iconv_t m_jet3Iconv = reinterpret_cast<iconv_t>(-1);
    std::uint64_t m_longValueLimit;
    std::uint64_t m_undecoded = 0;
    std::uint64_t m_lostLongValues = 0;
    std::string m_scratch;
};

} // namespace vellum
