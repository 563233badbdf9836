#pragma once

#include <QTextEdit>

namespace platform
{

/// Plain text that the user can select, of a fixed width; wraps anywhere where words are too long, and scrolls when it
/// has more lines than fit.
class LinuxAlertText : public QTextEdit
{
    Q_OBJECT

public:
    LinuxAlertText(const QString &text, const QFont &font, int width, int mostLines, QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override; ///< Return and Escape are the alert's.

private:
    void _fit(int width, int mostLines);
};

} // namespace platform
