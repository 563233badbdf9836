#pragma once

#include <QWidget>

class QLabel;

namespace platform
{

/// Covers the page with one sentence and a button that tries again.
class WebEngineMessage : public QWidget
{
    Q_OBJECT

public:
    explicit WebEngineMessage(QWidget *view);

    void showText(const QString &text);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void tryAgain();

private:
    QLabel *m_text;
};

} // namespace platform
