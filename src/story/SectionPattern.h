#pragma once

/// \file
/// Finds an element in a text by plain search. Not part of the public surface.

#include <QString>
#include <QStringView>

namespace Quire {

/// What to look for to find the element of one name: made once, used for many texts. Any thread.
class SectionPattern
{
public:
    explicit SectionPattern(const QString &tag);

    /// See Story::GetTextSectionPos.
    bool find(QStringView text, int *start, int *end) const;
    /// The same, with the result in \a prefixed. Whether the element is there whole: an end tag, which is behind its
    /// start.
    bool findWhole(QStringView text, int *start, int *end, bool *prefixed) const;
    /// The element as a text of its own, see Story::ExtractTextSection.
    QString extract(QStringView text) const;

private:
    struct Tags
    {
        QString opening; // without its end, so that it finds a tag with attributes
        QString closing;
    };

    const Tags &locate(QStringView text, int *start, int *end) const;

    const Tags m_plain;
    const Tags m_prefixed;
};

} // namespace Quire
