#include "BackgroundWork.h"

#include <QCoreApplication>
#include <QDebug>
#include <QMetaObject>
#include <QObject>

#include <list>
#include <system_error>
#include <thread>

namespace platform
{

/// Shared with the threads. The receiver lives on the main thread; results are posted to it.
class Q_DECL_HIDDEN BackgroundWork::Private
{
public:
    struct Piece
    {
        std::thread thread;
    };

    // Main thread only.
    std::list<Piece> pieces;
    bool hasEnded = false;
    QObject receiver; ///< Posted results die with it.
};

namespace
{
std::function<void()> resultOf(const std::function<std::function<void()>()> &work)
{
    try {
        return work();
    } catch (const std::exception &exception) {
        qWarning("Background work ended with an exception: %s", exception.what());
    } catch (...) {
        qWarning("Background work ended with an unknown exception");
    }
    return {};
}
} // namespace

BackgroundWork::BackgroundWork()
    : d(std::make_unique<Private>())
{
}

BackgroundWork::~BackgroundWork()
{
    end();
}

void BackgroundWork::end()
{
    d->hasEnded = true;
    for (Private::Piece &piece : d->pieces)
        if (piece.thread.joinable())
            piece.thread.join();
    QCoreApplication::removePostedEvents(&d->receiver);
    d->pieces.clear();
}

bool BackgroundWork::start(std::function<std::function<void()>()> work)
{
    if (d->hasEnded) {
        qWarning("Background work cannot be started any more");
        return false;
    }
    Private *const state = d.get(); // outlives the threads: the destructor joins them
    state->pieces.emplace_back();
    const auto piece = std::prev(state->pieces.end());
    const auto deliver = [state, piece](const std::function<void()> &result) {
        piece->thread.join();
        state->pieces.erase(piece);
        if (result)
            result();
    };
    try {
        piece->thread = std::thread([state, deliver, work = std::move(work)] {
            QMetaObject::invokeMethod(
                &state->receiver, [deliver, result = resultOf(work)] { deliver(result); }, Qt::QueuedConnection);
        });
    } catch (const std::system_error &error) {
        qWarning("Background work cannot be started: %s", error.what());
        state->pieces.erase(piece);
        return false;
    }
    return true;
}

int BackgroundWork::running() const
{
    return static_cast<int>(d->pieces.size());
}

} // namespace platform
