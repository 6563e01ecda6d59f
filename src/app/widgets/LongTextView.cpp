#include "app/widgets/LongTextView.h"

#include <QMimeData>
#include <QTextCursor>

#include <algorithm>

namespace vellum {

LongTextView::LongTextView(QWidget *parent) : QTextEdit(parent) {}

void LongTextView::setShownText(const QString &text)
{
    m_text = text;
    m_addedBreaks.clear();
    QString shown;
    shown.reserve(text.size() + text.size() / kPieceLength + 1);
    int lineLength = 0;
    for (const QChar c : text) {
        if (c == QLatin1Char('\n')) {
            lineLength = 0;
        } else if (lineLength == kPieceLength) {
            m_addedBreaks.push_back(static_cast<int>(shown.size()));
            shown.append(QLatin1Char('\n'));
            lineLength = 1;
        } else {
            ++lineLength;
        }
        shown.append(c);
    }
    // A text in pieces wraps anywhere, so that a piece's end falls at a line's end as rarely
    // as the layout allows; a text of short lines wraps at words as usual.
    setWordWrapMode(m_addedBreaks.empty() ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::WrapAnywhere);
    setPlainText(shown);
}

int LongTextView::textOffset(int position) const
{
    const auto before = std::lower_bound(m_addedBreaks.begin(), m_addedBreaks.end(), position);
    return position - static_cast<int>(before - m_addedBreaks.begin());
}

QString LongTextView::originalText(int from, int to) const
{
    if (m_addedBreaks.empty()) {
        QTextCursor cursor(document());
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        QString text = cursor.selectedText();
        text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
        text.replace(QChar::LineSeparator, QLatin1Char('\n'));
        return text;
    }
    const int start = std::clamp(textOffset(from), 0, static_cast<int>(m_text.size()));
    const int end = std::clamp(textOffset(to), start, static_cast<int>(m_text.size()));
    return m_text.mid(start, end - start);
}

QMimeData *LongTextView::createMimeDataFromSelection() const
{
    const QTextCursor cursor = textCursor();
    auto *data = new QMimeData;
    data->setText(originalText(cursor.selectionStart(), cursor.selectionEnd()));
    return data;
}

} // namespace vellum
