#include "browser/NavigationHistory.h"

#include <algorithm>

namespace vellum {

namespace {

/// Drops the last element while the last two are the same table.
void dropRepeatedTail(std::vector<TOrbMDBTable *> &list)
{
    while (list.size() >= 2 && list[list.size() - 1] == list[list.size() - 2])
        list.pop_back();
}

} // namespace

void NavigationHistory::recordVisit(TOrbMDBTable *table)
{
    if (!table)
        return;
    if (m_previous.empty() || m_previous.back() != table) {
        m_previous.push_back(table);
        m_next.clear();
        m_nextEnabled = false;
    }
    if (m_previous.size() >= 2 && !m_backEnabled)
        m_backEnabled = true;
    else if (m_previous.size() == 1 && m_backEnabled)
        m_backEnabled = false;
}

void NavigationHistory::goBack(const SelectTarget &select)
{
    if (!m_backEnabled || m_previous.empty())
        return;
    TOrbMDBTable *target = m_previous.size() >= 2 ? m_previous[m_previous.size() - 2] : m_previous.back();
    if (select(target)) {
        m_next.push_back(m_previous.back());
        m_previous.pop_back();
    }
    dropRepeatedTail(m_previous);
    if (!m_next.empty() && !m_nextEnabled)
        m_nextEnabled = true;
    if (m_previous.size() < 2)
        m_backEnabled = false;
}

void NavigationHistory::goNext(const SelectTarget &select)
{
    if (!m_nextEnabled || m_next.empty())
        return;
    TOrbMDBTable *target = m_next.back();
    if (select(target)) {
        m_previous.push_back(target);
        m_next.pop_back();
    }
    dropRepeatedTail(m_next);
    if (!m_previous.empty() && !m_backEnabled)
        m_backEnabled = true;
    if (m_next.empty())
        m_nextEnabled = false;
}

void NavigationHistory::purgeTables(const std::vector<TOrbMDBTable *> &tables)
{
    for (TOrbMDBTable *table : tables) {
        std::erase(m_previous, table);
        std::erase(m_next, table);
        dropRepeatedTail(m_previous);
        dropRepeatedTail(m_next);
        while (!m_previous.empty() && !m_next.empty() && m_next.back() == m_previous.back())
            m_next.pop_back();
    }
    if (m_previous.empty())
        m_backEnabled = false;
    if (m_next.empty())
        m_nextEnabled = false;
}

void NavigationHistory::enableBackForSingleEntry()
{
    if (m_previous.size() == 1 && !m_backEnabled)
        m_backEnabled = true;
}

} // namespace vellum
