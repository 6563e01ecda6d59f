#include "model/TOrbMDBObject.h"

#include "util/finderCompare.h"
#include "util/localized.h"

namespace vellum {

std::string infoValueText(const InfoValue &value)
{
    if (const auto *text = std::get_if<std::string>(&value))
        return *text;
    return std::to_string(std::get<long long>(value));
}

int TOrbMDBObject::compareByName(const TOrbMDBObject &other) const
{
    return finderCompare(m_name, other.m_name);
}

std::vector<std::string> TOrbMDBObject::getObjectLabels() const
{
    std::vector<std::string> labels;
    std::vector<InfoValue> values;
    informationRows(labels, values);
    std::vector<std::string> out;
    out.reserve(labels.size());
    for (const auto &label : labels)
        out.push_back(localized(label.c_str()));
    return out;
}

ObjectValues TOrbMDBObject::getObjectValues() const
{
    std::vector<std::string> labels;
    std::vector<InfoValue> values;
    informationRows(labels, values);
    for (auto &label : labels)
        label = localized(label.c_str());
    return makeObjectValues(labels, values);
}

ObjectValues TOrbMDBObject::makeObjectValues(const std::vector<std::string> &labels,
                                             const std::vector<InfoValue> &values)
{
    ObjectValues out;
    if (labels.size() != values.size())
        return out;
    for (size_t i = 0; i < labels.size(); ++i)
        out.emplace(labels[i], values[i]);
    return out;
}

} // namespace vellum
