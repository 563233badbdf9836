#include "NewsPage.h"

#include <QWPlatform/System.h>
#include <QWPlatform/appkit/Workspace.h>
#include <QWPlatform/foundation/BackgroundWork.h>
#include <QWPlatform/network/UrlLoader.h>

#include <QPointer>

using platform::System;
using platform::WebView;

NewsPage::NewsPage(QWidget *parent)
    : m_view(System::current().webViews().make(parent))
{
    m_view->setPolicy([](const WebView::Navigation &navigation) {
        if (navigation.cause == WebView::Navigation::Cause::User)
            platform::openUrlOrTell(navigation.url); // links open in the user's browser
        return navigation.cause == WebView::Navigation::Cause::Owner;
    });
}

void NewsPage::load(const QUrl &address)
{
    platform::UrlLoader &loader = System::current().urlLoader(); // the thread must not ask for the current System
    const auto work = [page = QPointer(this), &loader, address]() -> std::function<void()> {
        platform::UrlRequest request;
        request.url = address;
        const platform::UrlResponse response = loader.load(request); // blocks this thread only
        return [page, response] {                                    // on the main thread again
            if (page)
                page->m_view->loadHtml(response.succeeded() ? response.body : response.error.toHtmlEscaped(), {});
        };
    };
    System::current().backgroundWork().start(work);
}
