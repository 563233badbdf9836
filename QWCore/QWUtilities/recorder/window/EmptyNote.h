#pragma once

#include <QIcon>
#include <QWidget>

class QAbstractItemView;

namespace qw
{

/// What an empty list says in its middle: a quiet picture and one sentence, also to a screen reader.
class EmptyNote : public QWidget
{
    Q_OBJECT

public:
    /// Lies over what @p view shows; hidden at first.
    explicit EmptyNote(QAbstractItemView &view);
    ~EmptyNote() override;

    /// Plain text; "" hides it.
    void show(const QIcon &picture, const QString &sentence);
    const QString &sentence() const { return m_sentence; }

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QAbstractItemView &m_view;
    QIcon m_picture;
    QString m_sentence;
};

} // namespace qw
