#pragma once

#include <QScrollArea>

class QButtonGroup;
class QHBoxLayout;
class QPushButton;

namespace demo
{

class AudioDocument;

/// The source and the plug-ins that it went through, left to right, and the button for the next one.
class ChainStrip : public QScrollArea
{
    Q_OBJECT

public:
    explicit ChainStrip(QWidget *parent = nullptr);

    /// Rebuilds the strip; station 0 is the source, 1 the first step.
    void show(const AudioDocument &document, int station);

    /// The button at the end; the owner gives it its menu.
    QPushButton *addButton() const { return m_add; }

    QSize sizeHint() const override;

Q_SIGNALS:
    void stationChosen(int station);

protected:
    void changeEvent(QEvent *event) override; ///< The arrows take the text's colour.
    void resizeEvent(QResizeEvent *event) override;

private:
    void _clear();
    void _place();
    void _bringIntoView();
    void _addChip(const QString &icon, const QString &title, const QString &note);

    QWidget *m_row;
    QHBoxLayout *m_layout;
    QButtonGroup *m_group;
    QPushButton *m_add;
};

} // namespace demo
