#pragma once

#include <QWPlatform/appkit/WebView.h>

#include <QObject>

#include <memory>

/// Shows a page of news that is loaded in the background.
class NewsPage : public QObject
{
    Q_OBJECT

public:
    explicit NewsPage(QWidget *parent);

    void load(const QUrl &address);
    platform::WebView &view() { return *m_view; }

private:
    std::unique_ptr<platform::WebView> m_view;
};
