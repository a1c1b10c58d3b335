#pragma once

#include <map>
#include <ostream>
#include <tuple>

#include <QString>

/// A text as a translator finds it: where it stands, what it says in English, and the comment that tells apart.
struct SourceText
{
    QString context;
    QString text;
    QString comment;

    bool operator<(const SourceText &other) const
    {
        return std::tie(context, text, comment) < std::tie(other.context, other.text, other.comment);
    }
    bool operator==(const SourceText &other) const
    {
        return std::tie(context, text, comment) == std::tie(other.context, other.text, other.comment);
    }
};

void PrintTo(const SourceText &text, std::ostream *out);

/// What a translator made of it.
struct TranslatedText
{
    QString text;
    bool finished = false;
};

/// All of an i18n/quire_LANGUAGE.ts.
using TranslationFile = std::map<SourceText, TranslatedText>;

/// Reads it; a file that cannot be read, or a text that stands in it twice, fails the running test.
TranslationFile readTranslationFile(const QString &name);
