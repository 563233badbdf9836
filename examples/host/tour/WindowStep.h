#pragma once

#include "TourStep.h"

#include <QObject>

namespace platform
{
class WebView;
}

namespace demo
{

/// One window that is opened and left alone until it has come to rest: until it is fully opaque and several pictures in
/// a row are the same. A window that was open before must have changed. Pages are painted by another process, so they
/// must also be loaded and show something.
class WindowStep : public TourStep
{
public:
    struct Window
    {
        const char *name;
        void (*open)(DemoApplication &application); ///< Null: it is open already.
        QWidget *(*window)(DemoApplication &application);
        void (*close)(DemoApplication &application) = nullptr;              ///< Null: it stays open.
        bool onBackdrop = false;                                            ///< For windows whose corners are round.
        platform::WebView *(*page)(DemoApplication &application) = nullptr; ///< Null: the window shows no page.
        QWidget *(*sheet)(DemoApplication &application) = nullptr;          ///< Null: no sheet stands before it.
    };

    explicit WindowStep(const Window &window);

    QString name() const override { return QString::fromLatin1(m_window.name); }
    void begin(DemoApplication &application) override;
    std::optional<QImage> picture(DemoApplication &application) override;
    void end(DemoApplication &application) override;

private:
    QImage _look(DemoApplication &application) const;
    bool _isReady(DemoApplication &application) const;

    Window m_window;
    QObject m_receiver; ///< Of the page's signal; goes with the step.
    bool m_pageLoaded = false;
    QImage m_before; ///< The window as it was when the step began; null when it was not open.
    QImage m_last;
    int m_alike = 0;
};

} // namespace demo
