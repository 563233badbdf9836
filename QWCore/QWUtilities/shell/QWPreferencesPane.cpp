#include "QWPreferencesPane.h"

#include <QWPlatform/System.h>

#include <QLayout>

#include <algorithm>

class Q_DECL_HIDDEN QWPreferencesPane::Private
{
public:
    platform::UserDefaults &defaults;
};

QWPreferencesPane::QWPreferencesPane(QWidget *parent)
    : QWidget(parent)
    , d(new Private{.defaults = platform::System::current().userDefaults()})
{
}

QWPreferencesPane::~QWPreferencesPane() = default;

QString QWPreferencesPane::identifier() const
{
    return {};
}

QString QWPreferencesPane::title() const
{
    return {};
}

QString QWPreferencesPane::tooltip() const
{
    return {};
}

QIcon QWPreferencesPane::image() const
{
    return {};
}

void QWPreferencesPane::paneWillBecomeFront() {}

void QWPreferencesPane::paneDidBecomeFront() {}

void QWPreferencesPane::paneWillResignFront() {}

void QWPreferencesPane::paneDidResignFront() {}

void QWPreferencesPane::updateControls() {}

void QWPreferencesPane::itemChanged(QObject *) {}

/// The user's font may need more room than the one that the pane was drawn with.
QSize QWPreferencesPane::paneSize() const
{
    if (!layout())
        return size();
    const QSize needed = layout()->totalMinimumSize();
    const int width = std::max(this->width(), needed.width());
    const int height = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width) : needed.height();
    return {width, std::max(this->height(), height)};
}

platform::UserDefaults &QWPreferencesPane::defaults() const
{
    return d->defaults;
}
