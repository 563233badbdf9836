#include "WebEngineMessage.h"

#include "QWPlatform/foundation/Localization.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace platform
{

WebEngineMessage::WebEngineMessage(QWidget *view)
    : QWidget(view)
    , m_text(new QLabel(this))
{
    auto *again = new QPushButton(localized("Try Again"), this);
    auto *column = new QVBoxLayout(this);
    column->addStretch(2);
    column->addWidget(m_text);
    column->addSpacing(12);
    column->addWidget(again, 0, Qt::AlignHCenter);
    column->addStretch(3);
    m_text->setAlignment(Qt::AlignCenter);
    m_text->setWordWrap(true);
    setObjectName("message");
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    view->installEventFilter(this);
    connect(again, &QPushButton::clicked, this, &WebEngineMessage::tryAgain);
    hide();
}

void WebEngineMessage::showText(const QString &text)
{
    m_text->setText(text);
    setGeometry(parentWidget()->rect());
    raise();
    show();
}

bool WebEngineMessage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

} // namespace platform
