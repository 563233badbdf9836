#pragma once

#include <QWUtilities/qwutilities_export.h>

#include <QObject>

#include <memory>

class QWidget;

/// The panel behind the application's About command. One per System; shown and hidden any number of times. Main thread.
class QWUTILITIES_EXPORT QWAboutPanel : public QObject
{
    Q_OBJECT

public:
    /// The about panel of the current System, made on first use, which shows nothing yet.
    static QWAboutPanel &aboutPanel();

    /// Shows the one about panel, fading in; nothing when it is visible already.
    static void open();

    /// The window goes at once; the System does so.
    ~QWAboutPanel() override;

    /// Fades the panel out, in the event loop; where nothing fades it is gone at once.
    void close();

    /// Opens the manual viewer's legal text, then close()s. The action of a button; @p sender does not matter.
    Q_INVOKABLE void openLegal(QObject *sender);

    /// As openLegal(), with the acknowledgements; @p sender does not matter.
    Q_INVOKABLE void openAcknowledgements(QObject *sender);

    /// Made by the first open(), null before. Not to be deleted.
    QWidget *window() const;

protected:
    /// Only for aboutPanel().
    QWAboutPanel();

private:
    class Private;
    std::unique_ptr<Private> d;
};
