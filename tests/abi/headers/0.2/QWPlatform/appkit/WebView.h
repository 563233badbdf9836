#pragma once

#include <QWPlatform/qwplatform_export.h>

#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>

class QWidget;

namespace platform
{

/// A browser view. Script is off, page script reaches neither local files nor the network, pages bring no parts from
/// the network unless the owner allows it, and navigation is decided by the policy. Main thread.
class QWPLATFORM_EXPORT WebView : public QObject
{
    Q_OBJECT

public:
    /// Where the view, or a frame of its page, is about to go. A value that policies read, so it stays open.
    struct Navigation
    {
        /// What makes it go.
        enum class Cause
        {
            Owner, ///< load(), loadHtml(), goBack(), goForward(), or a button of the view's own.
            User,  ///< A click on a link of the page.
            Page,  ///< The page itself: a refresh, a redirection, what a frame holds.
        };

        QUrl url;                   ///< Where to.
        Cause cause = Cause::Owner; ///< Why.
        bool isMainFrame = true;    ///< False: it concerns a frame within the page, whatever the cause.

        operator const QUrl &() const { return url; } ///< Most policies look at nothing else.
    };

    /// Asked before each navigation; false: it does not happen. Of a page shown by loadHtml() only the user's clicks
    /// are asked about: it goes nowhere by itself.
    using Policy = std::function<bool(const Navigation &navigation)>;

    ~WebView() override;

    /// The widget to put into a window; owned by the view, unless its parent goes first.
    virtual QWidget *widget() = 0;

    /// Goes to @p url; loadFinished() says how that went.
    virtual void load(const QUrl &url) = 0;

    /// Shows @p html; @p baseUrl may be empty. Such pages carry the scheme "data" when the policy is asked.
    virtual void loadHtml(const QString &html, const QUrl &baseUrl) = 0;

    virtual void goBack() = 0;             ///< To the page before this one, if there is one.
    virtual void goForward() = 0;          ///< To the page from which goBack() came, if there is one.
    virtual bool canGoBack() const = 0;    ///< Whether goBack() leads anywhere.
    virtual bool canGoForward() const = 0; ///< Whether goForward() does.

    /// Asks the user for a printer and prints the page; printFinished() says how that went, unless the user thinks
    /// better of it.
    virtual void print() = 0;

    /// Writes the page, paginated, to @p path without asking; @p done gets whether that succeeded.
    virtual void printToPdf(const QString &path, std::function<void(bool ok)> done) = 0;

    /// From now on @p policy decides; without one everything is allowed.
    virtual void setPolicy(Policy policy) = 0;

    /// Whether pages may bring images, frames, styles and the like from the network: off at first. Remote pages, too,
    /// then come without them.
    virtual void setAllowsRemoteParts(bool allows) = 0;

Q_SIGNALS:
    /// A load ended; @p ok is false when the page could not be shown.
    void loadFinished(bool ok);

    /// The page asked for with print() is with the printer, or, false, could not be printed.
    void printFinished(bool ok);

    /// What canGoBack() and canGoForward() answer may have changed.
    void historyChanged();
};

/// Makes browser views; the engine is loaded with the first one. Main thread.
class QWPLATFORM_EXPORT WebViews
{
public:
    virtual ~WebViews();

    /// A new view whose widget is a child of @p parent. Never null: without the engine, a view that says so.
    virtual std::unique_ptr<WebView> make(QWidget *parent) = 0;
};

} // namespace platform
