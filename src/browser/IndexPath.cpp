#include "browser/IndexPath.h"

#include <algorithm>

namespace vellum {

std::string IndexPath::stringRepresentation() const
{
    std::string out;
    for (std::size_t i = 0; i < m_indexes.size(); ++i) {
        if (i > 0)
            out.push_back('.');
        out += std::to_string(m_indexes[i]);
    }
    return out;
}

IndexPath IndexPath::indexPathByAddingIndexPath(const IndexPath &other) const
{
    std::vector<std::size_t> out = m_indexes;
    out.insert(out.end(), other.m_indexes.begin(), other.m_indexes.end());
    return IndexPath(std::move(out));
}

IndexPath IndexPath::indexPathByAddingIndexInFront(std::size_t index) const
{
    std::vector<std::size_t> out;
    out.reserve(m_indexes.size() + 1);
    out.push_back(index);
    out.insert(out.end(), m_indexes.begin(), m_indexes.end());
    return IndexPath(std::move(out));
}

IndexPath IndexPath::subIndexPathFromPosition(std::size_t position) const
{
    return subIndexPathWithRange(position, m_indexes.size());
}

IndexPath IndexPath::subIndexPathToPosition(std::size_t position) const
{
    return subIndexPathWithRange(0, position);
}

IndexPath IndexPath::subIndexPathWithRange(std::size_t location, std::size_t length) const
{
    if (location >= m_indexes.size())
        return {};
    const std::size_t end = location + std::min(length, m_indexes.size() - location);
    return IndexPath(std::vector<std::size_t>(m_indexes.begin() + static_cast<std::ptrdiff_t>(location),
                                              m_indexes.begin() + static_cast<std::ptrdiff_t>(end)));
}

} // namespace vellum
