#include "model/TOrbMDBForeignKey.h"

#include "util/format.h"
#include "util/localized.h"

namespace vellum {

void TOrbMDBForeignKey::informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const
{
    labels = {"Name", "Columns", "Referenced table", "Referenced columns", "On update cascade", "On delete cascade"};
    values = {m_name,
              join(m_referencingColumns, ", "),
              m_referencedTable,
              join(m_referencedColumns, ", "),
              localized(m_onUpdateCascade ? "YES" : "NO"),
              localized(m_onDeleteCascade ? "YES" : "NO")};
}

} // namespace vellum
