#pragma once

#include <QObject>

class QIcon;
class QLineEdit;

namespace qw
{

/// Wires the field in which shortcuts are searched. The platform's key for finding leads there, Down leads out into the
/// list, and Escape ends the search before it closes the window.
class ShortcutSearch : public QObject
{
    Q_OBJECT

public:
    /// @p field is not owned and outlives this.
    ShortcutSearch(QLineEdit &field, const QIcon &icon);
    ~ShortcutSearch() override;

    QString text() const;

    /// Without changed(): whoever clears it lists everything anew.
    void clear();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void changed();
    void left(); ///< Towards the list.

private:
    bool _take(int key);

    QLineEdit &m_field;
    bool m_isClearing = false;
};

} // namespace qw
