#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QObject>

#include <memory>

class QLabel;
class QWAboutPanelContentView;
class QWButton;
class QWidget;

namespace qw
{
class BorderlessWindow;
}

/// The panel behind the application's About command. One per System; shown and hidden any number of times. Main thread.
class QWUTILITIES_EXPORT QWAboutPanel : public QObject
{
    Q_OBJECT

public:
    static QWAboutPanel &aboutPanel();

    /// Shows the one about panel, fading in.
    static void open();

    ~QWAboutPanel() override;

    /// Fades the panel out, in the event loop; where nothing fades it is gone at once.
    void close();

    Q_INVOKABLE void openLegal(QObject *sender);            ///< The manual viewer's legal text, then close().
    Q_INVOKABLE void openAcknowledgements(QObject *sender); ///< As openLegal(), with the acknowledgements.

    QWidget *window() const; ///< Made by the first open(), null before.

    /// Escape closes.
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    QWAboutPanel();

private:
    void awakeFromNib();
    void _open();
    void _makeWindow();
    void animationDidStopFinished();

    std::unique_ptr<QWidget> m_nib; ///< Holds the view until the window takes it over.
    std::unique_ptr<qw::BorderlessWindow> m_window;
    QWAboutPanelContentView *m_view = nullptr; ///< Null when the interface file is not complete.
    QLabel *m_appNameText = nullptr;
    QLabel *m_versionText = nullptr;
    QLabel *m_buildText = nullptr;
    QLabel *m_additionalText = nullptr;
    QLabel *m_copyrightText = nullptr;
    QWButton *m_legalButton = nullptr;
    QWButton *m_acknowledgementsButton = nullptr;
};
