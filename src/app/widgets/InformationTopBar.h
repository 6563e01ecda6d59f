#pragma once

#include <QWidget>

#include <array>

class QHBoxLayout;
class QToolButton;

namespace vellum {

/// The information pane's types: the strip's buttons, the pages and `selectedType`.
enum InformationType : int { kInfoFile = 0, kInfoTable = 1, kInfoColumn = 2, kInfoIndex = 3, kInfoRelation = 4 };

/// The strip of five image buttons above the information pane; exactly one is on.
class InformationTopBar : public QWidget {
    Q_OBJECT
public:
    explicit InformationTopBar(QWidget *parent = nullptr);

    /// The type whose button is on: 0 to 3, and 4 when none of the first four is on.
    int selectedType() const;
    /// Turns that type's button on and the others off.
    void setSelectedType(int type);
    /// Hides or shows one button (a type above 4 hides nothing), selects `selectType` and lays
    /// the visible buttons out from the left again.
    void setHidden(bool hidden, int type, int selectType);
    bool isHiddenForType(int type) const;
    QToolButton *button(int type) const { return m_buttons[static_cast<std::size_t>(type)]; }

signals:
    /// A button was clicked (the strip's action).
    void informationTypeChanged(int type);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::array<QToolButton *, 5> m_buttons{};
    QHBoxLayout *m_layout;
};

} // namespace vellum
