#pragma once

#include <QVariantList>

/// The sounds opened last, newest first. They can be carried to another machine.
class RecentSounds
{
public:
    RecentSounds();

    void add(const QString &path);
    QVariantList all() const;

    bool exportTo(const QString &path) const;
    bool importFrom(const QString &path);
};
