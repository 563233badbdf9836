#include "ModalSession.h"

#include <QCoreApplication>

#include <utility>

namespace platform
{

namespace
{
constexpr int longestPass = 10; // milliseconds

ModalSession *innermost = nullptr;

/// A window's modality counts from when it is shown.
void showWithModality(QWidget &panel, Qt::WindowModality modality)
{
    panel.hide();
    panel.setWindowModality(modality);
    panel.show();
}
} // namespace

ModalSession::ModalSession(QWidget &panel)
    : m_panel(&panel)
    , m_outer(std::exchange(innermost, this))
    , m_modality(panel.windowModality())
{
    showWithModality(panel, Qt::ApplicationModal);
}

ModalSession::~ModalSession()
{
    innermost = m_outer;
    if (!m_panel)
        return;
    m_panel->hide();
    m_panel->setWindowModality(m_modality);
}

int ModalSession::run()
{
    if (m_code == Continues)
        QCoreApplication::processEvents(QEventLoop::AllEvents, longestPass);
    if (m_code == Continues && (!m_panel || !m_panel->isVisible()))
        m_code = Aborted;
    return m_code;
}

void ModalSession::stopModal(int code)
{
    if (innermost)
        innermost->m_code = code;
}

} // namespace platform
