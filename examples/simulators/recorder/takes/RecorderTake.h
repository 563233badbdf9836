#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// What a made-up take's sound is made of, and in which form it is kept.
struct MadeUpSound
{
    quint32 seed = 0;
    int rate = 44100; ///< In Hz.
    int bits = 16;    ///< 16 or 24.
    qint64 frames = 0;
};

/// A take on the recorder.
struct RecorderTake
{
    QString title;
    QString filename; ///< How requests name it: letters, digits and "-".
    QDateTime creationDate;
    QDateTime modificationDate;
    qint64 fileSize = 0; ///< In bytes.
    double length = 0;   ///< In seconds.
    int channels = 2;
    int quality = 0;     ///< 0 high, 1 medium, 2 low.
    QStringList formats; ///< Codes of the compressed ones in which it can be had.
    bool locked = false;
    QString keywords;

    QString soundFile;  ///< Path of the user's file; "" for a made-up sound.
    MadeUpSound madeUp; ///< What counts without one.

    /// As it stands in the recorder's list.
    QVariantMap listEntry() const;

    /// For people, a line for each thing that is known.
    QByteArray text() const;
};
