#include "model/TOrbComplexValue.h"

namespace vellum {

std::size_t TOrbComplexValue::itemCount() const
{
    switch (m_kind) {
    case ComplexKind::Attachment:
        return m_attachments.size();
    case ComplexKind::MultiValue:
        return m_values.size();
    case ComplexKind::VersionHistory:
        return m_versions.size();
    }
    return 0;
}

void TOrbComplexValue::addAttachment(std::string fileName, std::string fileType, std::vector<std::uint8_t> data)
{
    auto blob = std::make_unique<TOrbBlobData>(std::move(data), fileType.c_str());
    if (!m_attachments.empty())
        m_displayText += "; ";
    m_displayText += fileName;
    m_attachments.push_back({std::move(fileName), std::move(fileType), std::move(blob)});
}

void TOrbComplexValue::addValue(std::string text)
{
    if (!m_values.empty())
        m_displayText += "; ";
    m_displayText += text;
    m_values.push_back(std::move(text));
}

void TOrbComplexValue::addVersion(std::string value, std::string date)
{
    if (m_versions.empty())
        m_displayText = value; // the newest, added first
    m_versions.push_back({std::move(value), std::move(date)});
}

std::string TOrbComplexValue::detailText() const
{
    std::string out;
    switch (m_kind) {
    case ComplexKind::Attachment:
        for (const Attachment &attachment : m_attachments)
            out += attachment.fileName + " (" + attachment.data->cellDescription() + ")\n";
        break;
    case ComplexKind::MultiValue:
        for (const std::string &value : m_values)
            out += value + '\n';
        break;
    case ComplexKind::VersionHistory:
        for (const Version &version : m_versions)
            out += (out.empty() ? "[" : "\n[") + version.date + "] " + version.value + '\n';
        break;
    }
    if (!out.empty() && out.back() == '\n')
        out.pop_back();
    return out;
}

TOrbComplexValue &ComplexColumnValues::valuesFor(std::int64_t id)
{
    return m_entries.try_emplace(id, m_kind).first->second;
}

const TOrbComplexValue &ComplexColumnValues::find(std::int64_t id) const
{
    const auto it = m_entries.find(id);
    return it == m_entries.end() ? m_none : it->second;
}

} // namespace vellum
