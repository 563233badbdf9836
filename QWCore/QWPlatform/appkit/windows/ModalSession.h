#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QPointer>
#include <QWidget>

namespace platform
{

/// An application-modal panel during a piece of work: run() now and then lets the user's events through. Main thread.
/// Sessions nest; the innermost is the one that runs.
class QWPLATFORM_TEST_EXPORT ModalSession
{
public:
    static constexpr int Stopped = -1000;
    static constexpr int Aborted = -1001;
    static constexpr int Continues = -1002;

    /// Shows @p panel, which is not owned and may go during the session.
    explicit ModalSession(QWidget &panel);

    /// Hides the panel.
    ~ModalSession();
    ModalSession(const ModalSession &) = delete;
    ModalSession &operator=(const ModalSession &) = delete;

    /// Handles pending events, for about 10 ms at most, and says how the session stands: Continues, or the code it was
    /// stopped with. A panel that the user closed gives Aborted.
    int run();

    /// Ends the innermost session with @p code; nothing when there is none.
    static void stopModal(int code = Stopped);

private:
    QPointer<QWidget> m_panel;
    ModalSession *m_outer;
    int m_code = Continues;
    Qt::WindowModality m_modality; ///< Before the session.
};

} // namespace platform
