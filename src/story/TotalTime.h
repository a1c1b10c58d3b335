#pragma once

/// \file
/// The running time of a story. Not part of the public surface.

#include <QString>

#include <quire/tree/Attribute.h>

namespace Quire {

/// Computes a story's total time from its parts when the story does not state one. For one story's fields.
class TotalTime
{
public:
    /// Identifier of the field that holds the total.
    static QString fieldName();

    /// Looks at one field, as it is shown.
    void note(const Attribute &field);

    /// The sum of audio and tape time as "minutes:seconds", minutes not bounded; empty when the story states its total
    /// or neither part.
    QString computed() const;

private:
    QString m_total;
    QString m_audio;
    QString m_tape;
};

} // namespace Quire
