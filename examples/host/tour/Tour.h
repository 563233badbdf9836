#pragma once

#include "TourStep.h"

#include <QDir>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

namespace demo
{

/// Takes the pictures one after the other and ends the application: 0 when all were made, else 1. It also answers the
/// alerts that nobody pictures, with their default button, and tells them.
class Tour : public QObject
{
    Q_OBJECT

public:
    /// From now on alerts are answered, and the splash screen of the launch is watched.
    Tour(DemoApplication &application, const QString &directory);
    ~Tour() override;

    /// To be called when the host's windows are there; begins in the event loop.
    void start(std::vector<std::unique_ptr<TourStep>> steps);

    /// The splash screen as it was while the application launched; null when it never showed.
    const QImage &splashPicture() const { return m_splashPicture; }

    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int _answer(const platform::Alert &alert, QWidget *panel);
    void _pictureSplash();
    void _poll();
    void _beginStep();
    void _endStep(bool made);
    bool _save(const QImage &picture, const QString &name);

    DemoApplication &m_application;
    QDir m_directory;
    std::vector<std::unique_ptr<TourStep>> m_steps;
    size_t m_current = 0;
    bool m_allMade = true;
    bool m_inStep = false; ///< A step runs an event loop of its own.
    QTimer m_timer;
    QElapsedTimer m_sinceBegin;
    QImage m_splashPicture;
    bool m_splashIsTelling = false; ///< That picture shows a plug-in being tried, which is the best there is.
};

} // namespace demo
