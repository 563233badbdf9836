#pragma once

#include <QObject>
#include <QPointer>

#include <functional>

class QLineEdit;

namespace platform
{

/// Tells when an edit that changed a text field has ended: by Return, Tab or another loss of the keyboard, because the
/// field goes out of sight (another pane, the window closes), or because the application quits. Once for each change; a
/// text that the program set itself is none, and a text that the field's validator refuses is not told. Lives as long
/// as the field.
class EditEnd : public QObject
{
public:
    EditEnd(QLineEdit &field, std::function<void()> ended);

    /// Whatever the user typed so far has been told otherwise.
    void forget();

    /// Sees the field being hidden.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _textEdited(const QString &text);
    void _textChanged(const QString &text);
    void _end();

    QLineEdit &m_field;
    std::function<void()> m_ended;
    QString m_before;      ///< The edit.
    QString m_beforeOther; ///< What m_before was until the program last set a text.
    QString m_typed;
};

} // namespace platform
