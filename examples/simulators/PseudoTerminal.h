#pragma once

#include <QByteArray>
#include <QString>

/// A pseudo-terminal under a name of its own: what opens the name has a serial line, the other end of which is here.
class PseudoTerminal
{
public:
    /// Puts @p link in the place of whatever link was there; the folder is made.
    explicit PseudoTerminal(QString link);

    /// Hangs up and takes the link away.
    ~PseudoTerminal();

    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    /// False when the terminal or its link could not be made.
    bool isOpen() const { return m_isOpen; }

    const QString &link() const { return m_link; }

    /// To be waited on for what the other side sends. While the other side is closed it is ready all the time.
    int file() const { return m_file; }

    /// Whether somebody has the line open.
    bool hasPeer() const;

    /// What was sent and not yet read; "" when nothing was.
    QByteArray read() const;

    /// False when the line did not take all of it.
    bool write(const QByteArray &bytes) const;

private:
    bool _open();
    bool _makeLink(const QByteArray &target);

    const QString m_link;
    int m_file = -1;
    bool m_isOpen = false;
};
