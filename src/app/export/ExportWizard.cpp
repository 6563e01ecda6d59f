#include "app/export/ExportWizard.h"

#include "app/models/ExportEntriesModel.h"
#include "app/support/SettingsStore.h"
#include "app/support/applicationSetup.h"
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

QString titleOfKind(ExportFileType kind)
{
    const ExportKindInfo *info = exportKindInfo(kind);
    return info ? localizedQ(info->title) : QString();
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
    // The lossless check box keeps the choice made in the last export.
    m_job->mutableOptions().lossless = SettingsStore::exportLossless();
    const ExportOptions &options = m_job->options();
    auto *layout = new QVBoxLayout(this);

    auto *intro = new QLabel(
        toQString(formatObjects(localized("Tables of %@"), {m_file->name() + "." + m_file->fileExtension()})), this);
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
    // A check box changes OK through the same rule as the path and the options: ticking a
    // table never enables OK for a path that cannot be written.
    connect(m_entries, &ExportEntriesModel::selectedCountChanged, this, [this](int) { enableOkButtonCheck(); });

    auto *selectRow = new QHBoxLayout;
    auto *selectAll = new QPushButton(localizedQ("Select All"), this);
    auto *deselectAll = new QPushButton(localizedQ("Deselect All"), this);
    connect(selectAll, &QPushButton::clicked, this, [this] { markAllTableEntriesAsSelected(true); });
    connect(deselectAll, &QPushButton::clicked, this, [this] { markAllTableEntriesAsSelected(false); });
    selectRow->addWidget(selectAll);
    selectRow->addWidget(deselectAll);
    selectRow->addStretch(1);
    layout->addLayout(selectRow);

    // The options the registry lists for this kind. Check boxes exist for every kind, hidden
    // where the kind does not show them, so that the OK rule always reads structure and data;
    // the other controls exist only where they are shown.
    auto *group = new QGroupBox(localizedQ("Options"), this);
    auto *form = new QFormLayout(group);
    layout->addWidget(group);
    bool anyShown = false;
    for (const ExportOptionInfo &option : exportOptions()) {
        if (option.id == ExportOptionId::SingleFile || option.control == ExportControl::None)
            continue;
        const bool shown = containsKind(option.wizardKinds, m_kind);
        if (!shown && option.control != ExportControl::CheckBox)
            continue;
        QWidget *widget = makeControl(option, options, group);
        if (option.control == ExportControl::CheckBox)
            form->addRow(widget);
        else
            form->addRow(localizedQ(option.label), widget);
        if (!shown)
            widget->hide();
        anyShown = anyShown || shown;
    }
    updateEnabledControls();
    if (!anyShown)
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

    const ExportOptionInfo &singleFile = exportOptionInfo(ExportOptionId::SingleFile);
    m_singleFile = static_cast<QCheckBox *>(makeControl(singleFile, options, this));
    if (!containsKind(singleFile.wizardKinds, m_kind))
        m_singleFile->hide();
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
    // Tall enough for the options and some ten tables; once shown, the first table to export
    // is in view.
    resize(560, 660);
    QTimer::singleShot(0, this, [this] {
        for (int row = 0; row < m_entries->rowCount(); ++row) {
            const QModelIndex box = m_entries->index(row, ExportEntriesModel::SelectedColumn);
            if (box.data(Qt::CheckStateRole).toInt() == Qt::Checked) {
                m_tableList->scrollTo(box, QAbstractItemView::PositionAtCenter);
                return;
            }
        }
    });
}

QWidget *ExportWizard::makeControl(const ExportOptionInfo &option, const ExportOptions &options, QWidget *parent)
{
    QWidget *widget = nullptr;
    switch (option.control) {
    case ExportControl::CheckBox: {
        auto *box = new QCheckBox(localizedQ(option.label), parent);
        connect(box, &QCheckBox::toggled, this, [this, id = option.id] {
            updateEnabledControls();
            // The OK rule reads structure and data among the options.
            if (id == ExportOptionId::Structure || id == ExportOptionId::Data)
                enableOkButtonCheck();
        });
        widget = box;
        break;
    }
    case ExportControl::Menu: {
        auto *box = new QComboBox(parent);
        for (const ExportOptionChoice &choice : exportOptionChoices(option, m_kind))
            box->addItem(option.localizedChoices ? localizedQ(choice.label) : QString::fromUtf8(choice.label),
                         static_cast<int>(choice.value));
        widget = box;
        break;
    }
    case ExportControl::EncodingMenu: {
        auto *box = new QComboBox(parent);
        std::vector<EncodingEntry> encodings;
        for (const StringEncoding &encoding : availableStringEncodings())
            encodings.push_back(EncodingEntry::encodingEntryWithEncoding(encoding.code));
        std::sort(encodings.begin(), encodings.end(), SortEncoding);
        for (const EncodingEntry &entry : encodings)
            box->addItem(toQString(entry.encodingName), QVariant::fromValue<qulonglong>(entry.encoding));
        widget = box;
        break;
    }
    case ExportControl::TextField: {
        auto *field = new QLineEdit(parent);
        if (option.id == ExportOptionId::DecimalSymbol)
            field->setMaximumWidth(60);
        widget = field;
        break;
    }
    case ExportControl::None:
        return nullptr;
    }
    m_controls[option.id] = widget;
    showOptions(options);
    if (auto *box = qobject_cast<QComboBox *>(widget); box && option.control == ExportControl::Menu)
        connect(box, &QComboBox::currentIndexChanged, this, [this, &option] { menuChoiceChanged(option); });
    return widget;
}

QWidget *ExportWizard::control(ExportOptionId id) const
{
    const auto found = m_controls.find(id);
    return found == m_controls.end() ? nullptr : found->second;
}

QCheckBox *ExportWizard::checkBox(ExportOptionId id) const
{
    return qobject_cast<QCheckBox *>(control(id));
}

QComboBox *ExportWizard::menu(ExportOptionId id) const
{
    return qobject_cast<QComboBox *>(control(id));
}

QLineEdit *ExportWizard::textField(ExportOptionId id) const
{
    return qobject_cast<QLineEdit *>(control(id));
}

ExportOptions ExportWizard::optionsFromControls() const
{
    ExportOptions options = m_job->options();
    for (const auto &[id, widget] : m_controls) {
        const ExportOptionInfo &option = exportOptionInfo(id);
        switch (option.control) {
        case ExportControl::CheckBox:
            option.store(options, static_cast<QCheckBox *>(widget)->isChecked());
            break;
        case ExportControl::Menu:
            option.store(options,
                         static_cast<std::int64_t>(static_cast<QComboBox *>(widget)->currentData().toLongLong()));
            break;
        case ExportControl::EncodingMenu:
            option.store(options,
                         static_cast<std::int64_t>(static_cast<QComboBox *>(widget)->currentData().toULongLong()));
            break;
        case ExportControl::TextField:
            option.store(options, static_cast<QLineEdit *>(widget)->text().toStdString());
            break;
        case ExportControl::None:
            break;
        }
    }
    return options;
}

void ExportWizard::showOptions(const ExportOptions &options)
{
    for (const auto &[id, widget] : m_controls) {
        const ExportOptionInfo &option = exportOptionInfo(id);
        const ExportOptionValue value = option.read(options);
        switch (option.control) {
        case ExportControl::CheckBox:
            if (auto *box = static_cast<QCheckBox *>(widget); box->isChecked() != std::get<bool>(value))
                box->setChecked(std::get<bool>(value));
            break;
        case ExportControl::Menu:
            selectTag(static_cast<QComboBox *>(widget), static_cast<int>(std::get<std::int64_t>(value)));
            break;
        case ExportControl::EncodingMenu: {
            auto *box = static_cast<QComboBox *>(widget);
            const int index =
                box->findData(QVariant::fromValue<qulonglong>(static_cast<qulonglong>(std::get<std::int64_t>(value))));
            if (index >= 0 && index != box->currentIndex())
                box->setCurrentIndex(index);
            break;
        }
        case ExportControl::TextField:
            if (const QString text = toQString(std::get<std::string>(value));
                static_cast<QLineEdit *>(widget)->text() != text)
                static_cast<QLineEdit *>(widget)->setText(text);
            break;
        case ExportControl::None:
            break;
        }
    }
}

void ExportWizard::updateEnabledControls()
{
    const ExportOptions options = optionsFromControls();
    for (const auto &[id, widget] : m_controls)
        if (const ExportOptionInfo &option = exportOptionInfo(id); option.enabledWhen)
            widget->setEnabled(option.enabledWhen(m_kind, options));
}

void ExportWizard::menuChoiceChanged(const ExportOptionInfo &option)
{
    // A choice may imply others ("," goes with "." as the decimal symbol and ";" with ",").
    ExportOptions options = optionsFromControls();
    chooseExportOption(option, options, static_cast<std::int64_t>(menu(option.id)->currentData().toLongLong()));
    showOptions(options);
    updateEnabledControls();
}

void ExportWizard::readOptions()
{
    m_job->setOptions(optionsFromControls());
    m_job->setExportPath(m_pathField->text().toStdString());
}

void ExportWizard::enableOkButtonCheck()
{
    if (!m_okButton)
        return; // still being built
    readOptions();
    m_okButton->setEnabled(
        vellum::enableOkButtonCheck(m_job->exportPath(), m_job->selectedTableCount(), m_job->options()) &&
        exportPathUsable(m_job->exportPath(), m_job->options().exportSingleFile));
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
    const ExportKindInfo *info = exportKindInfo(m_kind);
    const bool saveFile = info && info->singleFileTarget && m_singleFile->isChecked();
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
        m_pathField->setText(toQString(updateExportSingleFilePath(path.toStdString(), single, m_file->name(), m_kind)));
}

void ExportWizard::ok()
{
    readOptions();
    SettingsStore::setExportLossless(m_job->options().lossless);
    if (!m_singleFile->isChecked())
        SettingsStore::setExportFilePath(m_pathField->text());
    SettingsStore::flush();
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
        // Plain text: a table named like a tag ("<Big>") must show as it is named.
        alert->setTextFormat(Qt::PlainText);
        alert->setInformativeText(message);
        if (auto *informative = alert->findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel")))
            informative->setTextFormat(Qt::PlainText);
        fitAlertToTitle(alert);
        alert->setWindowModality(Qt::WindowModal);
        alert->setAttribute(Qt::WA_DeleteOnClose);
        connect(alert, &QMessageBox::finished, this, &QObject::deleteLater);
        alert->open();
    });
}

} // namespace vellum
