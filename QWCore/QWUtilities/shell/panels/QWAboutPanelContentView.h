#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QWidget>

#include <memory>

class QWGradient;

/// The about panel's content: a rounded panel with its gradient and a line above the buttons. A click anywhere on it
/// closes the panel.
class QWUTILITIES_TEST_EXPORT QWAboutPanelContentView : public QWidget
{
    Q_OBJECT

public:
    explicit QWAboutPanelContentView(QWidget *parent = nullptr);
    ~QWAboutPanelContentView() override;

protected:
    void mousePressEvent(QMouseEvent *event) override; ///< mouseDown:
    void paintEvent(QPaintEvent *event) override;

private:
    std::unique_ptr<QWGradient> m_background;
};
