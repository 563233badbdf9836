#include "LinuxAlertText.h"

#include <QKeyEvent>
#include <QTextDocument>
#include <QTextOption>

#include <cmath>
#include <memory>

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

/// Measured in a document apart: the widget lays its own out for the size that it has now.
void LinuxAlertText::_fit(int width, int mostLines)
{
    const std::unique_ptr<QTextDocument> measured(document()->clone());
    measured->setDefaultFont(font());
    measured->setDefaultTextOption(document()->defaultTextOption());
    measured->setTextWidth(width);
    const int whole = static_cast<int>(std::ceil(measured->size().height()));
    const int most = mostLines * static_cast<int>(std::ceil(QFontMetricsF(font()).lineSpacing()));
    setVerticalScrollBarPolicy(whole > most ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    setFixedSize(width, std::min(whole, most));
}

} // namespace platform
