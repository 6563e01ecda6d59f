#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vellum::cli {

/// Splits a command's arguments into positionals, switches (--json) and options with a value
/// (--table NAME or --table=NAME; options may repeat). Unknown options are an error.
class ArgParser {
public:
    ArgParser(std::set<std::string> switches, std::set<std::string> options);

    /// False with `error()` set when an argument is unknown or an option lacks its value.
    [[nodiscard]] bool parse(const std::vector<std::string> &args);
    const std::string &error() const { return m_error; }

    const std::vector<std::string> &positionals() const { return m_positionals; }
    bool has(const std::string &name) const { return m_seen.count(name) > 0; }
    /// The last value given for an option.
    std::optional<std::string> value(const std::string &name) const;
    /// Every value given for an option, in order.
    std::vector<std::string> values(const std::string &name) const;

private:
    std::set<std::string> m_switches;
    std::set<std::string> m_options;
    std::vector<std::string> m_positionals;
    std::set<std::string> m_seen;
    std::vector<std::pair<std::string, std::string>> m_ordered;
    std::string m_error;
};

} // namespace vellum::cli
