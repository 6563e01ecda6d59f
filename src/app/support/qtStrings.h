#pragma once

// Conversions at the boundary between the core's UTF-8 std::string and Qt's QString.

#include <QString>

#include <string>
#include <string_view>

namespace vellum {

inline QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string toStdString(const QString &text)
{
    return text.toStdString();
}

/// The localized() text of an English key as a QString.
QString localizedQ(const char *english);

} // namespace vellum
