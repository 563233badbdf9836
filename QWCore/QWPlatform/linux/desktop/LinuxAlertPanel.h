#pragma once

#include "QWPlatform/appkit/Alerts.h"

#include <QDialog>

#include <optional>

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

    /// Shows the panel above the front window and waits; the index of the button chosen. Where the program ends
    /// meanwhile, escapeButton() or the last one.
    int run();

protected:
    void reject() override; ///< Escape and closing.
    void showEvent(QShowEvent *event) override;

private:
    QVBoxLayout *_makeTexts();
    QHBoxLayout *_makeButtons();
    void _standAbove(QWidget *window);
    void _askResponder();
    void _choose(int button);

    Alert m_alert;
    std::optional<int> m_escapeButton;
    int m_choice = 0; ///< Until one is made, that of a program that ends meanwhile.
};

} // namespace platform
