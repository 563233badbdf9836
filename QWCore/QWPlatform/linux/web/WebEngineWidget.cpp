#include "WebEngineWidget.h"

#include "QWPlatform/foundation/Localization.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QShortcut>
#include <QWebEngineHistory>
#include <QWebEnginePage>

#include <algorithm>

namespace platform
{

namespace
{
constexpr qreal zoomStep = 1.1;
constexpr qreal smallestZoom = 0.5;
constexpr qreal largestZoom = 3.0;
} // namespace

WebEngineWidget::WebEngineWidget(QWidget *parent)
    : QWebEngineView(parent)
{
    _addZoomKeys();
}

void WebEngineWidget::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu(this);
    QAction *back = menu.addAction(localized("Back"), this, &QWebEngineView::back);
    QAction *forward = menu.addAction(localized("Forward"), this, &QWebEngineView::forward);
    menu.addSeparator();
    QAction *copy = menu.addAction(localized("Copy"), this, [this] { triggerPageAction(QWebEnginePage::Copy); });
    back->setEnabled(history()->canGoBack());
    forward->setEnabled(history()->canGoForward());
    copy->setEnabled(hasSelection());
    menu.exec(event->globalPos());
}

void WebEngineWidget::_addZoomKeys()
{
    const auto onKeys = [this](const QList<QKeySequence> &keys, auto zoom) {
        for (const QKeySequence &key : keys)
            connect(new QShortcut(key, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut), &QShortcut::activated,
                    this, zoom);
    };
    onKeys(QKeySequence::keyBindings(QKeySequence::ZoomIn), [this] { _zoomBy(zoomStep); });
    onKeys({QKeySequence(Qt::CTRL | Qt::Key_Equal)}, [this] { _zoomBy(zoomStep); });
    onKeys(QKeySequence::keyBindings(QKeySequence::ZoomOut), [this] { _zoomBy(1 / zoomStep); });
    onKeys({QKeySequence(Qt::CTRL | Qt::Key_0)}, [this] { setZoomFactor(1); });
}

void WebEngineWidget::_zoomBy(qreal factor)
{
    setZoomFactor(std::clamp(zoomFactor() * factor, smallestZoom, largestZoom));
}

} // namespace platform
