#pragma once

#include <QWUtilities/qwutilities_private.h>

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

class QWVeskRecording;

namespace qw
{

/// What a list of takes is searched and sorted by, made where the list is read and laid out one after the other: a
/// search goes through all keywords at one stretch. Stays as it is once made, any thread may read.
class QWUTILITIES_TEST_EXPORT RecordingKeys
{
public:
    using Recordings = std::vector<std::shared_ptr<QWVeskRecording>>;

    RecordingKeys();
    /// What has been stopped is not whole and of no use; @p isStopped is asked now and then.
    explicit RecordingKeys(const Recordings &recordings, const std::function<bool()> &isStopped = {});

    /// How @p text compares where neither case nor diacritics count: UTF-8.
    static QByteArray folded(const QString &text);

    /// For each take whether its keywords hold @p text, neither case nor diacritics counting. Without keywords: no.
    std::vector<bool> takesWithKeywords(const QString &text) const;

    /// Compares bytewise as people read the titles; empty for a take without one.
    std::string_view titleKey(size_t take) const;

private:
    void _addKeywords(const QString &keywords);

    std::vector<char> m_keywords;      ///< Folded, each closed by a byte that no UTF-8 holds.
    std::vector<size_t> m_keywordEnds; ///< Behind that byte.
    std::vector<char> m_titleKeys;
    std::vector<size_t> m_titleKeyEnds;
};

} // namespace qw
