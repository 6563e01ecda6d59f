#pragma once

#include "export/ExportJob.h"

#include <QDialog>
#include <QPointer>

#include <atomic>
#include <functional>
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
    QCheckBox *structureBox() const { return m_structure; }
    QCheckBox *dataBox() const { return m_data; }
    QCheckBox *dropTableBox() const { return m_dropTable; }
    QCheckBox *foreignKeysBox() const { return m_foreignKeys; }
    QCheckBox *indexesBox() const { return m_indexes; }
    QCheckBox *headerBox() const { return m_header; }
    QComboBox *fieldDelimiterBox() const { return m_fieldDelimiter; }
    QComboBox *recordDelimiterBox() const { return m_recordDelimiter; }
    QLineEdit *decimalSymbolField() const { return m_decimalSymbol; }
    QComboBox *encodingBox() const { return m_encoding; }
    QComboBox *sqlFormatBox() const { return m_sqlFormat; }
    QLineEdit *schemaNameField() const { return m_schemaName; }
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
    QCheckBox *m_header = nullptr;
    QComboBox *m_fieldDelimiter = nullptr;
    QComboBox *m_recordDelimiter = nullptr;
    QLineEdit *m_decimalSymbol = nullptr;
    QComboBox *m_encoding = nullptr;
    QComboBox *m_sqlFormat = nullptr;
    QLineEdit *m_schemaName = nullptr;
    QCheckBox *m_structure = nullptr;
    QCheckBox *m_dropTable = nullptr;
    QCheckBox *m_foreignKeys = nullptr;
    QCheckBox *m_indexes = nullptr;
    QCheckBox *m_data = nullptr;

    QPointer<QDialog> m_progress;
    QLabel *m_progressLabel = nullptr;
    QProgressBar *m_progressBar = nullptr;
    QPushButton *m_stopButton = nullptr;
};

} // namespace vellum
