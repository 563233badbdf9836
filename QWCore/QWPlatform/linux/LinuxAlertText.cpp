#include "LinuxAlertText.h"

#include <QKeyEvent>
#include <QTextOption>

#include <cmath>

namespace platform
{

LinuxAlertText::LinuxAlertText(const QString &text, const QFont &font, int width, int mostLines, QWidget *parent)
    : QTextEdit(parent)
{
    setFont(font);
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::ClickFocus);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    setPlainText(text);
    setAccessibleName(text);
    _fit(width, mostLines);
}

void LinuxAlertText::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape)
        event->ignore();
    else
        QTextEdit::keyPressEvent(event);
}

void LinuxAlertText::_fit(int width, int mostLines)
{
    document()->setTextWidth(width);
    const int whole = static_cast<int>(std::ceil(document()->size().height()));
    const int most = mostLines * fontMetrics().lineSpacing();
    setVerticalScrollBarPolicy(whole > most ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    setFixedSize(width, std::min(whole, most));
}

} // namespace platform
