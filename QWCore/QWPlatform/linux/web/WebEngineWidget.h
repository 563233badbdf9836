#pragma once

#include <QWebEngineView>

namespace platform
{

/// The engine's widget with what a reader needs: a short context menu and zoom by keys.
class WebEngineWidget : public QWebEngineView
{
    Q_OBJECT

public:
    explicit WebEngineWidget(QWidget *parent);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void _addZoomKeys();
    void _zoomBy(qreal factor);
};

} // namespace platform
