#include "app/widgets/InformationPane.h"

#include "app/models/InfoRowsModel.h"
#include "app/support/qtStrings.h"
#include "app/widgets/InformationTopBar.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBIndex.h"
#include "model/TOrbMDBLinkedTable.h"
#include "model/TOrbMDBQuery.h"
#include "model/TOrbMDBTable.h"

#include <QApplication>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <cmath>

namespace vellum {

namespace {

QFont smallFont()
{
    QFont font = QApplication::font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() - 1);
    return font;
}

/// Labels grey and right-aligned; values in a read-only, frameless line edit.
class LabelValueDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->font = smallFont();
        if (index.column() == 0)
            option->palette.setColor(QPalette::Text, option->palette.color(QPalette::Disabled, QPalette::Text));
    }
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        // Values are drawn by their editors only (else the text shows twice).
        if (index.column() != 0)
            return;
        QStyledItemDelegate::paint(painter, option, index);
    }

    // The line edit sits in a plain container so that the view does not select its whole text
    // when it opens (values start unselected; the user selects what to copy).
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        auto *container = new QWidget(parent);
        auto *layout = new QHBoxLayout(container);
        layout->setContentsMargins(0, 0, 0, 0);
        auto *line = new QLineEdit(container);
        line->setReadOnly(true);
        line->setFrame(false);
        line->setFont(smallFont());
        QPalette palette = line->palette();
        palette.setColor(QPalette::Base, Qt::transparent);
        line->setPalette(palette);
        layout->addWidget(line);
        return container;
    }
    void setEditorData(QWidget *editor, const QModelIndex &index) const override
    {
        if (auto *line = editor->findChild<QLineEdit *>()) {
            line->setText(index.data().toString());
            line->setCursorPosition(0);
            // The editor covers its cell: it carries the cell's tool tip, so that a value too
            // long for the pane can be read in full.
            line->setToolTip(index.data(Qt::ToolTipRole).toString());
        }
    }
    void setModelData(QWidget *, QAbstractItemModel *, const QModelIndex &) const override {}
};

const char *const kHeadings[] = {"File Information", "Table Information", "Column Information", "Index Information",
                                 "Relation Information"};
const char *const kEmptyTexts[] = {"No files selected", "", "No columns", "No indices", "No forigen keys"};

} // namespace

// ---------------------------------------------------------------------------------------------

LabelValueView::LabelValueView(QWidget *parent) : QTableView(parent), m_model(new InfoRowsModel(this))
{
    setModel(m_model);
    setItemDelegate(new LabelValueDelegate(this));
    horizontalHeader()->hide();
    verticalHeader()->hide();
    setSelectionMode(QAbstractItemView::NoSelection);
    setFocusPolicy(Qt::NoFocus);
    setShowGrid(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    verticalHeader()->setDefaultSectionSize(QFontMetrics(smallFont()).height() + 6);
}

int LabelValueView::widthToFit(const QStringList &labels, const QFont &font)
{
    if (labels.isEmpty())
        return 0;
    const QFontMetrics metrics(font);
    int widest = 0;
    for (const QString &label : labels)
        widest = std::max(widest, metrics.horizontalAdvance(label));
    return static_cast<int>(std::ceil(widest * 1.1));
}

void LabelValueView::setObject(const TOrbMDBObject *object, const TOrbMDBObject *measure, const QStringList &omitted)
{
    m_model->setObject(object, omitted);
    QStringList measured = m_model->labels();
    if (measure && measure != object) {
        measured.clear();
        for (const std::string &label : measure->getObjectLabels())
            measured.append(toQString(label));
    }
    // Cell padding on both sides of the label.
    m_labelWidth = widthToFit(measured, smallFont()) + (measured.isEmpty() ? 0 : 8);
    for (int row = 0; row < m_model->rowCount(); ++row)
        openPersistentEditor(m_model->index(row, 1));
    layoutColumns();
}

void LabelValueView::layoutColumns()
{
    setColumnWidth(0, m_labelWidth);
    const int spacing = 3;
    setColumnWidth(1, std::max(20, viewport()->width() - m_labelWidth - 3 * spacing));
}

void LabelValueView::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    layoutColumns();
}

// ---------------------------------------------------------------------------------------------

NamesListView::NamesListView(QWidget *parent) : QTableView(parent), m_model(new NamesListModel(this))
{
    setModel(m_model);
    verticalHeader()->hide();
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setSectionsMovable(false);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setHighlightSections(false);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setFont(smallFont());
    verticalHeader()->setDefaultSectionSize(QFontMetrics(smallFont()).height() + 6);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        // The list never has an empty choice: a click that deselects puts the choice back.
        if (!selectionModel()->hasSelection() && m_model->rowCount() > 0) {
            const QModelIndex current = currentIndex().isValid() ? currentIndex() : m_model->index(0, 0);
            selectionModel()->select(current, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
            return;
        }
        emit chosenRowChanged(chosenRow());
    });
}

void NamesListView::setNames(const QStringList &names)
{
    m_model->setNames(names);
    if (!names.isEmpty())
        selectionModel()->setCurrentIndex(m_model->index(0, 0),
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

int NamesListView::chosenRow() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

// ---------------------------------------------------------------------------------------------

InformationPane::InformationPane(QWidget *parent)
    : QWidget(parent), m_topBar(new InformationTopBar(this)), m_pages(new QStackedWidget(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_topBar);
    layout->addWidget(m_pages, 1);

    QFont headingFont = QApplication::font();
    headingFont.setBold(true);
    for (int page = 0; page < 5; ++page) {
        auto *container = new QWidget(m_pages);
        auto *pageLayout = new QVBoxLayout(container);
        pageLayout->setContentsMargins(6, 6, 6, 6);
        pageLayout->setSpacing(4);
        auto *heading = new QLabel(localizedQ(kHeadings[page]), container);
        heading->setFont(headingFont);
        pageLayout->addWidget(heading);

        auto *stack = new QStackedWidget(container);
        auto *details = new LabelValueView(stack);
        QWidget *content = details;
        if (page >= kInfoColumn) {
            auto *splitter = new QSplitter(Qt::Vertical, stack);
            auto *names = new NamesListView(splitter);
            splitter->addWidget(names);
            splitter->addWidget(details);
            splitter->setStretchFactor(0, 1);
            splitter->setStretchFactor(1, 2);
            m_names[static_cast<std::size_t>(page)] = names;
            connect(names, &NamesListView::chosenRowChanged, this, [this, page] { updateDetails(page); });
            content = splitter;
        }
        stack->addWidget(content);
        auto *empty = new QLabel(localizedQ(kEmptyTexts[page]), stack);
        empty->setAlignment(Qt::AlignCenter);
        empty->setEnabled(false);
        stack->addWidget(empty);
        pageLayout->addWidget(stack, 1);

        m_headings[static_cast<std::size_t>(page)] = heading;
        m_emptyLabels[static_cast<std::size_t>(page)] = empty;
        m_pageStacks[static_cast<std::size_t>(page)] = stack;
        m_details[static_cast<std::size_t>(page)] = details;
        m_pages->addWidget(container);
    }
    {
        auto *container = new QWidget(m_pages);
        auto *pageLayout = new QVBoxLayout(container);
        pageLayout->setContentsMargins(6, 6, 6, 6);
        pageLayout->setSpacing(4);
        m_entryHeading = new QLabel(container);
        m_entryHeading->setFont(headingFont);
        pageLayout->addWidget(m_entryHeading);
        m_entryRows = new LabelValueView(container);
        m_entryRows->setObjectName("entryRows");
        pageLayout->addWidget(m_entryRows);
        m_entryNote = new QLabel(container);
        m_entryNote->setObjectName("entryNote");
        m_entryNote->setWordWrap(true);
        m_entryNote->setTextInteractionFlags(Qt::TextSelectableByMouse);
        m_entryNote->setFont(smallFont());
        pageLayout->addWidget(m_entryNote);
        m_sqlView = new QPlainTextEdit(container);
        m_sqlView->setObjectName("sqlView");
        m_sqlView->setReadOnly(true);
        m_sqlView->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        m_sqlView->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        m_sqlView->setLineWrapMode(QPlainTextEdit::WidgetWidth);
        pageLayout->addWidget(m_sqlView, 1);
        auto *keysSplitter = new QSplitter(Qt::Vertical, container);
        m_entryKeyNames = new NamesListView(keysSplitter);
        m_entryKeyRows = new LabelValueView(keysSplitter);
        keysSplitter->addWidget(m_entryKeyNames);
        keysSplitter->addWidget(m_entryKeyRows);
        connect(m_entryKeyNames, &NamesListView::chosenRowChanged, this, [this](int row) {
            m_entryKeyRows->setObject(row >= 0 && static_cast<std::size_t>(row) < m_entryKeys.size()
                                          ? m_entryKeys[static_cast<std::size_t>(row)]
                                          : nullptr);
        });
        m_entryKeysBox = keysSplitter;
        pageLayout->addWidget(m_entryKeysBox, 1);
        // Takes the room below a linked table's note (the SQL view takes it for a query).
        m_entryFiller = new QWidget(container);
        pageLayout->addWidget(m_entryFiller, 1);
        m_pages->addWidget(container);
    }
    connect(m_topBar, &InformationTopBar::informationTypeChanged, this, &InformationPane::showPage);
    // At start only the File button shows, on page 0.
    for (int type = kInfoTable; type <= kInfoRelation; ++type)
        m_topBar->setHidden(true, type, kInfoFile);
    showFile(nullptr);
}

int InformationPane::currentPage() const
{
    return m_pages->currentIndex();
}

bool InformationPane::showsEmptyText(int page) const
{
    const QStackedWidget *stack = m_pageStacks[static_cast<std::size_t>(page)];
    return stack->currentIndex() == 1;
}

void InformationPane::showPage(int page)
{
    m_pages->setCurrentIndex(page);
}

void InformationPane::showFile(const TOrbMDBFile *file)
{
    m_table = nullptr;
    m_details[kInfoFile]->setObject(file);
    m_pageStacks[kInfoFile]->setCurrentIndex(file ? 0 : 1);
    m_topBar->setHidden(false, kInfoFile, kInfoFile);
    for (int type = kInfoTable; type <= kInfoRelation; ++type)
        m_topBar->setHidden(true, type, kInfoFile);
    showPage(kInfoFile);
}

void InformationPane::showTable(const TOrbMDBTable *table)
{
    refreshTablePages(table);
    const int previous = m_topBar->selectedType();
    const int keep = previous >= kInfoTable && previous <= kInfoRelation ? previous : kInfoTable;
    m_topBar->setHidden(true, kInfoFile, keep);
    for (int type = kInfoTable; type <= kInfoRelation; ++type)
        m_topBar->setHidden(false, type, keep);
    showPage(keep);
}

void InformationPane::fitEntryRows()
{
    // As tall as its rows: the note or the SQL follows right below them.
    const int rows = m_entryRows->rowsModel()->rowCount();
    m_entryRows->setFixedHeight(rows * m_entryRows->verticalHeader()->defaultSectionSize() +
                                2 * m_entryRows->frameWidth() + 2);
}

void InformationPane::showEntryPage()
{
    m_table = nullptr;
    for (int type = kInfoFile; type <= kInfoRelation; ++type)
        m_topBar->setHidden(true, type, kInfoFile);
    showPage(kEntryPage);
}

void InformationPane::showLinkedTable(const TOrbMDBLinkedTable *link, const QString &note)
{
    m_entryHeading->setText(localizedQ("Linked Table Information"));
    m_entryRows->setObject(link);
    fitEntryRows();
    m_entryNote->setText(note);
    m_entryNote->setVisible(!note.isEmpty());
    m_sqlView->clear();
    m_sqlView->hide();
    m_entryKeys.clear();
    QStringList names;
    if (const TOrbMDBFile *file = link ? link->file() : nullptr)
        if (const auto keys = file->foreignKeysForTable(link->name()))
            for (const TOrbMDBForeignKey *key : *keys) {
                m_entryKeys.push_back(key);
                names.append(toQString(key->name()));
            }
    m_entryKeyNames->setNames(names);
    m_entryKeyRows->setObject(m_entryKeys.empty() ? nullptr : m_entryKeys.front());
    m_entryKeysBox->setVisible(!m_entryKeys.empty());
    m_entryFiller->setVisible(m_entryKeys.empty());
    showEntryPage();
}

void InformationPane::setLinkNote(const QString &note)
{
    m_entryNote->setText(note);
    m_entryNote->setVisible(!note.isEmpty());
}

void InformationPane::showQuery(const TOrbMDBQuery *query)
{
    m_entryHeading->setText(localizedQ("Query Information"));
    // The SQL text has a view of its own below the rows.
    m_entryRows->setObject(query, nullptr, {localizedQ("SQL")});
    fitEntryRows();
    m_entryNote->clear();
    m_entryNote->hide();
    m_sqlView->setPlainText(query ? toQString(query->sql()) : QString());
    m_sqlView->show();
    m_entryKeys.clear();
    m_entryKeyNames->setNames({});
    m_entryKeyRows->setObject(nullptr);
    m_entryKeysBox->hide();
    m_entryFiller->hide();
    showEntryPage();
}

void InformationPane::refreshTablePages(const TOrbMDBTable *table)
{
    m_table = table;
    m_details[kInfoTable]->setObject(table);
    m_pageStacks[kInfoTable]->setCurrentIndex(0);

    for (int page = kInfoColumn; page <= kInfoRelation; ++page) {
        std::vector<const TOrbMDBObject *> objects;
        if (table) {
            if (page == kInfoColumn) {
                for (const auto &column : table->columns())
                    objects.push_back(column.get());
            } else if (page == kInfoIndex) {
                for (const auto &index : table->indices())
                    objects.push_back(index.get());
            } else if (const auto keys = table->foreignKeys()) {
                for (const TOrbMDBForeignKey *key : *keys)
                    objects.push_back(key);
            }
        }
        m_objects[static_cast<std::size_t>(page)] = objects;
        QStringList names;
        for (const TOrbMDBObject *object : objects)
            names.append(toQString(object->name()));
        m_pageStacks[static_cast<std::size_t>(page)]->setCurrentIndex(objects.empty() ? 1 : 0);
        m_names[static_cast<std::size_t>(page)]->setNames(names);
        updateDetails(page);
    }
}

void InformationPane::updateDetails(int page)
{
    const auto &objects = m_objects[static_cast<std::size_t>(page)];
    const int row = m_names[static_cast<std::size_t>(page)]->chosenRow();
    const TOrbMDBObject *chosen =
        row >= 0 && static_cast<std::size_t>(row) < objects.size() ? objects[static_cast<std::size_t>(row)] : nullptr;
    m_details[static_cast<std::size_t>(page)]->setObject(chosen);
}

} // namespace vellum
