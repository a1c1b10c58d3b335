#include <quire/newsroom/model/Query.h>

#include "QueryParser.h"
#include <quire/newsroom/model/Story.h>

namespace Newsroom {

namespace {

bool beginsWord(const QString &text, int at)
{
    return at == 0 || !text.at(at - 1).isLetterOrNumber();
}

bool contains(const QString &text, const QString &word, bool prefix)
{
    int at = text.indexOf(word, 0, Qt::CaseInsensitive);
    while (prefix && at >= 0 && !beginsWord(text, at))
        at = text.indexOf(word, at + 1, Qt::CaseInsensitive);
    return at >= 0;
}

/// One story while its words are looked up: its body is made plain text at most once.
class Candidate
{
public:
    explicit Candidate(const Story &story)
        : m_story(story)
    {}

    bool has(const QString &word, bool prefix)
    {
        if (word.isEmpty() || contains(m_story.name(), word, prefix))
            return true;
        for (const StoryField &field : m_story.text().fields) {
            if (contains(field.value, word, prefix))
                return true;
        }
        return contains(body(), word, prefix);
    }

    bool fieldHas(const QString &field, const QString &word, bool prefix)
    {
        const QString value = fieldValue(field);
        return word.isEmpty() ? !value.isEmpty() : contains(value, word, prefix);
    }

private:
    const Story &m_story;
    QString m_body;
    bool m_hasBody = false;

    const QString &body()
    {
        if (!m_hasBody)
            m_body = m_story.text().plainBody();
        m_hasBody = true;
        return m_body;
    }

    QString fieldValue(const QString &field)
    {
        if (const StoryField *found = m_story.text().field(field))
            return found->value;
        if (field.compare(QLatin1String("body"), Qt::CaseInsensitive) == 0)
            return body();
        return field.compare(QLatin1String("name"), Qt::CaseInsensitive) == 0 ? m_story.name() : QString();
    }
};

} // namespace

Answer<Query> Query::parse(const QString &text)
{
    return QueryParser(text).parse();
}

bool Query::matches(const Story &story) const
{
    Candidate candidate(story);
    QVector<bool> stack;
    for (const Operation &operation : m_operations) {
        if (operation.kind == Operation::Term) {
            stack.append(operation.field.isEmpty()
                             ? candidate.has(operation.word, operation.prefix)
                             : candidate.fieldHas(operation.field, operation.word, operation.prefix));
        } else if (operation.kind == Operation::Not) {
            stack.last() = !stack.last();
        } else {
            const bool right = stack.takeLast();
            stack.last() = operation.kind == Operation::And ? stack.last() && right : stack.last() || right;
        }
    }
    return !stack.isEmpty() && stack.last();
}

} // namespace Newsroom
