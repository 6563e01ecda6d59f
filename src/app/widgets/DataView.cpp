#include "app/widgets/DataView.h"

#include "app/models/TableDataModel.h"
#include "app/support/desktopServices.h"
#include "app/support/qtStrings.h"
#include "app/widgets/CopyableTableView.h"
#include "app/widgets/GCJumpBar.h"
#include "app/widgets/LongTextView.h"
#include "app/widgets/MdbImageView.h"
#include "browser/RowSet.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBTable.h"

#include <QHeaderView>
#include <QSplitter>
#include <QStackedWidget>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

namespace vellum {

DataView::DataView(bool textViewShown, QWidget *parent)
    : QWidget(parent), m_model(new TableDataModel(this)), m_grid(new CopyableTableView(this)),
      m_jumpBar(new GCJumpBar(this)), m_splitter(new QSplitter(Qt::Vertical, this)), m_bottom(new QStackedWidget(this)),
      m_textView(new LongTextView(this)), m_imageView(new MdbImageView(this)), m_busyDelay(new QTimer(this)),
      m_textViewShown(textViewShown)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_jumpBar);
    layout->addWidget(m_splitter, 1);

    m_grid->setDataModel(m_model);
    m_textView->setReadOnly(true);
    m_textView->setUndoRedoEnabled(false);
    m_textView->setAcceptRichText(false);
    m_textView->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_bottom->addWidget(m_textView);
    m_bottom->addWidget(m_imageView);
    m_splitter->addWidget(m_grid);
    m_splitter->addWidget(m_bottom);
    m_splitter->setHandleWidth(1);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setStretchFactor(0, 1);
    m_splitter->setStretchFactor(1, 0);
    m_bottom->setVisible(textViewShown);
    m_jumpBar->hide();

    m_busyDelay->setSingleShot(true);
    m_busyDelay->setInterval(kBusyDelayMs);
    connect(m_busyDelay, &QTimer::timeout, this, &DataView::showBusy);
    connect(m_model, &TableDataModel::reloadStarted, this, &DataView::reloadStarted);
    connect(m_model, &TableDataModel::reloadFinished, this, &DataView::reloadFinished);

    m_filterProvider = [] { return RowFilter(); };
    connect(m_grid, &CopyableTableView::headerClicked, this, &DataView::onHeaderClicked);
    connect(m_grid, &CopyableTableView::cellCursorChanged, this,
            [this](int row, int column) { displayTextViewContent(m_model->cellValue(row, column)); });
    connect(m_grid, &CopyableTableView::cellCursorLeft, this, [this] { displayTextViewContent(std::nullopt); });
    connect(m_grid, &CopyableTableView::recordSelectionChanged, this, &DataView::recordSelectionChanged);
    connect(m_imageView, &MdbImageView::openBlobAsFile, this, [this] {
        if (const TOrbBlobData *blob = m_imageView->currentBlob())
            openWithDefaultApplication(toQString(blob->createTempFile()));
    });
    displayTextViewContent(std::nullopt);
}

void DataView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!m_sized) {
        // The bottom pane starts at its own height; the grid takes the rest.
        m_sized = true;
        const int total = m_splitter->height();
        if (total > m_bottomHeight * 2)
            m_splitter->setSizes({total - m_bottomHeight, m_bottomHeight});
    }
}

void DataView::updateDataTableToShowMDBTable(const TOrbMDBTable *table)
{
    // What waited for an earlier request belongs to what was shown then.
    m_whenReloaded.clear();
    m_grid->leaveCellCursor();
    const bool newTable = table != m_model->table();
    const auto after = [this] {
        m_grid->horizontalHeader()->reset();
        sizeColumns();
        applySortIndicator();
        finishReload();
    };
    m_model->showTable(table, m_filterProvider(), {nullptr, after});
    if (newTable && m_model->isReloading()) {
        // The new columns show at once; their widths follow the rows when these are in.
        m_grid->horizontalHeader()->reset();
        sizeColumns();
        applySortIndicator();
    }
}

void DataView::reloadData(std::function<void()> whenReloaded)
{
    if (whenReloaded)
        m_whenReloaded.push_back(std::move(whenReloaded));
    const auto after = [this] {
        applySortIndicator();
        finishReload();
    };
    m_model->reload(m_filterProvider(), {nullptr, after});
}

void DataView::reloadKeepingSelection(std::function<void()> whenReloaded)
{
    if (whenReloaded)
        m_whenReloaded.push_back(std::move(whenReloaded));
    // The row to keep is the one selected when the new rows come in.
    auto remembered = std::make_shared<std::optional<std::uint32_t>>();
    const auto before = [this, remembered] {
        const QModelIndex current = m_grid->currentIndex();
        if (current.isValid() && m_grid->selectionModel()->isRowSelected(current.row(), {}))
            *remembered = m_model->tableRow(current.row());
        else if (const QModelIndexList rows = m_grid->selectionModel()->selectedRows(); !rows.isEmpty())
            *remembered = m_model->tableRow(rows.first().row());
        m_grid->leaveCellCursor();
    };
    const auto after = [this, remembered] {
        applySortIndicator();
        if (*remembered) {
            if (const auto position = m_model->rowSet().positionOfRow(**remembered)) {
                const QModelIndex index = m_model->index(static_cast<int>(*position), 0);
                m_grid->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                                     QItemSelectionModel::Rows);
            }
        }
        finishReload();
    };
    m_model->reload(m_filterProvider(), {before, after});
}

void DataView::finishReload()
{
    emit rowsReloaded();
    std::vector<std::function<void()>> waiting;
    waiting.swap(m_whenReloaded);
    for (const auto &call : waiting)
        call();
}

void DataView::reloadStarted()
{
    if (!m_busyDelay->isActive() && !m_busyShown)
        m_busyDelay->start();
}

void DataView::reloadFinished()
{
    m_busyDelay->stop();
    if (m_busyShown) {
        m_busyShown = false;
        m_grid->viewport()->unsetCursor();
    }
}

void DataView::showBusy()
{
    if (!m_model->isReloading() || m_busyShown)
        return;
    m_busyShown = true;
    m_grid->viewport()->setCursor(Qt::BusyCursor);
}

void DataView::onHeaderClicked(int column)
{
    const TOrbMDBTable *table = m_model->table();
    if (!table)
        return;
    // The sort state lives in the model's columns (shared by every window showing the table).
    applyHeaderClick(*table, static_cast<std::size_t>(column));
    reloadKeepingSelection();
}

void DataView::applySortIndicator()
{
    // The indicator tells the order of the rows shown: the sort their set was built for.
    QHeaderView *header = m_grid->horizontalHeader();
    const RowSet &rows = m_model->rowSet();
    const std::optional<std::size_t> column = rows.table() ? rows.sortColumn() : std::nullopt;
    if (!column) {
        header->setSortIndicatorShown(false);
        return;
    }
    header->setSortIndicatorShown(true);
    header->setSortIndicator(static_cast<int>(*column),
                             rows.sortDirection() == 1 ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void DataView::sizeColumns()
{
    // Widths from the header and the first rows only: nothing beyond them is formatted.
    const QFontMetrics headerMetrics(m_grid->horizontalHeader()->font());
    const QFontMetrics cellMetrics(m_model->data(m_model->index(0, 0), Qt::FontRole).value<QFont>());
    const int sampleRows = std::min(m_model->rowCount(), 30);
    for (int column = 0; column < m_model->columnCount(); ++column) {
        int width = headerMetrics.horizontalAdvance(m_model->headerData(column, Qt::Horizontal).toString()) + 36;
        const int iconRoom = m_model->isOLEColumn(column) ? 22 : 0;
        for (int row = 0; row < sampleRows; ++row)
            width = std::max(width, cellMetrics.horizontalAdvance(
                                        CellCursorDelegate::gridText(m_model->index(row, column).data().toString())) +
                                        16 + iconRoom);
        m_grid->setColumnWidth(column, std::clamp(width, 60, 320));
    }
}

void DataView::displayTextViewContent(std::optional<CellValue> value)
{
    if (value && value->isBlob() && value->blob && value->blob->isImage()) {
        m_imageView->setBlob(value->blob);
        m_bottom->setCurrentWidget(m_imageView);
        return;
    }
    m_imageView->setBlob(nullptr);
    m_bottom->setCurrentWidget(m_textView);
    const QColor grey = palette().color(QPalette::Disabled, QPalette::Text);
    QString text;
    bool greyText = false;
    if (!value) {
        text = localizedQ("No fields selected");
        greyText = true;
    } else if (value->isNull()) {
        text = QStringLiteral("[NULL]");
        greyText = true;
    } else if (value->complex) {
        // Every item: the whole history of a version history, one value or file a line.
        text = toQString(value->complex->detailText());
    } else if (value->isBlob()) {
        text = value->blob ? toQString(value->blob->description()) : QStringLiteral("[NULL]");
        greyText = text == QLatin1String("[NON-TEXTUAL DATA]") || text == QLatin1String("[NULL]");
    } else {
        text = toQString(value->text);
    }
    QPalette textPalette = m_textView->palette();
    textPalette.setColor(QPalette::Text, greyText ? grey : palette().color(QPalette::Text));
    m_textView->setPalette(textPalette);
    m_textView->setShownText(text);
}

void DataView::showHideBottomTextView(bool shown)
{
    if (shown == m_textViewShown)
        return;
    if (!shown && m_bottom->height() > 0)
        m_bottomHeight = m_bottom->height();
    m_textViewShown = shown;
    m_bottom->setVisible(shown);
    if (shown) {
        const int total = m_splitter->height();
        m_splitter->setSizes({std::max(0, total - m_bottomHeight), m_bottomHeight});
    }
}

void DataView::showHideJumpBar(bool shown)
{
    m_jumpBar->setVisible(shown);
}

bool DataView::isJumpBarShown() const
{
    return !m_jumpBar->isHidden();
}

} // namespace vellum
