#pragma once

/// \file
/// The query language of searches.

#include <QString>
#include <QVector>

#include <quire/newsroom/model/Answer.h>

namespace Newsroom {

class Story;

/// A parsed search. A plain value.
///
/// The text is `{MaxFound=500 [SERVER]PATH}((WORDS))`. "MaxFound=N " and "[SERVER]" may be missing. PATH names a queue,
/// or a directory to search its own queues; with ".*" behind it, everything below; empty, the whole newsroom. In WORDS:
///  - words are found anywhere in a story's name, fields or text, ignoring letter case, in any script;
///  - words side by side must all be found; `OR` between them means either and binds weaker; `NOT` or `-` in front
///    excludes; parentheses group;
///  - "a phrase" stands as one word, blanks included;
///  - `word*` must begin a word of the story; `*` alone finds every story;
///  - `title:word`, `title:"a phrase"`, `title:wor*` look at one field only (`body` and `name` are fields, too);
///    `title:*` wants the field not to be empty.
class Query
{
public:
    Query() = default;

    /// Parses a search; BadSyntax when it is malformed (no scope, nothing to look for, a quote or parenthesis without
    /// its partner, an operator without operand).
    static Answer<Query> parse(const QString &text);

    /// The largest number of hits wanted; 0 means no limit.
    int maxFound() const { return m_maxFound; }
    /// The server named in brackets; empty when none was.
    const QString &server() const { return m_server; }
    /// The path to search without ".*"; empty or "." for the root.
    const QString &path() const { return m_path; }
    /// Whether everything below the path is searched.
    bool isSubtree() const { return m_subtree; }

    /// Whether the words fit the story. Any thread.
    bool matches(const Story &story) const;

private:
    /// The words as postfix operations, so that neither parsing nor matching needs recursion.
    struct Operation
    {
        enum Kind { Term, And, Or, Not };
        Kind kind = Term;
        QString field; ///< Empty: anywhere.
        QString word;
        bool prefix = false; ///< The word must stand at the beginning of a word.
    };

    int m_maxFound = 0;
    QString m_server;
    QString m_path;
    bool m_subtree = false;
    QVector<Operation> m_operations;

    friend class QueryParser;
};

} // namespace Newsroom
