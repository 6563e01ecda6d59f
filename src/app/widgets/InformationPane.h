#pragma once

#include <QTableView>
#include <QWidget>

#include <array>
#include <vector>

class QLabel;
class QPlainTextEdit;
class QStackedWidget;

namespace vellum {

class InfoRowsModel;
class InformationTopBar;
class NamesListModel;
class TOrbMDBFile;
class TOrbMDBLinkedTable;
class TOrbMDBObject;
class TOrbMDBQuery;
class TOrbMDBTable;

/// A label/value list: right-aligned grey labels, values selectable but not editable; the label
/// column is as wide as the widest label times 1.1, the values take the rest.
class LabelValueView : public QTableView {
    Q_OBJECT
public:
    explicit LabelValueView(QWidget *parent = nullptr);
    InfoRowsModel *rowsModel() const { return m_model; }
    /// Shows an object's rows; the label column is measured on `measure`'s labels (the object's
    /// own when null).
    void setObject(const TOrbMDBObject *object, const TOrbMDBObject *measure = nullptr,
                   const QStringList &omitted = {});
    /// The widest label's width in the label font times 1.1 (0 without labels).
    static int widthToFit(const QStringList &labels, const QFont &font);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void layoutColumns();
    InfoRowsModel *m_model;
    int m_labelWidth = 0;
};

/// A names list: one column headed "Name"; a row is always chosen (the first by default).
class NamesListView : public QTableView {
    Q_OBJECT
public:
    explicit NamesListView(QWidget *parent = nullptr);
    NamesListModel *namesModel() const { return m_model; }
    /// Replaces the names and chooses the first.
    void setNames(const QStringList &names);
    /// The chosen row (-1 when the list is empty).
    int chosenRow() const;

signals:
    void chosenRowChanged(int row);

private:
    NamesListModel *m_model;
};

/// The information pane: the button strip and five pages (file, table, columns, indexes,
/// relationships) with their headings and empty texts, and a sixth page, reached by selection
/// only, for a linked table or a saved query.
class InformationPane : public QWidget {
    Q_OBJECT
public:
    /// The page of a linked table or a query (no button of the strip leads to it).
    static constexpr int kEntryPage = 5;

    explicit InformationPane(QWidget *parent = nullptr);

    InformationTopBar *topBar() const { return m_topBar; }
    /// The page shown (the strip's selected type).
    int currentPage() const;
    /// Whether a page shows its empty text instead of its lists.
    bool showsEmptyText(int page) const;
    QLabel *heading(int page) const { return m_headings[static_cast<std::size_t>(page)]; }
    QLabel *emptyLabel(int page) const { return m_emptyLabels[static_cast<std::size_t>(page)]; }
    LabelValueView *labelValueView(int page) const { return m_details[static_cast<std::size_t>(page)]; }
    /// The names list of pages 2 to 4 (nullptr for 0 and 1).
    NamesListView *namesView(int page) const { return m_names[static_cast<std::size_t>(page)]; }

    /// A file (or nothing) selected: only the File button, page 0 with the file's rows or
    /// "No files selected".
    void showFile(const TOrbMDBFile *file);
    /// A table selected: the File button hidden, Table to Relation shown; the page stays when it
    /// is one of 1 to 4, else Table. All table pages are rebuilt.
    void showTable(const TOrbMDBTable *table);
    /// A linked table selected: no button of the strip, the entry page with the link's rows
    /// (name, kind, target), one line `note` saying where its rows come from or why none are
    /// shown, and the relationships in which the linked table is the referencing side.
    void showLinkedTable(const TOrbMDBLinkedTable *link, const QString &note);
    /// Replaces the note line of the linked table shown (its target's open has ended).
    void setLinkNote(const QString &note);
    /// A saved query selected: no button of the strip, the entry page with the query's rows and
    /// its SQL text, selectable, in a fixed-width font.
    void showQuery(const TOrbMDBQuery *query);
    QLabel *entryNoteLabel() const { return m_entryNote; }
    QPlainTextEdit *sqlView() const { return m_sqlView; }

private:
    void showPage(int page);
    void refreshTablePages(const TOrbMDBTable *table);
    void updateDetails(int page);

    InformationTopBar *m_topBar;
    QStackedWidget *m_pages;
    std::array<QLabel *, 5> m_headings{};
    std::array<QLabel *, 5> m_emptyLabels{};
    std::array<QStackedWidget *, 5> m_pageStacks{};
    std::array<LabelValueView *, 5> m_details{};
    std::array<NamesListView *, 5> m_names{};
    // The entry page: heading, rows, the linked table's note, the query's SQL.
    QLabel *m_entryHeading = nullptr;
    LabelValueView *m_entryRows = nullptr;
    QLabel *m_entryNote = nullptr;
    QPlainTextEdit *m_sqlView = nullptr;
    QWidget *m_entryFiller = nullptr;
    QWidget *m_entryKeysBox = nullptr;
    NamesListView *m_entryKeyNames = nullptr;
    LabelValueView *m_entryKeyRows = nullptr;
    std::vector<const TOrbMDBObject *> m_entryKeys;

public:
    /// The names list of the shown linked table's relationships (hidden when it has none).
    NamesListView *entryRelationshipNames() const { return m_entryKeyNames; }
    LabelValueView *entryRelationshipRows() const { return m_entryKeyRows; }

private:
    void fitEntryRows();
    /// Hides every button of the strip and shows the entry page.
    void showEntryPage();
    const TOrbMDBTable *m_table = nullptr;
    // The objects behind the names lists of pages 2 to 4.
    std::array<std::vector<const TOrbMDBObject *>, 5> m_objects;
};

} // namespace vellum
