#pragma once

#include <QLabel>
#include <QStringList>

class QWShortcutKey;

namespace qw
{

/// The well that shows a captured key, large. Its text is the key's display string.
class KeycapLabel : public QLabel
{
    Q_OBJECT

public:
    explicit KeycapLabel(QWidget *parent = nullptr);
    ~KeycapLabel() override;

    void setKey(const QWShortcutKey &key);

    /// How much of the time has passed for which a key is to be held, 0 to 1; drawn along the lower edge.
    void setProgress(double progress);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void _paintWell(QPainter &painter) const;
    void _paintProgress(QPainter &painter) const;

    QStringList m_texts;
    double m_progress = 0;
};

} // namespace qw
