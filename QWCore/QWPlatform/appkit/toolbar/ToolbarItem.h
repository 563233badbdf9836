#pragma once

#include "QWPlatform/appkit/Selector.h"

#include <QWPlatform/qwplatform_private.h>

#include <QAction>
#include <QPointer>

namespace platform
{

/// An item of a toolbar. Choosing it sends its action with the item as sender.
class QWPLATFORM_SHARED_EXPORT ToolbarItem : public QAction
{
    Q_OBJECT

public:
    explicit ToolbarItem(const QString &identifier, QObject *parent = nullptr);
    ~ToolbarItem() override;

    const QString &itemIdentifier() const { return m_identifier; }

    /// Below the image, or its name where only images show.
    const QString &label() const { return m_label; }
    void setLabel(const QString &label);

    /// In the customization panel; the label when empty.
    QString paletteLabel() const { return m_paletteLabel.isEmpty() ? m_label : m_paletteLabel; }
    void setPaletteLabel(const QString &label) { m_paletteLabel = label; }

    /// See tintedIcon() for images that follow the text colour.
    void setImage(const QIcon &image) { setIcon(image); }

    const Selector &action() const { return m_action; }
    void setAction(const Selector &action) { m_action = action; }

    /// Null: the responder chain finds the receiver. Not owned.
    QObject *target() const { return m_target; }
    void setTarget(QObject *target) { m_target = target; }

private:
    QString m_identifier;
    QString m_label;
    QString m_paletteLabel;
    Selector m_action;
    QPointer<QObject> m_target;
};

} // namespace platform
