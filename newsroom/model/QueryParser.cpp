#include "QueryParser.h"

namespace Newsroom {

namespace {

bool isFieldName(const QString &text)
{
    if (text.isEmpty() || !text.front().isLetter())
        return false;
    for (const QChar c : text) {
        if (!c.isLetterOrNumber() && c != QLatin1Char('-') && c != QLatin1Char('_'))
            return false;
    }
    return true;
}

} // namespace

QueryParser::QueryParser(const QString &text)
    : m_text(text)
{}

Answer<Query> QueryParser::parse()
{
    if (!splitScope() || !parseWords())
        return Refusal::BadSyntax;
    return m_query;
}

/// "{SCOPE}((WORDS))".
bool QueryParser::splitScope()
{
    const int close = m_text.indexOf(QLatin1String("}(("));
    if (!m_text.startsWith(QLatin1Char('{')) || close < 0 || !m_text.endsWith(QLatin1String("))")) ||
        m_text.size() < close + 5)
        return false;
    m_words = m_text.mid(close + 3, m_text.size() - close - 5);
    return readScope(m_text.mid(1, close - 1));
}

/// "MaxFound=N [SERVER]PATH", the first two of which may be missing.
bool QueryParser::readScope(const QString &scope)
{
    QString rest = scope;
    const QLatin1String maxFound("MaxFound=");
    if (rest.startsWith(maxFound, Qt::CaseInsensitive)) {
        const int blank = rest.indexOf(QLatin1Char(' '));
        bool ok = false;
        m_query.m_maxFound = rest.mid(maxFound.size(), blank < 0 ? -1 : blank - maxFound.size()).toInt(&ok);
        if (!ok || m_query.m_maxFound < 0)
            return false;
        rest = blank < 0 ? QString() : rest.mid(blank + 1);
    }
    if (rest.startsWith(QLatin1Char('['))) {
        const int close = rest.indexOf(QLatin1Char(']'));
        if (close < 0)
            return false;
        m_query.m_server = rest.mid(1, close - 1);
        rest = rest.mid(close + 1);
    }
    m_query.m_subtree = rest.isEmpty() || rest.endsWith(QLatin1String(".*"));
    m_query.m_path = rest.endsWith(QLatin1String(".*")) ? rest.left(rest.size() - 2) : rest;
    return true;
}

bool QueryParser::parseWords()
{
    for (;;) {
        while (m_pos < m_words.size() && m_words.at(m_pos).isSpace())
            ++m_pos;
        if (m_pos >= m_words.size())
            break;
        if (!readNext())
            return false;
    }
    if (m_operandExpected)
        return false;
    emitDownTo(Or);
    return m_pending.isEmpty();
}

bool QueryParser::readNext()
{
    const QChar c = m_words.at(m_pos);
    if (c == QLatin1Char('(')) {
        ++m_pos;
        openOperand();
        m_pending.append(Open);
        return true;
    }
    if (c == QLatin1Char(')')) {
        ++m_pos;
        return closeParenthesis();
    }
    if (c == QLatin1Char('-') && !isWordEnd(m_pos + 1)) {
        ++m_pos;
        openOperand();
        m_pending.append(Not);
        return true;
    }
    if (c == QLatin1Char('"')) {
        QString phrase;
        openOperand();
        if (!readPhrase(&phrase))
            return false;
        addTerm(QString(), phrase);
        return true;
    }
    return readWord();
}

bool QueryParser::isWordEnd(int pos) const
{
    return pos >= m_words.size() || m_words.at(pos).isSpace() || m_words.at(pos) == QLatin1Char(')');
}

bool QueryParser::readWord()
{
    const int start = m_pos;
    while (!isWordEnd(m_pos) && m_words.at(m_pos) != QLatin1Char('"') && m_words.at(m_pos) != QLatin1Char('('))
        ++m_pos;
    const QString word = m_words.mid(start, m_pos - start);
    if (word == QLatin1String("OR"))
        return addBinary(Or);
    if (word == QLatin1String("AND"))
        return addBinary(And);
    openOperand();
    if (word == QLatin1String("NOT")) {
        m_pending.append(Not);
        return true;
    }
    const int colon = word.indexOf(QLatin1Char(':'));
    if (colon < 0 || !isFieldName(word.left(colon))) {
        addTerm(QString(), word);
        return true;
    }
    QString value = word.mid(colon + 1);
    if (value.isEmpty() && (m_pos >= m_words.size() || m_words.at(m_pos) != QLatin1Char('"') || !readPhrase(&value)))
        return false;
    addTerm(word.left(colon), value);
    return true;
}

/// Reads `"..."`, and a "*" right behind it.
bool QueryParser::readPhrase(QString *phrase)
{
    const int close = m_words.indexOf(QLatin1Char('"'), m_pos + 1);
    if (close < 0)
        return false;
    *phrase = m_words.mid(m_pos + 1, close - m_pos - 1);
    m_pos = close + 1;
    if (m_pos < m_words.size() && m_words.at(m_pos) == QLatin1Char('*')) {
        phrase->append(QLatin1Char('*'));
        ++m_pos;
    }
    return !phrase->isEmpty();
}

bool QueryParser::closeParenthesis()
{
    if (m_operandExpected)
        return false;
    emitDownTo(Or);
    if (m_pending.isEmpty())
        return false;
    m_pending.removeLast();
    return true;
}

/// An operand starts: behind another one, both are wanted.
bool QueryParser::openOperand()
{
    return m_operandExpected || addBinary(And);
}

bool QueryParser::addBinary(Pending operation)
{
    if (m_operandExpected)
        return false;
    emitDownTo(operation);
    m_pending.append(operation);
    m_operandExpected = true;
    return true;
}

void QueryParser::addTerm(const QString &field, QString word)
{
    Query::Operation term;
    term.field = field;
    if (word.endsWith(QLatin1Char('*'))) {
        word.chop(1);
        term.prefix = true;
    }
    term.word = word;
    m_query.m_operations.append(term);
    m_operandExpected = false;
}

/// Writes the pending operations that bind at least as strongly as \a weakest, down to the last open parenthesis.
void QueryParser::emitDownTo(Pending weakest)
{
    while (!m_pending.isEmpty() && m_pending.last() != Open && m_pending.last() >= weakest) {
        Query::Operation operation;
        const Pending pending = m_pending.takeLast();
        operation.kind = pending == Or    ? Query::Operation::Or
                         : pending == And ? Query::Operation::And
                                          : Query::Operation::Not;
        m_query.m_operations.append(operation);
    }
}

} // namespace Newsroom
