#pragma once

#include <QMainWindow>
#include <QMenu>

#include <memory>
#include <vector>

class HostWindow : public QMainWindow
{
    Q_OBJECT

public:
    HostWindow();

    void addEffects(std::unique_ptr<QMenu> catalog);

    // Actions: a shortcut, a menu item and the wheel find them along the responder chain.
    Q_INVOKABLE void changeGain(QObject *sender); // its tag is the decibels
    Q_INVOKABLE void togglePlayback(QObject *sender);
    Q_INVOKABLE void zoom(double lines);
    Q_INVOKABLE bool validateMenuItem(QAction *item); // false: the item is grey

protected:
    void wheelEvent(QWheelEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    QMenu *m_effects;
    std::vector<std::unique_ptr<QMenu>> m_catalogs; // own the items that m_effects shows
    int m_decibels = 0;
    bool m_isPlaying = false;
};
