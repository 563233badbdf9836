#pragma once

#include <QWPlatform/qwplatform_private.h>

#include <QFileIconProvider>

namespace platform
{

/// What files look like and are called, by their names alone. Qt's own provider looks into files whose names say
/// nothing, and those of the kernel may never end or never answer.
class QWPLATFORM_TEST_EXPORT FileNameIcons : public QFileIconProvider
{
public:
    QIcon icon(IconType type) const override;
    QIcon icon(const QFileInfo &file) const override;
    QString type(const QFileInfo &file) const override;
};

} // namespace platform
