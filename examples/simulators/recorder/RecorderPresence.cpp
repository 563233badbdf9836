#include "RecorderPresence.h"

#include "RecorderSimulator.h"

RecorderPresence::RecorderPresence(RecorderSimulator &recorder, const RecorderPresenceSettings &settings,
                                   QObject *parent)
    : QObject(parent)
    , m_recorder(recorder)
    , m_settings(settings)
    , m_announcer(settings.where)
    , m_printers(settings.where)
{
    connect(&m_announcer, &ServiceAnnouncer::announced, this, &RecorderPresence::announced);
    connect(&m_announcer, &ServiceAnnouncer::failed, this, &RecorderPresence::failed);
    connect(&recorder, &RecorderSimulator::left, this, &RecorderPresence::_go);
    connect(&m_flapping, &QTimer::timeout, this, &RecorderPresence::_flap);
    if (settings.leavesAfter.count() > 0)
        QTimer::singleShot(settings.leavesAfter, &recorder, &RecorderSimulator::leave);
    if (settings.flaps.count() > 0)
        m_flapping.start(settings.flaps);
    QMetaObject::invokeMethod(this, &RecorderPresence::_begin, Qt::QueuedConnection); // whoever made it listens then
}

void RecorderPresence::_begin()
{
    if (m_settings.printers > 0)
        _announcePrinters();
    _come();
}

void RecorderPresence::_come()
{
    m_isThere = true;
    m_announcer.announce({{m_settings.serviceName, m_recorder.port(), m_settings.resolves}});
}

void RecorderPresence::_go()
{
    m_isThere = false;
    m_flapping.stop();
    m_announcer.announce({});
}

void RecorderPresence::_flap()
{
    if (std::exchange(m_isThere, !m_isThere))
        m_announcer.announce({});
    else
        _come();
}

void RecorderPresence::_announcePrinters()
{
    std::vector<ServiceAnnouncer::Service> printers;
    for (int number = 1; number <= m_settings.printers; ++number)
        printers.push_back({QString("Printer %1").arg(number), m_recorder.port(), true});
    m_printers.announce(printers);
}
