#pragma once

#include <QAbstractButton>

namespace demo
{

/// One station of the chain: an icon, a name and a quiet line below it. Checked when the waveforms show it.
class ChainChip : public QAbstractButton
{
    Q_OBJECT

public:
    ChainChip(QString iconName, const QString &title, QString note, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QFont _noteFont() const;
    void _paintWords(QPainter &painter, const QColor &ink) const;

    QString m_iconName;
    QString m_note;
};

} // namespace demo
