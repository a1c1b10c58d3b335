#include "shell/Completion.h"

#include <algorithm>

namespace Tool {

namespace {

using Files = Completion::Files;

Files filesFor(const ArgumentText &argument)
{
    if (argument.value == QLatin1String("FILE"))
        return Files::Any;
    const bool folder = argument.value == QLatin1String("DIR") || argument.value == QLatin1String("SRC");
    return folder ? Files::Directories : Files::None;
}

/// Follows the typed words to the verb and argument that comes next.
class Position
{
public:
    explicit Position(const VerbText &program)
        : m_program(program)
        , m_verb(&program)
    {}

    void pass(const QString &word)
    {
        if (m_pending) {
            m_pending = nullptr;
        } else if (!m_onlyArguments && word == QLatin1String("--")) {
            m_onlyArguments = true;
        } else if (!m_onlyArguments && word.startsWith(QLatin1Char('-'))) {
            const ArgumentText *option = findOption(word);
            m_pending = option && option->takesValue ? option : nullptr;
        } else if (const VerbText *next = m_onlyArguments ? nullptr : m_verb->find(word)) {
            m_verb = next;
            m_arguments = 0;
        } else {
            ++m_arguments;
        }
    }

    /// The option whose value comes next.
    const ArgumentText *pending() const { return m_pending; }
    bool onlyArguments() const { return m_onlyArguments; }
    const VerbText &verb() const { return *m_verb; }

    /// The positional argument that comes next; null when there is none left.
    const ArgumentText *argument() const
    {
        const std::vector<ArgumentText> &all = m_verb->positionals;
        if (m_arguments < all.size())
            return &all[m_arguments];
        return !all.empty() && all.back().repeated ? &all.back() : nullptr;
    }

    /// The option called \a name, of the verb or of the whole command line; null when there is none.
    const ArgumentText *findOption(const QString &name) const
    {
        for (const VerbText *verb : {m_verb, &m_program}) {
            for (const ArgumentText &option : verb->options) {
                if (option.names.contains(name))
                    return &option;
            }
        }
        return nullptr;
    }

    /// The verb's options and those of the whole command line. A verb repeats --help; the first will do.
    std::vector<const ArgumentText *> options() const
    {
        std::vector<const ArgumentText *> result;
        for (const VerbText *verb : {m_verb, &m_program}) {
            for (const ArgumentText &option : verb->options) {
                const bool known = std::any_of(result.begin(), result.end(), [&option](const ArgumentText *each) {
                    return each->names == option.names;
                });
                if (!known)
                    result.push_back(&option);
            }
        }
        return result;
    }

private:
    const VerbText &m_program;
    const VerbText *m_verb;
    std::size_t m_arguments = 0;
    const ArgumentText *m_pending = nullptr;
    bool m_onlyArguments = false;
};

/// Gathers what begins as the last word does.
class Candidates
{
public:
    explicit Candidates(const QString &begun)
        : m_begun(begun)
    {}

    void add(const QString &text, const QString &description)
    {
        if (text.startsWith(m_begun))
            m_found.words.push_back({text, description});
    }

    /// The values of an argument; each stands behind \a lead, the "--option=" of the word.
    void addValues(const ArgumentText &argument, const QString &lead)
    {
        for (const QString &choice : argument.choices)
            add(lead + choice, QString());
        // A shell completes file names as whole words only.
        if (lead.isEmpty())
            m_found.files = filesFor(argument);
    }

    void addVerbs(const VerbText &family)
    {
        for (const VerbText &verb : family.verbs)
            add(verb.name, verb.description);
    }

    void addOptions(const Position &position)
    {
        for (const ArgumentText *option : position.options()) {
            for (const QString &name : option->names)
                add(name, option->description);
        }
    }

    Completion take() { return std::move(m_found); }

private:
    const QString m_begun;
    Completion m_found;
};

} // namespace

Completion complete(const VerbText &program, const QStringList &typed)
{
    Position position(program);
    for (const QString &word : typed.mid(0, typed.size() - 1))
        position.pass(word);
    const QString last = typed.isEmpty() ? QString() : typed.last();

    Candidates candidates(last);
    if (position.pending()) {
        candidates.addValues(*position.pending(), QString());
        return candidates.take();
    }
    if (last.startsWith(QLatin1Char('-')) && !position.onlyArguments()) {
        const QString name = last.section(QLatin1Char('='), 0, 0);
        const ArgumentText *option = last.contains(QLatin1Char('=')) ? position.findOption(name) : nullptr;
        if (option)
            candidates.addValues(*option, name + QLatin1Char('='));
        else
            candidates.addOptions(position);
        return candidates.take();
    }
    if (!position.onlyArguments())
        candidates.addVerbs(position.verb());
    if (const ArgumentText *argument = position.argument())
        candidates.addValues(*argument, QString());
    else if (last.isEmpty() && position.verb().verbs.empty())
        candidates.addOptions(position);
    return candidates.take();
}

} // namespace Tool
