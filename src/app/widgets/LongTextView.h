#pragma once

#include <QString>
#include <QTextEdit>

#include <vector>

namespace vellum {

/// The read-only text of the bottom pane. A text with a line longer than kPieceLength is laid
/// out in pieces of that length (each its own paragraph, wrapped anywhere): Qt lays paragraphs
/// out lazily, one paragraph at a time, so even a memo of 200,000 characters on one line shows
/// at once. Copying a selection gives the text as stored, without the breaks between pieces.
class LongTextView : public QTextEdit {
    Q_OBJECT
public:
    /// The longest line laid out as one paragraph.
    static constexpr int kPieceLength = 1000;

    explicit LongTextView(QWidget *parent = nullptr);

    /// Shows `text` (plain), split into pieces where a line is longer than kPieceLength.
    void setShownText(const QString &text);
    /// The text shown, as given to setShownText.
    const QString &shownText() const { return m_text; }
    /// The text between two document positions, without the breaks added between pieces.
    QString originalText(int from, int to) const;

protected:
    QMimeData *createMimeDataFromSelection() const override;

private:
    /// The text offset of a document position.
    int textOffset(int position) const;

    QString m_text;
    /// Document positions of the breaks added between pieces, ascending.
    std::vector<int> m_addedBreaks;
};

} // namespace vellum
