#pragma once

#include <QWUtilities/controllers/QWRemoteControlListener.h>

#include <QTimer>
#include <QWidget>

#include <array>

namespace demo
{

/// The six buttons of the infrared remote; the ones that are pressed light up. It listens while it shows and is
/// enabled.
class RemoteMonitor : public QWidget, public QWRemoteControlListener
{
    Q_OBJECT

public:
    explicit RemoteMonitor(QWidget *parent = nullptr);
    ~RemoteMonitor() override;

    QSize sizeHint() const override { return {320, 56}; }

    void remoteControlButtonDown(QWRemoteControl &remoteControl, unsigned button) override;
    void remoteControlButtonUp(QWRemoteControl &remoteControl, unsigned button) override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void _listen();
    void _followReceiver();
    QString _status() const;

    bool m_listens = false;
    bool m_wasActive = false;
    QTimer m_refresh;
    std::array<bool, 6> m_lit{};
    QTimer m_fade; ///< A press is too short to be seen, and a hold may have no end.
};

} // namespace demo
