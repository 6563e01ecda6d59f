#include "app/widgets/PasswordDialog.h"

#include "app/support/qtStrings.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace vellum {

PasswordDialog::PasswordDialog(QWidget *parent)
    : QDialog(parent), m_message(new QLabel(this)), m_field(new QLineEdit(this)),
      m_remember(new QCheckBox(localizedQ("Remember for this session"), this))
{
    setWindowTitle(localizedQ("Password"));
    setObjectName("passwordDialog");
    m_message->setWordWrap(true);
    m_message->setObjectName("passwordMessage");
    m_field->setEchoMode(QLineEdit::Password);
    m_field->setObjectName("passwordField");
    m_remember->setObjectName("rememberPassword");
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_message);
    layout->addWidget(m_field);
    layout->addWidget(m_remember);
    layout->addWidget(buttons);
    setMinimumWidth(360);
    m_field->setFocus();
}

void PasswordDialog::setMessage(const QString &message)
{
    m_message->setText(message);
}

QString PasswordDialog::message() const
{
    return m_message->text();
}

QString PasswordDialog::password() const
{
    return m_field->text();
}

bool PasswordDialog::remember() const
{
    return m_remember->isChecked();
}

} // namespace vellum
