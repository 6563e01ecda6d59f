#pragma once

// An in-memory table with one complex column of each kind, for the tests of the views, the
// command line and the loader's stream.

#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBTable.h"

#include <memory>
#include <string>

namespace vellum::test {

/// "Items": ID (Long Integer), Tags (multi-value), Files (attachments), Notes (version
/// history), three rows with the ids 1, 2, 3 in each complex column. Row 1 has values in every
/// column, row 2 none, row 3 one of each; id 9 has values no row refers to.
inline std::unique_ptr<TOrbMDBTable> complexItemsTable()
{
    auto table = std::make_unique<TOrbMDBTable>();
    table->setName("Items");
    for (const char *name : {"ID", "Tags", "Files", "Notes"}) {
        auto column = std::make_unique<TOrbMDBColumn>();
        column->setName(name);
        column->setDataType(std::string(name) == "ID" ? "Long Integer" : "Complex Value auto number");
        table->addColumn(std::move(column));
    }
    TableStore &store = table->mutableStore();
    for (const char *id : {"1", "2", "3"}) {
        store.beginRow();
        for (int c = 0; c < 4; ++c)
            store.appendText(id, 1);
        store.endRow();
    }
    auto tags = std::make_unique<ComplexColumnValues>(ComplexKind::MultiValue);
    tags->setValueType("Text");
    tags->valuesFor(1).addValue("red");
    tags->valuesFor(1).addValue("green; blue");
    tags->valuesFor(3).addValue("\xC3\xA9t\xC3\xA9"); // "été"
    tags->valuesFor(9).addValue("unused");
    auto files = std::make_unique<ComplexColumnValues>(ComplexKind::Attachment);
    files->valuesFor(1).addAttachment("notes.txt", "txt", {'h', 'i', '\n'});
    files->valuesFor(1).addAttachment("setup.sh", "sh", {'#', '!', '/', 'b', 'i', 'n', '/', 's'});
    files->valuesFor(3).addAttachment("empty.bin", "bin", {});
    auto notes = std::make_unique<ComplexColumnValues>(ComplexKind::VersionHistory);
    notes->valuesFor(1).addVersion("third", "03/04/2021 10:00:00");
    notes->valuesFor(1).addVersion("second\nline", "03/03/2021 09:30:15");
    notes->valuesFor(1).addVersion("first", "03/01/2021 08:00:00");
    notes->valuesFor(3).addVersion("only", "12/31/1999 23:59:59");
    table->setComplexValues(1, std::move(tags));
    table->setComplexValues(2, std::move(files));
    table->setComplexValues(3, std::move(notes));
    return table;
}

} // namespace vellum::test
