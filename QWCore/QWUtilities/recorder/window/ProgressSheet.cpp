#include "ProgressSheet.h"

#include "BrowserOutlets.h"
#include "BrowserTexts.h"
#include "ProgressPanel.h"

#include <QWPlatform/appkit/Panel.h>
#include <QWPlatform/appkit/windows/Sheet.h>

#include <QAccessible>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>

namespace qw
{

namespace
{
constexpr int longestTitle = 120;   ///< Characters, in the list of what failed.
constexpr int longestFailure = 280; ///< Characters, in the line.
constexpr int failureBeginning = 80;

enum Page
{
    ProgressPage,
    FailuresPage
};

void setTextOf(QLabel *label, const QString &text)
{
    if (label)
        label->setText(text);
}

void announceText(QWidget &label)
{
    QAccessibleEvent event(&label, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

/// A long title is at the beginning, the reason at the end.
QString shortenedFailure(const QString &line)
{
    if (line.size() <= longestFailure)
        return line;
    return QString(line.left(failureBeginning) + QChar(0x2026) + line.right(longestFailure - failureBeginning));
}

QString lineOf(const FailedDownload &failure)
{
    const QString title = failure.recording->title().simplified();
    const QString shown = title.size() > longestTitle ? title.left(longestTitle - 1) + QChar(0x2026) : title;
    return QString(shown + " – " + failure.reason.simplified());
}
} // namespace

ProgressSheet::ProgressSheet(const BrowserOutlets &outlets)
    : m_outlets(outlets)
{
}

void ProgressSheet::begin()
{
    _showProgress();
    platform::beginSheet(*m_outlets.progressPanel, m_outlets.window);
}

void ProgressSheet::end()
{
    platform::endSheet(*m_outlets.progressPanel);
}

void ProgressSheet::setText(const QString &text)
{
    _showProgress();
    m_outlets.progressText->setText(text);
}

void ProgressSheet::setProgress(double fraction)
{
    QProgressBar &bar = *m_outlets.progressBar;
    bar.setValue(bar.minimum() + qRound(fraction * (bar.maximum() - bar.minimum())));
}

void ProgressSheet::setDetails(const DownloadProgress &progress)
{
    setTextOf(m_outlets.progressDetails, progressText(progress));
}

void ProgressSheet::showFailure(const QString &line)
{
    QLabel &label = m_outlets.failureText ? *m_outlets.failureText : *m_outlets.progressText;
    setTextOf(m_outlets.progressDetails, {}); // nothing comes any more
    if (m_outlets.stopButton)
        m_outlets.stopButton->setEnabled(false); // would do nothing
    label.setText(shortenedFailure(line));
    announceText(label);
}

void ProgressSheet::showFailures(const std::vector<FailedDownload> &failures)
{
    if (!m_outlets.failuresList || !m_outlets.progressPages) {
        showFailure(lineOf(failures.front()));
        return;
    }
    QListWidget &list = *m_outlets.failuresList;
    list.clear();
    for (const FailedDownload &failure : failures)
        list.addItem(lineOf(failure));
    list.setCurrentRow(0);
    m_outlets.progressPages->setCurrentIndex(FailuresPage);
    if (m_outlets.tryAgainButton)
        m_outlets.tryAgainButton->setFocus(Qt::OtherFocusReason);
    announceText(list);
}

void ProgressSheet::_showProgress()
{
    if (m_outlets.progressPages)
        m_outlets.progressPages->setCurrentIndex(ProgressPage);
    setTextOf(m_outlets.progressDetails, {});
    setTextOf(m_outlets.failureText, {});
    if (m_outlets.stopButton)
        m_outlets.stopButton->setEnabled(true);
}

} // namespace qw
