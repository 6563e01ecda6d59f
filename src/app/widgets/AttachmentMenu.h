#pragma once

#include <QMenu>

namespace vellum {

class TOrbComplexValue;

/// The menu a double click on an attachment cell offers: for each file, open it with the
/// desktop's default application (pictures and file types on the safe list only, as for OLE
/// Object cells) and save it under its stored file name. The value must outlive the menu.
class AttachmentMenu : public QMenu {
    Q_OBJECT
public:
    AttachmentMenu(const TOrbComplexValue &value, QWidget *parent = nullptr);

    /// Where a file is saved: asks the user, proposing the stored file name in `folder`.
    /// Replaced by tests, which cannot answer a dialog.
    using SaveTarget = QString (*)(QWidget *parent, const QString &proposed);
    void setSaveTarget(SaveTarget target) { m_saveTarget = target; }

    /// Writes the attachment at `index` to a path the save target gives; false when none was
    /// given or the file could not be written.
    bool saveAttachment(int index);

private:
    const TOrbComplexValue &m_value;
    SaveTarget m_saveTarget;
};

} // namespace vellum
