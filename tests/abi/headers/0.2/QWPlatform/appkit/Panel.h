#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QWidget>

namespace platform
{

/// An auxiliary window. A floating one stays above the windows of the application and leaves shortcuts working.
/// Main thread.
class QWPLATFORM_EXPORT Panel : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool floating READ isFloating WRITE setFloating) ///< isFloating()

public:
    /// Hidden, and not floating. Above @p parent when there is one, which owns it.
    explicit Panel(QWidget *parent = nullptr);
    ~Panel() override;

    /// Whether it stays above the windows of the application.
    bool isFloating() const;

    /// Changing it hides a visible panel, as for every change of window flags.
    void setFloating(bool floating);

Q_SIGNALS:
    /// The user or the program closed the panel, which is still visible.
    void willClose();

protected:
    void closeEvent(QCloseEvent *event) override;  ///< Tells willClose().
    void keyPressEvent(QKeyEvent *event) override; ///< Escape closes.
};

/// True for a Panel and every QDialog.
QWPLATFORM_EXPORT bool isPanel(const QWidget *window);

/// True for a panel that floats.
QWPLATFORM_EXPORT bool isFloatingPanel(const QWidget *window);

/// True for a save or open panel.
QWPLATFORM_EXPORT bool isFilePanel(const QWidget *window);

} // namespace platform
