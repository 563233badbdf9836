#include "RecorderTake.h"

QVariantMap RecorderTake::listEntry() const
{
    return {{"title", title},
            {"filename", filename},
            {"creationDate", creationDate},
            {"modificationDate", modificationDate},
            {"fileSize", fileSize},
            {"length", length},
            {"channels", channels},
            {"quality", quality},
            {"formats", formats},
            {"locked", locked},
            {"keywords", keywords}};
}

QByteArray RecorderTake::text() const
{
    const std::pair<const char *, QString> lines[] = {
        {"Title", title},
        {"Created", creationDate.toString(Qt::ISODate)},
        {"Modified", modificationDate.toString(Qt::ISODate)},
        {"Size", QString("%1 bytes").arg(fileSize)},
        {"Length", QString("%1 s").arg(length, 0, 'f', 3)},
        {"Channels", QString::number(channels)},
        {"Keywords", keywords},
    };
    QString text;
    for (const auto &[name, value] : lines)
        text += QString("%1: %2\n").arg(name, value);
    return text.toUtf8();
}
