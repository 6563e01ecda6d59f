#pragma once

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace vellum {

/// Asks for the password of an encrypted database: a message line, a password field without
/// echo, "Remember for this session", OK and Cancel. Shown window-modal on the main window.
class PasswordDialog : public QDialog {
    Q_OBJECT
public:
    explicit PasswordDialog(QWidget *parent);

    /// The line above the field: why a password is asked for (needed, or the last one was wrong).
    void setMessage(const QString &message);
    QString message() const;
    /// What was typed (UTF-8 is what the reader takes).
    QString password() const;
    /// Whether the password should be kept until the program ends.
    bool remember() const;

    QLineEdit *passwordField() const { return m_field; }
    QCheckBox *rememberBox() const { return m_remember; }

private:
    QLabel *m_message;
    QLineEdit *m_field;
    QCheckBox *m_remember;
};

} // namespace vellum
