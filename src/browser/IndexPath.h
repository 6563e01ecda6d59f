#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vellum {

/// A location in a menu tree: one position per level, from the top menu down. (2) is the
/// third file, (2, 0) its first table.
class IndexPath {
public:
    IndexPath() = default;
    IndexPath(std::initializer_list<std::size_t> indexes) : m_indexes(indexes) {}
    explicit IndexPath(std::vector<std::size_t> indexes) : m_indexes(std::move(indexes)) {}

    std::size_t length() const { return m_indexes.size(); }
    bool empty() const { return m_indexes.empty(); }
    std::size_t indexAtPosition(std::size_t position) const { return m_indexes[position]; }
    const std::vector<std::size_t> &indexes() const { return m_indexes; }

    /// "2.0": the first index as "%d", each further one as ".%d".
    std::string stringRepresentation() const;
    /// This path followed by another.
    IndexPath indexPathByAddingIndexPath(const IndexPath &other) const;
    /// One index put in front of this path.
    IndexPath indexPathByAddingIndexInFront(std::size_t index) const;
    /// The positions from `position` to the end (empty when past the end).
    IndexPath subIndexPathFromPosition(std::size_t position) const;
    /// The positions before `position` (the whole path when past the end).
    IndexPath subIndexPathToPosition(std::size_t position) const;
    /// `length` positions starting at `location`, clipped to the path.
    IndexPath subIndexPathWithRange(std::size_t location, std::size_t length) const;

    bool operator==(const IndexPath &other) const = default;

private:
    std::vector<std::size_t> m_indexes;
};

} // namespace vellum
