#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

namespace vellum {

/// One value of an information row: a text or an integer number.
using InfoValue = std::variant<std::string, long long>;

/// Text of an information value as the pane shows it.
std::string infoValueText(const InfoValue &value);

/// Label to value, as `getObjectValues` answers it.
using ObjectValues = std::map<std::string, InfoValue>;

/// Common base of all model objects: a name, and the information rows shown in the
/// information pane (an ordered label list and a dictionary from label to value).
class TOrbMDBObject {
public:
    TOrbMDBObject() = default;
    virtual ~TOrbMDBObject() = default;
    TOrbMDBObject(const TOrbMDBObject &) = delete;
    TOrbMDBObject &operator=(const TOrbMDBObject &) = delete;

    const std::string &name() const { return m_name; }
    void setName(std::string name) { m_name = std::move(name); }

    /// Orders by name with finderCompare: -1, 0 or 1.
    virtual int compareByName(const TOrbMDBObject &other) const;

    /// The localised labels of the information rows, in display order.
    std::vector<std::string> getObjectLabels() const;
    /// Label to value; empty when labels and values differ in number.
    ObjectValues getObjectValues() const;

protected:
    /// The English labels and their values, in display order (parallel lists).
    virtual void informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const = 0;
    /// Pairs two parallel lists into a dictionary; empty when their lengths differ.
    static ObjectValues makeObjectValues(const std::vector<std::string> &labels, const std::vector<InfoValue> &values);

    std::string m_name;
};

} // namespace vellum
