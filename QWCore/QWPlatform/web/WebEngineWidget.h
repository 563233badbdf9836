#pragma once

#include <QWebEngineView>

namespace platform {

/// The engine's widget with what a reader needs: a short context menu, zoom by keys, the palette's background.
class WebEngineWidget : public QWebEngineView
{
    Q_OBJECT

public:
    explicit WebEngineWidget(QWidget *parent);

    /// Takes the background of pages that have none from the palette; again when the palette changes.
    void followPalette();

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void _addZoomKeys();
    void _zoomBy(qreal factor);
};

} // namespace platform
