#include "app/export/ExportWizard.h"

#include "app/models/ExportEntriesModel.h"
#include "app/support/SettingsStore.h"
#include "app/support/qtStrings.h"
#include "export/ExportEntry.h"
#include "export/ExportReport.h"
#include "export/exportPaths.h"
#include "model/TOrbMDBFile.h"
#include "util/format.h"
#include "util/localized.h"
#include "util/stringEncodings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSemaphore>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace vellum {

namespace {

bool isKind(ExportFileType kind, std::initializer_list<ExportFileType> kinds)
{
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

/// The kinds whose target can be one file for all tables (save panel instead of a folder).
bool hasSingleFileTarget(ExportFileType kind)
{
    return isKind(kind, {ExportFileType::XLS, ExportFileType::XLSX, ExportFileType::SQL, ExportFileType::SQLite});
}

QString titleOfKind(ExportFileType kind)
{
    switch (kind) {
    case ExportFileType::CSV:
        return localizedQ("Export CSV");
    case ExportFileType::TXT:
        return localizedQ("Export TXT");
    case ExportFileType::XML:
        return localizedQ("Export XML");
    case ExportFileType::XLS:
        return localizedQ("Export XLS");
    case ExportFileType::XLSX:
        return localizedQ("Export XLSX");
    case ExportFileType::SQL:
        return localizedQ("Export SQL");
    case ExportFileType::SQLite:
        return localizedQ("Export SQLite");
    }
    return {};
}

void selectTag(QComboBox *box, int tag)
{
    const int index = box->findData(tag);
    if (index >= 0)
        box->setCurrentIndex(index);
}

} // namespace

ExportWizard::ExportWizard(TOrbMDBFile &file, const TOrbMDBTable *table, ExportFileType kind, QWidget *mainWindow)
    : QDialog(mainWindow), m_job(std::make_unique<ExportJob>(file, table, kind)), m_file(&file), m_kind(kind),
      m_mainWindow(mainWindow)
{
    setWindowTitle(titleOfKind(kind));
    setWindowModality(Qt::WindowModal);
    buildInterface();
}

ExportWizard::~ExportWizard()
{
    // A worker that still runs stops waiting for this thread, sees the stop flag and ends.
    m_detached.store(true);
    m_job->stop();
    m_job.reset();
}

void ExportWizard::runOnMainThreadAndWait(std::function<void()> work)
{
    auto done = std::make_shared<QSemaphore>(0);
    QMetaObject::invokeMethod(
        this,
        [work = std::move(work), done] {
            work();
            done->release();
        },
        Qt::QueuedConnection);
    while (!done->tryAcquire(1, 20))
        if (m_detached.load())
            return;
}

void ExportWizard::buildInterface()
{
    const ExportOptions &options = m_job->options();
    auto *layout = new QVBoxLayout(this);

    auto *intro = new QLabel(toQString(formatObjects(localized("Tables of %@"), {m_file->name() + "." + m_file->fileExtension()})), this);
    layout->addWidget(intro);

    m_entries = new ExportEntriesModel(*m_job, this);
    m_tableList = new QTableView(this);
    m_tableList->setModel(m_entries);
    m_tableList->verticalHeader()->hide();
    m_tableList->verticalHeader()->setDefaultSectionSize(m_tableList->fontMetrics().height() + 8);
    m_tableList->horizontalHeader()->setSectionsMovable(false);
    m_tableList->horizontalHeader()->setSectionResizeMode(ExportEntriesModel::SelectedColumn, QHeaderView::Fixed);
    m_tableList->horizontalHeader()->setSectionResizeMode(ExportEntriesModel::TableNameColumn, QHeaderView::Stretch);
    m_tableList->horizontalHeader()->setSectionResizeMode(ExportEntriesModel::FileNameColumn, QHeaderView::Stretch);
    m_tableList->setColumnWidth(ExportEntriesModel::SelectedColumn, 28);
    m_tableList->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_tableList->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                                 QAbstractItemView::SelectedClicked);
    m_tableList->setMinimumHeight(160);
    layout->addWidget(m_tableList, 1);
    connect(m_entries, &ExportEntriesModel::selectedCountChanged, this, [this](int count) {
        // A check box alone decides OK by the count (the path and options are not looked at).
        m_okButton->setEnabled(count != 0);
    });

    auto *selectRow = new QHBoxLayout;
    auto *selectAll = new QPushButton(localizedQ("Select All"), this);
    auto *deselectAll = new QPushButton(localizedQ("Deselect All"), this);
    connect(selectAll, &QPushButton::clicked, this, [this] { markAllTableEntriesAsSelected(true); });
    connect(deselectAll, &QPushButton::clicked, this, [this] { markAllTableEntriesAsSelected(false); });
    selectRow->addWidget(selectAll);
    selectRow->addWidget(deselectAll);
    selectRow->addStretch(1);
    layout->addLayout(selectRow);

    auto *group = new QGroupBox(localizedQ("Options"), this);
    auto *form = new QFormLayout(group);
    layout->addWidget(group);

    if (isKind(m_kind, {ExportFileType::CSV, ExportFileType::TXT, ExportFileType::XLS, ExportFileType::XLSX})) {
        m_header = new QCheckBox(localizedQ("Include column header"), group);
        m_header->setChecked(options.includeColumnHeader);
        form->addRow(m_header);
    }
    if (isKind(m_kind, {ExportFileType::CSV, ExportFileType::TXT})) {
        m_fieldDelimiter = new QComboBox(group);
        if (m_kind == ExportFileType::TXT) {
            m_fieldDelimiter->addItem(localizedQ("Tab"), kFieldDelimiterTab);
            m_fieldDelimiter->addItem(localizedQ("Semicolon (;)"), kFieldDelimiterSemicolon);
            m_fieldDelimiter->addItem(localizedQ("Comma (,)"), kFieldDelimiterComma);
            m_fieldDelimiter->addItem(localizedQ("Space"), kFieldDelimiterSpace);
        } else {
            m_fieldDelimiter->addItem(localizedQ("Semicolon (;)"), kFieldDelimiterSemicolon);
            m_fieldDelimiter->addItem(localizedQ("Comma (,)"), kFieldDelimiterComma);
        }
        selectTag(m_fieldDelimiter, options.fieldDelimiterTag);
        form->addRow(localizedQ("Field delimiter:"), m_fieldDelimiter);
        m_recordDelimiter = new QComboBox(group);
        m_recordDelimiter->addItem(localizedQ("LF (Linux, macOS)"), kRecordDelimiterLF);
        m_recordDelimiter->addItem(localizedQ("CR (classic Mac OS)"), kRecordDelimiterCR);
        m_recordDelimiter->addItem(localizedQ("CR LF (Windows)"), kRecordDelimiterCRLF);
        selectTag(m_recordDelimiter, options.recordDelimiterTag);
        form->addRow(localizedQ("Record delimiter:"), m_recordDelimiter);
    }
    if (isKind(m_kind, {ExportFileType::CSV, ExportFileType::TXT, ExportFileType::XML})) {
        m_decimalSymbol = new QLineEdit(toQString(options.decimalSymbol), group);
        m_decimalSymbol->setMaximumWidth(60);
        form->addRow(localizedQ("Decimal symbol:"), m_decimalSymbol);
    }
    if (m_fieldDelimiter) {
        connect(m_fieldDelimiter, &QComboBox::currentIndexChanged, this, [this] {
            // "," goes with "." as the decimal symbol and ";" with ",".
            ExportOptions changed = m_job->options();
            changed.decimalSymbol = m_decimalSymbol->text().toStdString();
            changed.changeFieldDelimiter(m_fieldDelimiter->currentData().toInt());
            m_decimalSymbol->setText(toQString(changed.decimalSymbol));
        });
    }
    if (m_kind != ExportFileType::SQLite) {
        m_encoding = new QComboBox(group);
        std::vector<EncodingEntry> encodings;
        for (const StringEncoding &encoding : availableStringEncodings())
            encodings.push_back(EncodingEntry::encodingEntryWithEncoding(encoding.code));
        std::sort(encodings.begin(), encodings.end(), SortEncoding);
        for (const EncodingEntry &entry : encodings)
            m_encoding->addItem(toQString(entry.encodingName), QVariant::fromValue<qulonglong>(entry.encoding));
        const int utf8 = m_encoding->findData(QVariant::fromValue<qulonglong>(kStringEncodingUTF8));
        if (utf8 >= 0)
            m_encoding->setCurrentIndex(utf8);
        form->addRow(localizedQ("Encoding:"), m_encoding);
    }
    if (m_kind == ExportFileType::SQL) {
        m_sqlFormat = new QComboBox(group);
        m_sqlFormat->addItem(QStringLiteral("MySQL"), 1);
        m_sqlFormat->addItem(QStringLiteral("PostgreSQL"), 2);
        m_sqlFormat->addItem(QStringLiteral("Oracle"), 3);
        m_sqlFormat->addItem(QStringLiteral("SQLite"), 4);
        m_sqlFormat->addItem(QStringLiteral("SQL Server"), 5);
        selectTag(m_sqlFormat, options.sqlFormat);
        form->addRow(localizedQ("SQL format:"), m_sqlFormat);
        m_schemaName = new QLineEdit(toQString(options.schemaName), group);
        form->addRow(localizedQ("Schema name:"), m_schemaName);
        const auto changeSQLFormat = [this] {
            m_schemaName->setEnabled(schemaNameEnabledForSqlFormat(m_sqlFormat->currentData().toInt()));
        };
        connect(m_sqlFormat, &QComboBox::currentIndexChanged, this, changeSQLFormat);
        changeSQLFormat();
    }
    const bool sql = m_kind == ExportFileType::SQL;
    const bool sqlite = m_kind == ExportFileType::SQLite;
    // Structure and data: shown for SQL (all five) and SQLite (keys, indexes, data); the other
    // kinds keep both on so that the OK rule can be met.
    m_structure = new QCheckBox(localizedQ("Export structure"), group);
    m_dropTable = new QCheckBox(localizedQ("Include DROP TABLE"), group);
    m_foreignKeys = new QCheckBox(localizedQ("Include foreign keys"), group);
    m_indexes = new QCheckBox(localizedQ("Include indexes"), group);
    m_data = new QCheckBox(localizedQ("Export data"), group);
    m_structure->setChecked(options.exportStructure);
    m_dropTable->setChecked(options.includeDropTable);
    m_foreignKeys->setChecked(options.includeForeignKeys);
    m_indexes->setChecked(options.includeIndexes);
    m_data->setChecked(options.exportData);
    for (QCheckBox *box : {m_structure, m_dropTable, m_foreignKeys, m_indexes, m_data})
        form->addRow(box);
    m_structure->setVisible(sql);
    m_dropTable->setVisible(sql);
    m_foreignKeys->setVisible(sql || sqlite);
    m_indexes->setVisible(sql || sqlite);
    m_data->setVisible(sql || sqlite);
    const auto exportTableStructure = [this] {
        const bool on = m_structure->isChecked();
        m_dropTable->setEnabled(on);
        m_foreignKeys->setEnabled(on || m_kind == ExportFileType::SQLite);
        m_indexes->setEnabled(on || m_kind == ExportFileType::SQLite);
        enableOkButtonCheck();
    };
    connect(m_structure, &QCheckBox::toggled, this, exportTableStructure);
    connect(m_data, &QCheckBox::toggled, this, &ExportWizard::enableOkButtonCheck);
    exportTableStructure();
    if (form->rowCount() == 0 || (!m_header && !m_fieldDelimiter && !m_decimalSymbol && !m_encoding && !sql && !sqlite))
        group->hide();

    auto *pathRow = new QHBoxLayout;
    m_pathLabel = new QLabel(this);
    m_pathField = new QLineEdit(this);
    m_pathField->setMinimumWidth(320);
    auto *choose = new QPushButton(localizedQ("Choose…"), this);
    pathRow->addWidget(m_pathLabel);
    pathRow->addWidget(m_pathField, 1);
    pathRow->addWidget(choose);
    layout->addLayout(pathRow);
    connect(choose, &QPushButton::clicked, this, &ExportWizard::selectExportPath);
    connect(m_pathField, &QLineEdit::textEdited, this, &ExportWizard::enableOkButtonCheck);

    m_singleFile = new QCheckBox(localizedQ("Export single file"), this);
    m_singleFile->setChecked(options.exportSingleFile);
    m_singleFile->setVisible(isKind(m_kind, {ExportFileType::XLS, ExportFileType::XLSX, ExportFileType::SQL}));
    layout->addWidget(m_singleFile);
    connect(m_singleFile, &QCheckBox::clicked, this, &ExportWizard::exportSingleFileToggled);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_okButton = buttons->button(QDialogButtonBox::Ok);
    connect(m_okButton, &QPushButton::clicked, this, &ExportWizard::ok);
    connect(buttons, &QDialogButtonBox::rejected, this, [this] {
        reject();
        deleteLater();
    });
    layout->addWidget(buttons);

    // The last export folder comes back when it still exists.
    const QString stored = SettingsStore::exportFilePath();
    if (!stored.isEmpty() && QFileInfo(stored).isDir()) {
        m_heldFolder = stored;
        m_pathField->setText(stored);
    }
    updateExportSingleFileLabels();
    enableOkButtonCheck();
    resize(560, 560);
}

void ExportWizard::readOptions()
{
    ExportOptions options = m_job->options();
    options.exportSingleFile = m_singleFile->isChecked();
    if (m_header)
        options.includeColumnHeader = m_header->isChecked();
    if (m_fieldDelimiter)
        options.fieldDelimiterTag = m_fieldDelimiter->currentData().toInt();
    if (m_recordDelimiter)
        options.recordDelimiterTag = m_recordDelimiter->currentData().toInt();
    if (m_decimalSymbol)
        options.decimalSymbol = m_decimalSymbol->text().toStdString();
    if (m_encoding)
        options.encoding = m_encoding->currentData().toULongLong();
    if (m_sqlFormat)
        options.sqlFormat = m_sqlFormat->currentData().toInt();
    if (m_schemaName)
        options.schemaName = m_schemaName->text().toStdString();
    options.exportStructure = m_structure->isChecked();
    options.includeDropTable = m_dropTable->isChecked();
    options.includeForeignKeys = m_foreignKeys->isChecked();
    options.includeIndexes = m_indexes->isChecked();
    options.exportData = m_data->isChecked();
    m_job->setOptions(options);
    m_job->setExportPath(m_pathField->text().toStdString());
}

void ExportWizard::enableOkButtonCheck()
{
    if (!m_okButton)
        return; // still being built
    readOptions();
    m_okButton->setEnabled(vellum::enableOkButtonCheck(m_job->exportPath(), m_job->selectedTableCount(), m_job->options()));
}

void ExportWizard::markAllTableEntriesAsSelected(bool selected)
{
    m_job->markAllTableEntriesAsSelected(selected);
    m_entries->reload();
    enableOkButtonCheck();
}

QString ExportWizard::choosePath(bool chooseFolder, const QString &start)
{
    const QString extension = toQString(fileExtensionByExportFileType(m_kind).value_or(""));
    const QString proposed = toQString(m_file->name());
    if (m_pathChooser)
        return m_pathChooser(chooseFolder, start, proposed, extension);
    if (chooseFolder)
        return QFileDialog::getExistingDirectory(this, localizedQ("Choose a folder"), start);
    const QString folder = start.isEmpty() ? QDir::homePath() : QFileInfo(start).absolutePath();
    return QFileDialog::getSaveFileName(this, localizedQ("Export to"), folder + "/" + proposed + "." + extension,
                                        QStringLiteral("*.%1").arg(extension));
}

void ExportWizard::selectExportPath()
{
    const bool saveFile = hasSingleFileTarget(m_kind) && m_singleFile->isChecked();
    const QString chosen = choosePath(!saveFile, m_pathField->text());
    if (!chosen.isEmpty()) {
        QString path = chosen;
        if (saveFile) {
            const QString extension = toQString(fileExtensionByExportFileType(m_kind).value_or(""));
            if (QFileInfo(path).suffix().compare(extension, Qt::CaseInsensitive) != 0)
                path += "." + extension;
        } else {
            m_heldFolder = path;
        }
        m_pathField->setText(path);
    }
    enableOkButtonCheck();
}

void ExportWizard::exportSingleFileToggled()
{
    const QString path = m_pathField->text();
    if (!m_singleFile->isChecked() && !path.isEmpty() && QFileInfo(path).absolutePath() != m_heldFolder) {
        // Leaving a single file elsewhere than the known folder: ask for the folder.
        const QString folder = choosePath(true, QFileInfo(path).absolutePath());
        if (folder.isEmpty()) {
            m_singleFile->setChecked(true); // cancelled: nothing else changes
            return;
        }
        m_heldFolder = folder;
        m_pathField->setText(folder);
    }
    updateExportSingleFileLabels();
    enableOkButtonCheck();
}

void ExportWizard::updateExportSingleFileLabels()
{
    const bool single = m_singleFile->isChecked();
    m_pathLabel->setText(toQString(exportPathLabel(single)));
    m_tableList->setColumnHidden(ExportEntriesModel::FileNameColumn, single);
    const QString path = m_pathField->text();
    if (!path.isEmpty())
        m_pathField->setText(
            toQString(updateExportSingleFilePath(path.toStdString(), single, m_file->name(), m_kind)));
}

void ExportWizard::ok()
{
    readOptions();
    if (!m_singleFile->isChecked()) {
        SettingsStore::setExportFilePath(m_pathField->text());
        SettingsStore::flush();
    }
    accept();
    startExport();
}

void ExportWizard::startExport()
{
    m_tableList->setModel(nullptr);
    m_entries->detach();
    const std::size_t count = std::count_if(m_job->entries().begin(), m_job->entries().end(),
                                            [](const ExportEntry &entry) { return entry.selected; });

    auto *progress = new QDialog(m_mainWindow ? m_mainWindow.data() : parentWidget());
    progress->setWindowTitle(windowTitle());
    progress->setWindowModality(Qt::WindowModal);
    auto *layout = new QVBoxLayout(progress);
    m_progressLabel = new QLabel(progress);
    m_progressLabel->setMinimumWidth(360);
    m_progressBar = new QProgressBar(progress);
    m_progressBar->setRange(0, static_cast<int>(count));
    m_progressBar->setValue(0);
    m_stopButton = new QPushButton(localizedQ("Stop"), progress);
    connect(m_stopButton, &QPushButton::clicked, this, [this] { m_job->stop(); });
    layout->addWidget(m_progressLabel);
    layout->addWidget(m_progressBar);
    auto *stopRow = new QHBoxLayout;
    stopRow->addStretch(1);
    stopRow->addWidget(m_stopButton);
    layout->addLayout(stopRow);
    m_progress = progress;
    progress->show();

    if (!m_job->startExport(this)) {
        progress->close();
        progress->deleteLater();
        deleteLater();
    }
}

void ExportWizard::updateProgressPanel(const ExportJob &, std::size_t index)
{
    runOnMainThreadAndWait([this, index] { showProgress(index); });
}

void ExportWizard::showProgress(std::size_t index)
{
    const auto &entries = m_job->entries();
    if (index >= entries.size() || !m_progressLabel)
        return;
    m_progressLabel->setText(toQString(exportProgressLabel(entries[index].tableName, index, entries.size())));
    m_progressBar->setValue(static_cast<int>(index));
}

void ExportWizard::exportThreadFinished(const ExportJob &)
{
    runOnMainThreadAndWait([this] { finishExport(); });
}

void ExportWizard::finishExport()
{
    if (m_progress) {
        m_progress->hide();
        m_progress->deleteLater();
    }
    m_progressLabel = nullptr;
    m_progressBar = nullptr;
    m_stopButton = nullptr;
    // The alert comes after the worker's call has returned, so that nothing waits on it.
    QTimer::singleShot(0, this, [this] {
        const ExportReport report = m_job->report();
        const QString title = toQString(report.title);
        const QString message = toQString(report.message);
        emit exportFinished(title, message);
        if (!m_showsFinalAlert || !m_mainWindow) {
            deleteLater();
            return;
        }
        auto *alert = new QMessageBox(QMessageBox::Information, title, title, QMessageBox::Ok, m_mainWindow);
        alert->setInformativeText(message);
        alert->setWindowModality(Qt::WindowModal);
        alert->setAttribute(Qt::WA_DeleteOnClose);
        connect(alert, &QMessageBox::finished, this, &QObject::deleteLater);
        alert->open();
    });
}

} // namespace vellum
