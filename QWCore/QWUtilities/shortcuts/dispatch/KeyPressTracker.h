#pragma once

#include <QtGlobal>

class QKeyEvent;
class QObject;

namespace qw
{

/// One press of a key comes by several times: as ShortcutOverride to the window and to the focus widget, as KeyPress to
/// both, and again when a widget hands it on; sent by a program, the KeyPress may come first and hold a
/// ShortcutOverride of its own. Tells the first sight of a press from the others, and remembers what became of it.
class KeyPressTracker
{
public:
    enum class Sight
    {
        First,    ///< To be judged now.
        Declined, ///< Of a press, or release, that took its ordinary way.
        Consumed  ///< Of a press that must reach nobody.
    };

    /// For each ShortcutOverride, KeyPress and KeyRelease of the process, before anybody gets it.
    Sight see(const QObject &receiver, const QKeyEvent &event);

    /// What became of a First sight. Other keys may have come by meanwhile, in a loop that judging ran.
    void judged(const QObject &receiver, const QKeyEvent &event, bool consumed);

private:
    Sight _seeOverride(const QObject &receiver);
    Sight _seePress(const QObject &receiver, const QKeyEvent &event);
    Sight _seeRelease(const QObject &receiver, const QKeyEvent &event);
    bool _isSameKey(const QKeyEvent &event) const;

    int m_type = 0; ///< Of the event that was judged; 0: none is remembered.
    int m_key = 0;
    quint64 m_timestamp = 0;
    const QObject *m_receiver = nullptr;      ///< Only compared.
    const QObject *m_pressReceiver = nullptr; ///< Of the first KeyPress since, or null.
    bool m_isConsumed = false;
};

} // namespace qw
