#pragma once

/// \file
/// Turns a query text into postfix operations; the model's own.

#include <QString>
#include <QVector>

#include <quire/newsroom/model/Query.h>

namespace Newsroom {

/// Parses one query. For one parse.
class QueryParser
{
public:
    explicit QueryParser(const QString &text);

    Answer<Query> parse();

private:
    /// What waits for its operands, weakest last but for Open.
    enum Pending { Open, Or, And, Not };

    const QString m_text;
    Query m_query;
    QString m_words;
    int m_pos = 0;
    QVector<Pending> m_pending;
    bool m_operandExpected = true;

    bool splitScope();
    bool readScope(const QString &scope);
    bool parseWords();
    bool readNext();
    bool readWord();
    bool readPhrase(QString *phrase);
    bool closeParenthesis();
    bool openOperand();
    bool addBinary(Pending operation);
    void addTerm(const QString &field, QString word);
    void emitDownTo(Pending weakest);
    bool isWordEnd(int pos) const;
};

} // namespace Newsroom
