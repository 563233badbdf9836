#pragma once

#include "TourStep.h"

namespace demo
{

/// One window that is opened and left alone until it has come to rest: until it is fully opaque and several pictures in
/// a row are the same. Pages are painted by another process, so a single look says nothing.
class WindowStep : public TourStep
{
public:
    struct Window
    {
        const char *name;
        void (*open)(DemoApplication &application); ///< Null: it is open already.
        QWidget *(*window)(DemoApplication &application);
        void (*close)(DemoApplication &application); ///< Null: it stays open.
        bool onBackdrop = false;                     ///< For windows whose corners are round.
    };

    explicit WindowStep(const Window &window);

    QString name() const override { return QString::fromLatin1(m_window.name); }
    void begin(DemoApplication &application) override;
    std::optional<QImage> picture(DemoApplication &application) override;
    void end(DemoApplication &application) override;

private:
    Window m_window;
    QImage m_last;
    int m_alike = 0;
};

} // namespace demo
