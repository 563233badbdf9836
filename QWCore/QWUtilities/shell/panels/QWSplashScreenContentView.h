#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QWidget>

#include <memory>

class QWGradient;

/// The splash screen's content: a rounded panel with its gradient.
class QWUTILITIES_TEST_EXPORT QWSplashScreenContentView : public QWidget
{
    Q_OBJECT

public:
    explicit QWSplashScreenContentView(QWidget *parent = nullptr);
    ~QWSplashScreenContentView() override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::unique_ptr<QWGradient> m_background;
};
