#pragma once

#include <QObject>

#include <functional>

class QMenu;

/// Sounds that a recorder brings, and whatever else the desktop hands to the host.
class TakeImport : public QObject
{
    Q_OBJECT

public:
    /// Adds the command to @p fileMenu. @p open is given a file's path; false when it is none of the host's.
    TakeImport(QMenu &fileMenu, std::function<bool(const QString &path)> open);

    Q_INVOKABLE void importFromRecorder(QObject *sender);

    /// Asked by the application object, whose delegate this is.
    Q_INVOKABLE bool applicationOpenFile(const QString &path);

private:
    std::function<bool(const QString &path)> m_open;
};
