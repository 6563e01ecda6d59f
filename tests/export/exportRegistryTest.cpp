// The export registry's invariants: every kind is complete, every option names valid kinds and
// keeps its value type, the command-line forms cover exactly the kinds of their option without
// two forms of one flag competing for a kind, and the defaults come out as stored.

#include "export/exportRegistry.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>

namespace vellum {
namespace {

bool isKnownKind(ExportFileType kind)
{
    return exportKindInfo(kind) != nullptr;
}

TEST(ExportRegistry, EveryKindIsCompleteAndFoundByNumberAndName)
{
    std::set<std::uint32_t> numbers;
    std::set<std::string> names;
    for (const ExportKindInfo &info : exportKinds()) {
        const auto number = static_cast<std::uint32_t>(info.kind);
        SCOPED_TRACE(info.name);
        EXPECT_TRUE(numbers.insert(number).second) << "kind listed twice";
        EXPECT_TRUE(names.insert(info.name).second) << "name listed twice";
        EXPECT_NE(info.routine, nullptr);
        EXPECT_STRNE(info.extension, "");
        EXPECT_STRNE(info.title, "");
        EXPECT_STRNE(info.summary, "");
        EXPECT_EQ(exportKindInfo(info.kind), &info);
        EXPECT_EQ(exportFileTypeFromValue(number), info.kind);
        EXPECT_EQ(exportFileTypeFromName(info.extension), info.kind);
        EXPECT_EQ(fileExtensionByExportFileType(info.kind), std::string(info.extension));
    }
    // The kinds keep their numbers 0 … 8 without a gap.
    EXPECT_EQ(numbers, (std::set<std::uint32_t>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
    // The menus list every kind once.
    std::set<std::uint32_t> inMenus;
    for (const ExportFileType kind : exportMenuKinds())
        EXPECT_TRUE(inMenus.insert(static_cast<std::uint32_t>(kind)).second);
    EXPECT_EQ(inMenus, numbers);
    EXPECT_FALSE(exportFileTypeFromValue(9));
    EXPECT_EQ(exportKindInfo(static_cast<ExportFileType>(9)), nullptr);
    EXPECT_EQ(exportFileTypeFromName("json"), ExportFileType::JSON);
    EXPECT_EQ(exportFileTypeFromName("jsonl"), ExportFileType::JSONLines);
}

TEST(ExportRegistry, EveryOptionNamesValidKindsAndKeepsItsValueType)
{
    const ExportOptions plain;
    for (std::size_t i = 0; i < exportOptions().size(); ++i) {
        const ExportOptionInfo &option = exportOptions()[i];
        SCOPED_TRACE(static_cast<int>(option.id));
        // exportOptionInfo finds a row by its position.
        EXPECT_EQ(static_cast<std::size_t>(option.id), i);
        EXPECT_EQ(&exportOptionInfo(option.id), &option);
        ASSERT_NE(option.read, nullptr);
        ASSERT_NE(option.store, nullptr);
        EXPECT_FALSE(option.kinds.empty());
        for (const ExportKinds *kinds : {&option.kinds, &option.wizardKinds}) {
            EXPECT_EQ(std::set<ExportFileType>(kinds->begin(), kinds->end()).size(), kinds->size()) << "kind twice";
            for (const ExportFileType kind : *kinds)
                EXPECT_TRUE(isKnownKind(kind));
        }
        EXPECT_EQ(option.control == ExportControl::None, option.wizardKinds.empty());
        EXPECT_EQ(option.control == ExportControl::Menu, !option.choices.empty());
        if (option.control != ExportControl::None) {
            EXPECT_STRNE(option.label, "");
        }

        const std::size_t type = option.read(plain).index();
        for (const ExportOptionChoice &choice : option.choices) {
            EXPECT_EQ(ExportOptionValue(choice.value).index(), type);
            for (const ExportFileType kind : choice.onlyFor)
                EXPECT_TRUE(containsKind(option.kinds, kind)) << choice.word;
        }
        for (const ExportKindDefault &row : option.kindDefaults) {
            EXPECT_TRUE(isKnownKind(row.kind));
            EXPECT_EQ(row.value.index(), type);
        }
        // Storing what was read changes nothing, for every kind's default.
        for (const ExportKindInfo &kind : exportKinds()) {
            for (const bool wholeFile : {false, true}) {
                const ExportOptionValue value = exportOptionDefault(option, kind.kind, wholeFile);
                ASSERT_EQ(value.index(), type) << kind.name;
                ExportOptions options;
                option.store(options, value);
                EXPECT_EQ(option.read(options), value) << kind.name;
            }
        }
        // A choice's default is one of the choices the kind offers.
        for (const ExportFileType kind : option.wizardKinds) {
            if (option.choices.empty())
                continue;
            bool offered = false;
            for (const ExportOptionChoice &choice : exportOptionChoices(option, kind))
                offered = offered || ExportOptionValue(choice.value) == exportOptionDefault(option, kind, true);
            EXPECT_TRUE(offered) << exportKindInfo(kind)->name;
        }
    }
}

TEST(ExportRegistry, CommandLineFormsCoverTheirOptionsKindsWithoutCompeting)
{
    std::map<std::string, bool> takesValue;
    std::map<ExportOptionId, std::set<ExportFileType>> covered;
    std::map<std::string, std::set<ExportFileType>> flagKinds;
    for (const ExportCommandLineForm &form : exportCommandLineForms()) {
        SCOPED_TRACE(form.flag);
        const ExportOptionInfo &option = exportOptionInfo(form.option);
        ASSERT_EQ(std::string(form.flag).rfind("--", 0), 0u);
        EXPECT_STRNE(form.help, "");
        EXPECT_FALSE(form.kinds.empty());
        // A name is a switch everywhere or takes a value everywhere.
        const bool valued = form.valueName != nullptr;
        const auto [known, added] = takesValue.emplace(form.flag, valued);
        EXPECT_EQ(known->second, valued);
        // Switches set on/off options; values go to the others.
        EXPECT_EQ(std::holds_alternative<bool>(option.read(ExportOptions{})), !valued);
        for (const ExportFileType kind : form.kinds) {
            EXPECT_TRUE(containsKind(option.kinds, kind)) << exportKindInfo(kind)->name;
            covered[form.option].insert(kind);
            // Two forms of one flag for one kind: only the first would ever apply.
            EXPECT_TRUE(flagKinds[form.flag].insert(kind).second) << exportKindInfo(kind)->name;
        }
    }
    for (const ExportOptionInfo &option : exportOptions())
        EXPECT_EQ(covered[option.id], std::set<ExportFileType>(option.kinds.begin(), option.kinds.end()))
            << static_cast<int>(option.id);
}

TEST(ExportRegistry, DefaultsOfEachKindAreTheStoredOnes)
{
    for (const ExportKindInfo &kind : exportKinds()) {
        for (const bool wholeFile : {false, true}) {
            const ExportOptions defaults = ExportOptions::defaultsFor(kind.kind, wholeFile);
            for (const ExportOptionInfo &option : exportOptions())
                EXPECT_EQ(option.read(defaults), exportOptionDefault(option, kind.kind, wholeFile))
                    << kind.name << " option " << static_cast<int>(option.id) << " whole file " << wholeFile;
        }
    }
    EXPECT_EQ(ExportOptions::defaultsFor(ExportFileType::SQL, true).sqlFormat, ServerTypeMySQL);
    EXPECT_EQ(ExportOptions::defaultsFor(ExportFileType::CSV, true).fieldDelimiterTag, kFieldDelimiterComma);
    EXPECT_EQ(ExportOptions::defaultsFor(ExportFileType::XLSX, false).exportSingleFile, false);
}

TEST(ExportRegistry, ReadsCommandLineTexts)
{
    struct Case {
        ExportOptionId option;
        ExportFileType kind;
        const char *flag;
        const char *text;
        std::optional<ExportOptionValue> expected; // nullopt: refused with `error`
        const char *error;
    };
    const Case cases[] = {
        {ExportOptionId::FieldDelimiter, ExportFileType::TXT, "--delimiter", "tab", std::int64_t{kFieldDelimiterTab},
         ""},
        {ExportOptionId::FieldDelimiter, ExportFileType::CSV, "--delimiter", "tab", std::nullopt,
         "unknown delimiter 'tab' (use semicolon|comma)"},
        {ExportOptionId::FieldDelimiter, ExportFileType::TXT, "--delimiter", "pipe", std::nullopt,
         "unknown delimiter 'pipe' (use tab|semicolon|comma|space)"},
        {ExportOptionId::SqlFormat, ExportFileType::SQL, "--dialect", "oracle",
         std::int64_t{serverTypeValue(ServerTypeOracle)}, ""},
        {ExportOptionId::SqlFormat, ExportFileType::SQL, "--dialect", "sqlserver",
         std::int64_t{serverTypeValue(ServerTypeSQLServer)}, ""},
        {ExportOptionId::SqlFormat, ExportFileType::SQL, "--dialect", "MySQL", std::nullopt,
         "unknown dialect 'MySQL' (use mysql|postgresql|oracle|sqlite|sqlserver)"},
        {ExportOptionId::Encoding, ExportFileType::CSV, "--encoding", "UTF-8", std::int64_t{4}, ""},
        {ExportOptionId::Encoding, ExportFileType::CSV, "--encoding", "KLINGON", std::nullopt,
         "unknown encoding 'KLINGON' (see --list-encodings)"},
        {ExportOptionId::Password, ExportFileType::SQLite, "--password", "", std::nullopt,
         "--password must not be empty"},
        {ExportOptionId::Password, ExportFileType::SQLite, "--password", "gr\xc3\xbcn", std::nullopt,
         "--password must consist of ASCII characters"},
        {ExportOptionId::Password, ExportFileType::SQLite, "--password", "s3cret", std::string("s3cret"), ""},
        {ExportOptionId::DecimalSymbol, ExportFileType::SQL, "--decimal", "", std::string(), ""},
    };
    for (const Case &c : cases) {
        ExportOptionValue value;
        std::string error;
        const bool read = parseExportOptionText(exportOptionInfo(c.option), c.kind, c.flag, c.text, value, error);
        EXPECT_EQ(read, c.expected.has_value()) << c.flag << " " << c.text;
        if (c.expected) {
            EXPECT_EQ(value, *c.expected) << c.flag << " " << c.text;
        }
        EXPECT_EQ(error, c.error) << c.flag << " " << c.text;
    }
}

TEST(ExportRegistry, ChoosingAFieldDelimiterSetsTheDecimalSymbol)
{
    const ExportOptionInfo &delimiter = exportOptionInfo(ExportOptionId::FieldDelimiter);
    ExportOptions options;
    chooseExportOption(delimiter, options, std::int64_t{kFieldDelimiterSemicolon});
    EXPECT_EQ(options.fieldDelimiterTag, kFieldDelimiterSemicolon);
    EXPECT_EQ(options.decimalSymbol, ",");
    // Storing as it stands (defaults, stored settings) leaves the decimal symbol alone.
    ExportOptions stored;
    delimiter.store(stored, std::int64_t{kFieldDelimiterSemicolon});
    EXPECT_EQ(stored.decimalSymbol, ".");
}

} // namespace
} // namespace vellum
