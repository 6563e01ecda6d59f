// Compares the saved queries of every file in ../shared/corpus with what Jackcess lists
// (../shared/corpus-truth): each query is found by name with the truth's type, and its SQL text
// equals the truth's after whitespace is normalised. Jackcess rebuilds the text from the same
// stored rows as Vellum, so the texts agree but where Vellum writes what Access shows and
// Jackcess does not:
//  - TOP n with DISTINCT or DISTINCTROW: Access keeps both ("SELECT DISTINCTROW TOP 10"),
//    Jackcess writes only the first word. Those texts are compared without the TOP clause, and
//    Vellum's must hold it.
//  - PARAMETERS names: Access brackets a name that needs it ("[Beginning Date] DateTime") and
//    each part of a form reference ("[Forms]![Orders]![OrderID]"); Jackcess writes the stored
//    name bare. Those PARAMETERS clauses are compared without brackets.

#include "support/Fixtures.h"
#include "truthFiles.h"

#include "model/TOrbMDBFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>

namespace vellum {
namespace {

/// Runs of whitespace as one space, no whitespace at either end, no trailing NUL.
std::string normalised(const std::string &text)
{
    std::string out;
    bool space = false;
    for (const char c : text) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
            space = true;
            continue;
        }
        if (space && !out.empty())
            out += ' ';
        space = false;
        out += c;
    }
    while (!out.empty() && out.back() == '\0')
        out.pop_back();
    while (!out.empty() && out.back() == ' ')
        out.pop_back();
    return out;
}

/// The text with the brackets of its PARAMETERS clause (up to its ";") removed.
std::string parametersUnbracketed(std::string text)
{
    if (text.rfind("PARAMETERS ", 0) != 0)
        return text;
    const std::size_t end = text.find(';');
    std::string clause = text.substr(0, end);
    clause.erase(std::remove_if(clause.begin(), clause.end(), [](char c) { return c == '[' || c == ']'; }),
                 clause.end());
    return clause + (end == std::string::npos ? std::string() : text.substr(end));
}

/// The text with the TOP clause that follows DISTINCT or DISTINCTROW removed.
std::string withoutTopAfterDistinct(const std::string &text)
{
    static const std::regex top("(SELECT DISTINCT(ROW)? )TOP [^ ]+( PERCENT)? ");
    return std::regex_replace(text, top, "$1", std::regex_constants::format_first_only);
}

TEST(CorpusQueries, EverySavedQueryIsListedWithItsTypeAndSql)
{
    const std::string dir = test::sharedPath("corpus-truth");
    if (dir.empty())
        GTEST_SKIP() << "../shared/corpus-truth is absent";
    const std::vector<std::filesystem::path> files = test::truthFilePaths();

    std::size_t total = 0;
    std::size_t listed = 0;
    std::size_t typed = 0;
    std::size_t equal = 0;
    std::size_t topKept = 0;
    std::size_t parametersBracketed = 0;
    for (const auto &truthPath : files) {
        std::ifstream in(truthPath);
        const nlohmann::json truth = nlohmann::json::parse(in, nullptr, false);
        ASSERT_FALSE(truth.is_discarded()) << truthPath;
        if (!truth["password"].is_null())
            continue; // encrypted: not read by this path
        const auto &queries = truth["queries"];
        if (!queries.is_array() || queries.empty())
            continue;
        const std::string fileName = truth["file"];
        const std::string path = test::sharedPath("corpus/" + fileName);
        if (path.empty())
            continue;
        LoadOptions options;
        if (truth["codePage"].is_string() && truth["codePage"] != "windows-1252")
            options.jet3CodePage = truth["codePage"];
        auto file = test::openInProcess(path, options);
        ASSERT_TRUE(file) << fileName;
        EXPECT_EQ(file->queries().size(), queries.size()) << fileName;
        for (const auto &expected : queries) {
            ++total;
            const std::string name = expected["name"];
            const auto found = std::find_if(file->queries().begin(), file->queries().end(),
                                            [&](const auto &query) { return query->name() == name; });
            if (found == file->queries().end()) {
                ADD_FAILURE() << fileName << ": query " << name << " is missing";
                continue;
            }
            ++listed;
            const TOrbMDBQuery &query = **found;
            if (TOrbMDBQuery::typeName(query.type()) == expected["type"].get<std::string>())
                ++typed;
            else
                ADD_FAILURE() << fileName << " " << name << ": type " << TOrbMDBQuery::typeName(query.type())
                              << ", truth " << expected["type"];
            const std::string ours = normalised(query.sql());
            const std::string theirs = normalised(expected["sql"].get<std::string>());
            if (ours == theirs) {
                ++equal;
                continue;
            }
            // The known differences, each compared on the parts both texts share.
            std::string ourParts = ours;
            std::string theirParts = theirs;
            const std::string withoutTop = withoutTopAfterDistinct(ourParts);
            const bool top = withoutTop != ourParts && withoutTopAfterDistinct(theirParts) == theirParts;
            if (top)
                ourParts = withoutTop;
            const bool bracketed = parametersUnbracketed(ourParts) != ourParts;
            if (bracketed) {
                ourParts = parametersUnbracketed(ourParts);
                theirParts = parametersUnbracketed(theirParts);
            }
            if ((top || bracketed) && ourParts == theirParts) {
                topKept += top ? 1 : 0;
                parametersBracketed += bracketed ? 1 : 0;
                continue;
            }
            ADD_FAILURE() << fileName << " " << name << ":\n  ours:  " << ours << "\n  truth: " << theirs;
        }
    }
    std::printf("corpus queries: %zu listed of %zu, %zu with the truth's type, %zu SQL texts equal, %zu equal but "
                "for TOP kept after DISTINCT(ROW), %zu but for bracketed parameter names\n",
                listed, total, typed, equal, topKept, parametersBracketed);
    EXPECT_EQ(listed, total);
    EXPECT_EQ(typed, total);
    EXPECT_EQ(equal + topKept + parametersBracketed, total);
}

} // namespace
} // namespace vellum
