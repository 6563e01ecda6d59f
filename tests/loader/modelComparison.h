#pragma once

// Compares two loaded models field by field, for the tests of the loading paths.

#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBFile.h"

#include <gtest/gtest.h>

#include <string>

namespace vellum::test {

/// A complex cell's kind and every item, attachment data included.
inline std::string describeComplex(const TOrbComplexValue &value)
{
    std::string out = "complex:" + std::to_string(static_cast<int>(value.kind()));
    for (const std::string &text : value.values())
        out += "|" + text;
    for (const auto &attachment : value.attachments())
        out += "|" + attachment.fileName + "/" + attachment.fileType + "/" +
               std::string(attachment.data->data().begin(), attachment.data->data().end());
    for (const auto &version : value.versions())
        out += "|" + version.date + "/" + version.value;
    return out;
}

inline std::string describeCell(const CellValue &cell)
{
    if (cell.complex)
        return "text:" + std::string(cell.text) + ":" + describeComplex(*cell.complex);
    if (cell.isNull())
        return cell.blob ? "<null:" + cell.blob->cellDescription() + ">" : "<null>";
    if (cell.isText())
        return "text:" + std::string(cell.text);
    return "blob:" + cell.blob->fileExtension() + ":" + std::string(cell.blob->data().begin(), cell.blob->data().end());
}

inline void expectSameColumn(const TOrbMDBColumn &a, const TOrbMDBColumn &b)
{
    SCOPED_TRACE("column " + a.name());
    EXPECT_EQ(a.name(), b.name());
    EXPECT_EQ(a.dataType(), b.dataType());
    EXPECT_EQ(a.fieldSize(), b.fieldSize());
    EXPECT_EQ(a.precision(), b.precision());
    EXPECT_EQ(a.scale(), b.scale());
    EXPECT_EQ(a.allowZeroLength(), b.allowZeroLength());
    EXPECT_EQ(a.unicodeCompression(), b.unicodeCompression());
    EXPECT_EQ(a.required(), b.required());
    EXPECT_EQ(a.defaultValue(), b.defaultValue());
    EXPECT_EQ(a.description(), b.description());
    EXPECT_EQ(a.resultType(), b.resultType());
    EXPECT_EQ(a.expression(), b.expression());
    EXPECT_EQ(a.textFormat(), b.textFormat());
    EXPECT_EQ(a.textAlign(), b.textAlign());
    EXPECT_EQ(a.storedDecimalPlaces(), b.storedDecimalPlaces());
    EXPECT_EQ(a.isPrimaryKey(), b.isPrimaryKey());
    EXPECT_EQ(a.isHyperlink(), b.isHyperlink());
    EXPECT_EQ(a.isCalculatedType(), b.isCalculatedType());
    EXPECT_EQ(a.sortOrder(), b.sortOrder());
}

/// Same name, columns with every property, indexes in order, and every cell.
inline void expectSameTable(const TOrbMDBTable &a, const TOrbMDBTable &b)
{
    SCOPED_TRACE("table " + a.name());
    EXPECT_EQ(a.name(), b.name());
    ASSERT_EQ(a.columns().size(), b.columns().size());
    for (size_t c = 0; c < a.columns().size(); ++c)
        expectSameColumn(*a.columns()[c], *b.columns()[c]);
    ASSERT_EQ(a.indices().size(), b.indices().size());
    for (size_t i = 0; i < a.indices().size(); ++i) {
        const TOrbMDBIndex &x = *a.indices()[i];
        const TOrbMDBIndex &y = *b.indices()[i];
        EXPECT_EQ(x.name(), y.name());
        EXPECT_EQ(x.isPrimaryKey(), y.isPrimaryKey());
        EXPECT_EQ(x.isUnique(), y.isUnique());
        EXPECT_EQ(x.isForeignKey(), y.isForeignKey()) << x.name();
        EXPECT_EQ(x.isAscending(), y.isAscending());
        ASSERT_EQ(x.keys().size(), y.keys().size()) << x.name();
        for (size_t k = 0; k < x.keys().size(); ++k) {
            EXPECT_EQ(x.keys()[k].name, y.keys()[k].name);
            EXPECT_EQ(x.keys()[k].ascending, y.keys()[k].ascending);
        }
    }
    ASSERT_EQ(a.rowCount(), b.rowCount());
    int mismatches = 0;
    for (size_t r = 0; r < a.rowCount() && mismatches < 5; ++r)
        for (size_t c = 0; c < a.columns().size(); ++c) {
            const std::string x = describeCell(a.cell(r, c));
            const std::string y = describeCell(b.cell(r, c));
            if (x != y) {
                ADD_FAILURE() << "row " << r << " column " << c << ": " << x.substr(0, 80) << " vs " << y.substr(0, 80);
                ++mismatches;
            }
        }
}

/// Same tables in the same order and the same relationships in the same order.
inline void expectSameModel(const TOrbMDBFile &a, const TOrbMDBFile &b)
{
    ASSERT_EQ(a.tables().size(), b.tables().size());
    for (size_t t = 0; t < a.tables().size(); ++t)
        expectSameTable(*a.tables()[t], *b.tables()[t]);
    ASSERT_EQ(a.allForeignKeys().size(), b.allForeignKeys().size());
    for (size_t k = 0; k < a.allForeignKeys().size(); ++k) {
        const TOrbMDBForeignKey &x = *a.allForeignKeys()[k];
        const TOrbMDBForeignKey &y = *b.allForeignKeys()[k];
        SCOPED_TRACE("relationship " + x.name());
        EXPECT_EQ(x.name(), y.name());
        EXPECT_EQ(x.referencingTable(), y.referencingTable());
        EXPECT_EQ(x.referencingColumns(), y.referencingColumns());
        EXPECT_EQ(x.referencedTable(), y.referencedTable());
        EXPECT_EQ(x.referencedColumns(), y.referencedColumns());
        EXPECT_EQ(x.onUpdateCascade(), y.onUpdateCascade());
        EXPECT_EQ(x.onDeleteCascade(), y.onDeleteCascade());
    }
    ASSERT_EQ(a.linkedTables().size(), b.linkedTables().size());
    for (size_t l = 0; l < a.linkedTables().size(); ++l) {
        const TOrbMDBLinkedTable &x = *a.linkedTables()[l];
        const TOrbMDBLinkedTable &y = *b.linkedTables()[l];
        SCOPED_TRACE("linked table " + x.name());
        EXPECT_EQ(x.name(), y.name());
        EXPECT_EQ(x.kind(), y.kind());
        EXPECT_EQ(x.database(), y.database());
        EXPECT_EQ(x.targetTable(), y.targetTable());
        EXPECT_EQ(x.connect(), y.connect());
    }
    ASSERT_EQ(a.queries().size(), b.queries().size());
    for (size_t q = 0; q < a.queries().size(); ++q) {
        const TOrbMDBQuery &x = *a.queries()[q];
        const TOrbMDBQuery &y = *b.queries()[q];
        SCOPED_TRACE("query " + x.name());
        EXPECT_EQ(x.name(), y.name());
        EXPECT_EQ(x.type(), y.type());
        EXPECT_EQ(x.sql(), y.sql());
    }
}

} // namespace vellum::test
