#pragma once

#include <QObject>
#include <QString>

class QWidget;

/// Opens a sound file for the user and saves copies of it.
class SoundFiles : public QObject
{
    Q_OBJECT

public:
    explicit SoundFiles(QWidget *window = nullptr);

    Q_INVOKABLE void openSound(QObject *sender); // actions of menu items
    Q_INVOKABLE void saveCopy(QObject *sender);

    bool mayDiscardChanges() const;
    const QString &path() const { return m_path; }

private:
    void _saveTo(const QString &path);

    QWidget *m_window;
    QString m_path;
};
