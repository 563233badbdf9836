#pragma once

#include "../appkit/Alerts.h"

#include <QDialog>

class QHBoxLayout;
class QVBoxLayout;

namespace platform
{

/// The window of one alert: icon, message, informative text, buttons with the default one rightmost.
class LinuxAlertPanel : public QDialog
{
    Q_OBJECT

public:
    explicit LinuxAlertPanel(const Alert &alert);

    /// Shows the panel above the front window and waits; the index of the button chosen.
    int run();

protected:
    void reject() override; ///< Escape and closing choose the last button.
    void showEvent(QShowEvent *event) override;

private:
    QVBoxLayout *_makeTexts();
    QHBoxLayout *_makeButtons();
    void _standAbove(QWidget *window);
    void _askResponder();

    Alert m_alert;
};

} // namespace platform
