#pragma once

#include <QString>

#include <vector>

struct UCollator;

namespace qw
{

/// Makes keys of texts that compare bytewise as people of the user's language read the texts: "Take 2" is before
/// "Take 10". One thread.
class TitleCollator
{
public:
    TitleCollator();
    ~TitleCollator();
    TitleCollator(const TitleCollator &) = delete;
    TitleCollator &operator=(const TitleCollator &) = delete;

    /// Appends the key of @p text, which is never empty.
    void appendKey(const QString &text, std::vector<char> &keys);

private:
    UCollator *m_collator; ///< Null where there is none: keys are then the texts.
};

} // namespace qw
