#pragma once

#include <QIcon>
#include <QObject>

class QLineEdit;

namespace qw
{

/// The search field: tells each change of its text, is reached by Ctrl+F, left downwards, and emptied by Escape.
class RecordingSearch : public QObject
{
    Q_OBJECT

public:
    /// @p field outlives this.
    RecordingSearch(QLineEdit &field, const QIcon &picture);
    ~RecordingSearch() override;

    QString text() const;

    /// Empties the field without telling.
    void clear();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void changed(); ///< By the user.
    void left();    ///< Down or Return: the rows are next.

private:
    bool _take(int key);

    QLineEdit &m_field;
    bool m_isClearing = false;
};

} // namespace qw
