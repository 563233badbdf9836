#pragma once

#include <QImage>

#include <optional>

class QWidget;

namespace platform
{
struct Alert;
}

namespace demo
{

class DemoApplication;

/// One picture of the tour: opens something, waits until it shows what it should, and closes it again.
class TourStep
{
public:
    virtual ~TourStep();

    /// Name of the picture, without extension.
    virtual QString name() const = 0;

    virtual void begin(DemoApplication &) {}

    /// Asked from the event loop, again and again, until there is one. May run event loops of its own.
    virtual std::optional<QImage> picture(DemoApplication &application) = 0;

    /// True when there will be no picture, however long one waits.
    virtual bool hasFailed() const { return false; }

    virtual void end(DemoApplication &) {}

    /// While the step is on, each alert comes here, with its panel on the screen; true: the step has pictured it.
    virtual bool takesAlert(const platform::Alert &, QWidget &) { return false; }
};

} // namespace demo
