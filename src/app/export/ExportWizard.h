#pragma once

#include "export/ExportJob.h"
#include "export/exportRegistry.h"

#include <QDialog>
#include <QPointer>

#include <atomic>
#include <functional>
#include <map>
#include <memory>

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTableView;

namespace vellum {

class ExportEntriesModel;
class TOrbMDBFile;
class TOrbMDBTable;

/// The export wizard: a window-modal dialog on the main window for one open file and one kind.
/// It shows the table list, the options of the kind and the target path; OK starts the export
/// job on its worker thread with a progress sheet (Stop), and its end shows one summary alert.
/// The wizard deletes itself after the alert, or right away on Cancel.
class ExportWizard : public QDialog, private ExportObserver {
    Q_OBJECT
public:
    /// Asks for a path: a folder (`chooseFolder`) or a file to save with `extension`; `start` is
    /// the current path, `proposedName` the proposed file name. An empty answer is a cancel.
    using PathChooser = std::function<QString(bool chooseFolder, const QString &start, const QString &proposedName,
                                              const QString &extension)>;

    /// `file` must be open. `table` preselects one table (null: the whole file).
    ExportWizard(TOrbMDBFile &file, const TOrbMDBTable *table, ExportFileType kind, QWidget *mainWindow);
    ~ExportWizard() override;

    ExportJob &job() { return *m_job; }
    /// Replaces the file dialogs (tests).
    void setPathChooser(PathChooser chooser) { m_pathChooser = std::move(chooser); }
    /// Skips the final alert box and only emits exportFinished (tests).
    void setShowsFinalAlert(bool shows) { m_showsFinalAlert = shows; }

    // The controls, by their role.
    QTableView *tableList() const { return m_tableList; }
    QPushButton *okButton() const { return m_okButton; }
    QLineEdit *pathField() const { return m_pathField; }
    QLabel *pathLabel() const { return m_pathLabel; }
    QCheckBox *singleFileBox() const { return m_singleFile; }
    QCheckBox *structureBox() const { return checkBox(ExportOptionId::Structure); }
    QCheckBox *dataBox() const { return checkBox(ExportOptionId::Data); }
    QCheckBox *dropTableBox() const { return checkBox(ExportOptionId::DropTable); }
    QCheckBox *foreignKeysBox() const { return checkBox(ExportOptionId::ForeignKeys); }
    QCheckBox *indexesBox() const { return checkBox(ExportOptionId::Indexes); }
    QCheckBox *headerBox() const { return checkBox(ExportOptionId::ColumnHeader); }
    QComboBox *fieldDelimiterBox() const { return menu(ExportOptionId::FieldDelimiter); }
    QComboBox *recordDelimiterBox() const { return menu(ExportOptionId::RecordDelimiter); }
    QLineEdit *decimalSymbolField() const { return textField(ExportOptionId::DecimalSymbol); }
    QComboBox *encodingBox() const { return menu(ExportOptionId::Encoding); }
    QComboBox *sqlFormatBox() const { return menu(ExportOptionId::SqlFormat); }
    QLineEdit *schemaNameField() const { return textField(ExportOptionId::SchemaName); }
    /// The control of an option (nullptr when the kind has none); by the control's type.
    QWidget *control(ExportOptionId id) const;
    QCheckBox *checkBox(ExportOptionId id) const;
    QComboBox *menu(ExportOptionId id) const;
    QLineEdit *textField(ExportOptionId id) const;
    /// The progress sheet's label and Stop button while an export runs (nullptr otherwise).
    QLabel *progressLabel() const { return m_progressLabel; }
    QPushButton *stopButton() const { return m_stopButton; }

    /// The button actions, as the dialog's buttons call them.
    void selectExportPath();
    void markAllTableEntriesAsSelected(bool selected);
    /// Saves the folder, closes the wizard and starts the export with its progress sheet.
    void ok();
    /// The OK rule: a path, a chosen table, and structure or data on.
    void enableOkButtonCheck();

signals:
    /// The export ended; the report is final (title and message of the alert).
    void exportFinished(const QString &title, const QString &message);

private:
    void buildInterface();
    /// Makes the control of one option in `parent` with the value `options` hold.
    QWidget *makeControl(const ExportOptionInfo &option, const ExportOptions &options, QWidget *parent);
    /// The option values the controls hold, over the job's options.
    ExportOptions optionsFromControls() const;
    /// Sets every control to the value `options` hold (where it differs).
    void showOptions(const ExportOptions &options);
    /// Enables each control by its option's rule.
    void updateEnabledControls();
    /// A menu's choice changed: stores it with what it implies and shows the result.
    void menuChoiceChanged(const ExportOptionInfo &option);
    void exportSingleFileToggled();
    void updateExportSingleFileLabels();
    void readOptions();
    void startExport();
    QString choosePath(bool chooseFolder, const QString &start);

    // ExportObserver, called on the worker thread.
    void updateProgressPanel(const ExportJob &job, std::size_t index) override;
    void exportThreadFinished(const ExportJob &job) override;

    void showProgress(std::size_t index);
    void finishExport();
    /// Runs `work` on the main thread and waits for it, unless the wizard goes away meanwhile
    /// (then the worker stops waiting and the call is dropped). Worker thread only.
    void runOnMainThreadAndWait(std::function<void()> work);

    std::unique_ptr<ExportJob> m_job;
    /// Set when the wizard is being destroyed: the worker no longer waits for the main thread.
    std::atomic<bool> m_detached{false};
    TOrbMDBFile *m_file;
    ExportFileType m_kind;
    QPointer<QWidget> m_mainWindow;
    PathChooser m_pathChooser;
    bool m_showsFinalAlert = true;
    QString m_heldFolder;

    ExportEntriesModel *m_entries = nullptr;
    QTableView *m_tableList = nullptr;
    QPushButton *m_okButton = nullptr;
    QLabel *m_pathLabel = nullptr;
    QLineEdit *m_pathField = nullptr;
    QCheckBox *m_singleFile = nullptr;
    /// The control of each option the kind has, made from the registry.
    std::map<ExportOptionId, QWidget *> m_controls;

    QPointer<QDialog> m_progress;
    QLabel *m_progressLabel = nullptr;
    QProgressBar *m_progressBar = nullptr;
    QPushButton *m_stopButton = nullptr;
};

} // namespace vellum
