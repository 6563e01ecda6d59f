#include "cli/ArgParser.h"

namespace vellum::cli {

ArgParser::ArgParser(std::set<std::string> switches, std::set<std::string> options)
    : m_switches(std::move(switches)), m_options(std::move(options))
{
}

bool ArgParser::parse(const std::vector<std::string> &args)
{
    bool onlyPositionals = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string &arg = args[i];
        if (onlyPositionals || arg.size() < 2 || arg[0] != '-') {
            m_positionals.push_back(arg);
            continue;
        }
        if (arg == "--") {
            onlyPositionals = true;
            continue;
        }
        std::string name = arg;
        std::optional<std::string> inlineValue;
        if (const size_t eq = arg.find('='); eq != std::string::npos && arg.rfind("--", 0) == 0) {
            name = arg.substr(0, eq);
            inlineValue = arg.substr(eq + 1);
        }
        if (m_switches.count(name) && !inlineValue) {
            m_seen.insert(name);
            continue;
        }
        if (m_options.count(name)) {
            std::string value;
            if (inlineValue) {
                value = *inlineValue;
            } else if (i + 1 < args.size()) {
                value = args[++i];
            } else {
                m_error = "option " + name + " needs a value";
                return false;
            }
            m_seen.insert(name);
            m_ordered.emplace_back(name, value);
            continue;
        }
        m_error = "unknown option '" + arg + "'";
        return false;
    }
    return true;
}

std::optional<std::string> ArgParser::value(const std::string &name) const
{
    std::optional<std::string> last;
    for (const auto &[key, value] : m_ordered)
        if (key == name)
            last = value;
    return last;
}

std::vector<std::string> ArgParser::values(const std::string &name) const
{
    std::vector<std::string> out;
    for (const auto &[key, value] : m_ordered)
        if (key == name)
            out.push_back(value);
    return out;
}

} // namespace vellum::cli
