#include "app/widgets/InformationTopBar.h"

#include "app/support/applicationSetup.h"
#include "app/support/qtStrings.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace vellum {

InformationTopBar::InformationTopBar(QWidget *parent) : QWidget(parent), m_layout(new QHBoxLayout(this))
{
    m_layout->setContentsMargins(4, 2, 4, 2);
    m_layout->setSpacing(2);
    static const char *const images[] = {"InfoView_File", "InfoView_Table", "InfoView_Column", "InfoView_Index",
                                         "InfoView_Relation"};
    static const char *const tips[] = {"File", "Table", "Column", "Index", "Relation"};
    static const char *const names[] = {"btnFile", "btnTable", "btnColumn", "btnIndex", "btnRelation"};
    for (int type = 0; type < 5; ++type) {
        auto *button = new QToolButton(this);
        button->setObjectName(names[type]);
        button->setIcon(namedIcon(images[type]));
        button->setIconSize(QSize(20, 20));
        button->setToolTip(localizedQ(tips[type]));
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QToolButton::clicked, this, [this, type] {
            setSelectedType(type);
            emit informationTypeChanged(type);
        });
        m_buttons[static_cast<std::size_t>(type)] = button;
        m_layout->addWidget(button);
    }
    m_layout->addStretch(1);
    setFixedHeight(30);
    setSelectedType(kInfoFile);
}

int InformationTopBar::selectedType() const
{
    for (int type = 0; type < 4; ++type)
        if (m_buttons[static_cast<std::size_t>(type)]->isChecked())
            return type;
    return kInfoRelation;
}

void InformationTopBar::setSelectedType(int type)
{
    for (int i = 0; i < 5; ++i)
        m_buttons[static_cast<std::size_t>(i)]->setChecked(i == type);
}

void InformationTopBar::setHidden(bool hidden, int type, int selectType)
{
    if (type >= 0 && type <= 4)
        m_buttons[static_cast<std::size_t>(type)]->setVisible(!hidden);
    setSelectedType(selectType);
    // Hidden buttons take no room in the layout: the visible ones stay packed from the left.
}

bool InformationTopBar::isHiddenForType(int type) const
{
    if (type < 0 || type > 4)
        return false;
    return m_buttons[static_cast<std::size_t>(type)]->isHidden();
}

void InformationTopBar::paintEvent(QPaintEvent *)
{
    paintBarBackground(this, QColor(0xf6, 0xf6, 0xf6), QColor(0xde, 0xde, 0xde));
}

} // namespace vellum
