#pragma once

// The one table of export kinds and their options. Each kind says its number, name, extension,
// wizard title, command-line summary and routine; each option says the kinds it applies to,
// the kinds whose wizard shows it, its wizard control, its choices, its defaults per kind and
// its command-line forms. `vellum-cli export` (options, help, checks) and the export wizard
// (visible controls, menus, defaults) are both generated from this table.

#include "export/ExportFileType.h"
#include "export/ExportJob.h"
#include "export/ExportOptions.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vellum {

/// Export kinds in a fixed order (the order in which lists and help name them).
using ExportKinds = std::vector<ExportFileType>;

/// True when `kinds` holds `kind`.
bool containsKind(const ExportKinds &kinds, ExportFileType kind);

/// One export kind.
struct ExportKindInfo {
    ExportFileType kind = ExportFileType::CSV;
    const char *name = "";      ///< the --format value ("csv")
    const char *extension = ""; ///< the file extension without a dot ("csv")
    const char *title = "";     ///< the wizard's title, an English localization key ("Export CSV")
    const char *summary = "";   ///< one line of the command line's help
    ExportJob::Routine routine = nullptr;
    /// With "single file" on, the target is one file chosen in a save panel (else a folder).
    bool singleFileTarget = false;
    /// The last check of a request after every option was set; nullptr when there is none.
    /// False with `error` set (an English text naming the command-line options) refuses it.
    bool (*validate)(const ExportOptions &options, std::string &error) = nullptr;
};

/// The options of the export, one per control of the wizard.
enum class ExportOptionId {
    ColumnHeader,
    FieldDelimiter,
    RecordDelimiter,
    DecimalSymbol,
    Encoding,
    SqlFormat,
    SchemaName,
    Structure,
    DropTable,
    ForeignKeys,
    Indexes,
    Data,
    Password,
    SingleFile,
    Lossless,
    NullMarker,
    BinaryEncoding,
    ByteOrderMark,
    QuoteAllFields,
};

/// The value of one option: a switch, a number (a choice's tag, an encoding code, a server
/// type) or a text.
using ExportOptionValue = std::variant<bool, std::int64_t, std::string>;

/// How the wizard shows an option.
enum class ExportControl {
    None,         ///< not in the wizard
    CheckBox,     ///< a check box titled with the label
    Menu,         ///< a menu of the option's choices
    EncodingMenu, ///< a menu of every available text encoding
    TextField,    ///< a line of text
};

/// One value of a choice option.
struct ExportOptionChoice {
    const char *word;  ///< the command line's word ("semicolon")
    const char *label; ///< the wizard menu's item ("Semicolon (;)")
    std::int64_t value;
    /// The kinds that offer this choice; empty = every kind of the option.
    ExportKinds onlyFor;
};

/// A kind whose default differs from the one an `ExportOptions{}` holds.
struct ExportKindDefault {
    ExportFileType kind;
    ExportOptionValue value;
    /// The default is "on when the whole file is exported" rather than `value`.
    bool followsWholeFile = false;
};

/// One way to give an option on the command line. An option may have several (a switch on and
/// a switch off, or one per group of kinds with its own help line).
struct ExportCommandLineForm {
    ExportOptionId option = ExportOptionId::ColumnHeader;
    const char *flag = "";           ///< "--dialect"
    const char *valueName = nullptr; ///< "NAME" in the help; nullptr for a switch
    const char *help = "";           ///< one line of the help
    ExportKinds kinds = {};          ///< the kinds that take it in this form
    bool switchValue = false;        ///< what a switch sets
};

/// One option.
struct ExportOptionInfo {
    ExportOptionId id = ExportOptionId::ColumnHeader;
    /// The kinds that take the option: their writer reads it and the command line offers it.
    ExportKinds kinds = {};
    /// The kinds whose wizard shows its control: the encoding menu is shown for every kind but
    /// SQLite, the decimal symbol only for the text kinds.
    ExportKinds wizardKinds = {};
    ExportControl control = ExportControl::None;
    /// The check box's title or the form row's label, an English localization key.
    const char *label = "";
    /// The menu items are localized (delimiters) or product names shown as they are (dialects).
    bool localizedChoices = false;
    std::vector<ExportOptionChoice> choices = {};
    std::vector<ExportKindDefault> kindDefaults = {};
    /// When the wizard enables the control, given the values its controls hold; nullptr = always.
    bool (*enabledWhen)(ExportFileType kind, const ExportOptions &options) = nullptr;
    /// The option's value in `options`.
    ExportOptionValue (*read)(const ExportOptions &options) = nullptr;
    /// Stores a value as it stands.
    void (*store)(ExportOptions &options, const ExportOptionValue &value) = nullptr;
    /// Stores a value the user chose, with what choosing it implies (a field delimiter also
    /// sets the decimal symbol); nullptr = `store`.
    void (*choose)(ExportOptions &options, const ExportOptionValue &value) = nullptr;
    /// Reads a command-line text that is not one of the choices (an encoding name, a
    /// password); false with `error` set when the text is refused. nullptr = any text.
    bool (*parseText)(const std::string &text, ExportOptionValue &value, std::string &error) = nullptr;
};

/// Every kind, in the order the command line lists them.
const std::vector<ExportKindInfo> &exportKinds();
/// Every kind in the order the window's Export menus list them.
const ExportKinds &exportMenuKinds();
/// The row of a kind; nullptr for a number that is no kind.
const ExportKindInfo *exportKindInfo(ExportFileType kind);

/// Every option, in the order the wizard shows them.
const std::vector<ExportOptionInfo> &exportOptions();
/// The row of an option.
const ExportOptionInfo &exportOptionInfo(ExportOptionId id);

/// Every command-line form, in the order the help lists them and the command applies them.
const std::vector<ExportCommandLineForm> &exportCommandLineForms();

/// The choices of an option that `kind` offers, in order.
std::vector<ExportOptionChoice> exportOptionChoices(const ExportOptionInfo &option, ExportFileType kind);

/// The default of an option for a kind; `wholeFile` is true when no single table was chosen.
ExportOptionValue exportOptionDefault(const ExportOptionInfo &option, ExportFileType kind, bool wholeFile);

/// Stores a value the user chose (the option's `choose`, else its `store`).
void chooseExportOption(const ExportOptionInfo &option, ExportOptions &options, const ExportOptionValue &value);

/// Reads a command-line text for an option given as `flag` to `kind`: one of the choices the
/// kind offers, a text the option's `parseText` accepts, or any text. False with `error` set
/// ("unknown dialect 'x' (use mysql|…)") otherwise.
[[nodiscard]] bool parseExportOptionText(const ExportOptionInfo &option, ExportFileType kind, const std::string &flag,
                                         const std::string &text, ExportOptionValue &value, std::string &error);

} // namespace vellum
