#pragma once

#include "app/widgets/LongTextView.h"
#include "browser/RowFilter.h"
#include "model/CellValue.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

class QSplitter;
class QStackedWidget;
class QTimer;

namespace vellum {

class CopyableTableView;
class GCJumpBar;
class MdbImageView;
class TableDataModel;
class TOrbMDBTable;

/// The data pane of a window: the jump bar above, the grid, and below it the bottom pane that
/// shows the whole content of the cell under the cell cursor (a picture view for pictures).
class DataView : public QWidget {
    Q_OBJECT
public:
    /// `textViewShown`: whether the bottom pane starts shown.
    DataView(bool textViewShown, QWidget *parent = nullptr);

    CopyableTableView *grid() const { return m_grid; }
    TableDataModel *dataModel() const { return m_model; }
    GCJumpBar *jumpBar() const { return m_jumpBar; }
    LongTextView *bottomTextView() const { return m_textView; }
    MdbImageView *imageView() const { return m_imageView; }

    /// The data filter applied at every reload (the main window's search; none for children).
    void setFilterProvider(std::function<RowFilter()> provider) { m_filterProvider = std::move(provider); }

    /// How long sorting or filtering runs before the grid shows a busy cursor (milliseconds).
    static constexpr int kBusyDelayMs = 100;

    /// Shows a table (or none): new columns, sorted and filtered rows, sort indicator. Large
    /// tables are sorted and filtered off the GUI thread; their rows follow when ready.
    void updateDataTableToShowMDBTable(const TOrbMDBTable *table);
    /// Sorts and filters the shown table again and keeps the row that was selected when it is
    /// still shown (selected alone, not scrolled to). The grid keeps its rows until the new ones
    /// are ready; `whenReloaded` runs then (also when a newer reload of the same table replaced
    /// this one: it runs when that one's rows are in; dropped when another table is shown).
    void reloadKeepingSelection(std::function<void()> whenReloaded = {});
    /// Sorts and filters again without selection handling; `whenReloaded` as above.
    void reloadData(std::function<void()> whenReloaded = {});
    /// Whether the grid shows its busy cursor (sorting or filtering ran over kBusyDelayMs).
    bool isBusyShown() const { return m_busyShown; }

    /// Shows a value in the bottom pane: a blob with a picture in the picture view, any other
    /// value as text ("[NULL]" and "[NON-TEXTUAL DATA]" grey); no value: grey "No fields selected".
    void displayTextViewContent(std::optional<CellValue> value);

    void showHideBottomTextView(bool shown);
    bool isTextViewShown() const { return m_textViewShown; }
    void showHideJumpBar(bool shown);
    bool isJumpBarShown() const;

signals:
    /// The shown rows changed (new table, sort, filter): the status text may follow.
    void rowsReloaded();
    /// The user clicked in the grid or changed the row selection.
    void recordSelectionChanged();

protected:
    void showEvent(QShowEvent *event) override;

private:
    void onHeaderClicked(int column);
    void finishReload();
    void reloadStarted();
    void reloadFinished();
    void showBusy();
    void applySortIndicator();
    void sizeColumns();

    TableDataModel *m_model;
    CopyableTableView *m_grid;
    GCJumpBar *m_jumpBar;
    QSplitter *m_splitter;
    QStackedWidget *m_bottom;
    LongTextView *m_textView;
    MdbImageView *m_imageView;
    QTimer *m_busyDelay;
    std::function<RowFilter()> m_filterProvider;
    /// Calls waiting for the rows of the newest reload.
    std::vector<std::function<void()>> m_whenReloaded;
    bool m_busyShown = false;
    bool m_textViewShown;
    int m_bottomHeight = 140;
    bool m_sized = false;
};

} // namespace vellum
