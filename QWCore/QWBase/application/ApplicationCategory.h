#pragma once

class QEvent;
class QObject;
class QString;
class QWApplication;

namespace qw
{

/// What a library above adds to the application object. Every hook may be null; none may throw on purpose, but one
/// that does costs nothing more than itself.
struct ApplicationCategory
{
    const char *name; ///< For messages; a literal.

    /// Once, at the end of QWApplication's constructor, when a host's own virtuals do not answer yet.
    void (*init)(QWApplication &application) = nullptr;

    /// Around the launch work of the host and of the categories after this one. The second runs when that work ended
    /// in any way, by an exception too, if the first was reached; the first sees virtuals of the host.
    void (*willFinishLaunching)(QWApplication &application) = nullptr;
    void (*didFinishLaunching)(QWApplication &application) = nullptr;

    /// Sees every event before its receiver; true takes it away. Called for each event of the process, in any thread
    /// that delivers events: tell by the type first, and within nanoseconds.
    bool (*sendEvent)(QWApplication &application, QObject *receiver, QEvent *event) = nullptr;

    /// An exception left the handling of an event and was logged; @p reason is its text. Main thread.
    void (*exceptionLeftEvent)(QWApplication &application, const QString &reason) = nullptr;
};

} // namespace qw
