#pragma once

#include <functional>
#include <vector>

namespace vellum {

class TOrbMDBTable;

/// The Back and Next history of visited tables and whether Back and Next are enabled.
/// `previous` ends with the table shown now (the one before it is where Back goes); `next`
/// ends with where Next goes. Main thread only; tables are not owned.
class NavigationHistory {
public:
    const std::vector<TOrbMDBTable *> &previous() const { return m_previous; }
    const std::vector<TOrbMDBTable *> &next() const { return m_next; }
    bool backEnabled() const { return m_backEnabled; }
    bool nextEnabled() const { return m_nextEnabled; }

    /// Records a visit of a table (a click in the file list, a jump-bar choice).
    void recordVisit(TOrbMDBTable *table);

    /// The selection step of Back and Next: shows the target and answers whether the jump bar
    /// now represents it.
    using SelectTarget = std::function<bool(TOrbMDBTable *target)>;
    /// Back: only while enabled; `select` shows the target.
    void goBack(const SelectTarget &select);
    /// Next: only while enabled; `select` shows the target.
    void goNext(const SelectTarget &select);

    /// Removes the tables of a closed file from both lists and tidies them.
    void purgeTables(const std::vector<TOrbMDBTable *> &tables);

    /// The file search's rule: with exactly one table in `previous` and Back disabled, Back is
    /// enabled (see the file list's search).
    void enableBackForSingleEntry();

private:
    std::vector<TOrbMDBTable *> m_previous;
    std::vector<TOrbMDBTable *> m_next;
    bool m_backEnabled = false;
    bool m_nextEnabled = false;
};

} // namespace vellum
