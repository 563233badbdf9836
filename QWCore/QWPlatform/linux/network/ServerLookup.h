#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QObject>

#include <memory>

class QNetworkProxy;
class QUrl;

namespace platform
{

/// Finds out what must be known before a server can be spoken to: which proxy leads to it, and whether the name of
/// whoever is called first is known. Both are asked on a thread that nobody waits for: neither the desktop's settings
/// nor the resolver can be interrupted, and where no name server answers they take far longer than a user who quits.
class QWPLATFORM_TEST_EXPORT ServerLookup : public QObject
{
    Q_OBJECT

public:
    ServerLookup();
    ~ServerLookup() override; ///< Nobody hears the answer any more.

    /// Asks for the server of @p url. One answer comes, from the event loop of this object's thread; a question that
    /// is still open is forgotten.
    void start(const QUrl &url);

    /// Forgets the question.
    void cancel();

Q_SIGNALS:
    void found(const QNetworkProxy &proxy);
    void failed(); ///< The name is not known.

private:
    struct Answer;

    void _take(const std::shared_ptr<Answer> &answer);

    std::shared_ptr<Answer> m_answer; ///< Shared with the thread; null while nothing is asked.
};

} // namespace platform
