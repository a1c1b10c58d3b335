#include "failing/PublicOperations.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QVector>

#include <algorithm>

namespace Failing {

namespace {

QString pattern(const char *literal)
{
    return QString::fromLatin1(literal);
}

QString contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Without comments, directives, literals and what only the analysis of locks reads.
QString bare(QString code)
{
    for (const char *noise : {R"(//[^\n]*)", R"(/\*.*?\*/)", R"(^#(?:[^\n]*\\\n)*[^\n]*$)", R"("[^"\n]*")",
                              R"(\b(?:QUIRE_(?!EXPORT)\w+|Q_DISABLE_COPY)(?:\((?:[^()]|\([^()]*\))*\))?)"}) {
        code.replace(QRegularExpression(pattern(noise), QRegularExpression::MultilineOption |
                                                            QRegularExpression::DotMatchesEverythingOption),
                     QString());
    }
    return code;
}

/// The names of parameters, from behind the bracket that opens their list, as "(first, second)": "&&name" of one that
/// is moved, "const name[]" of an array, its type's last word of one without a name. A "const" behind the list counts
/// as the last one.
QString parametersIn(const QString &declaration)
{
    QStringList parameters{QString()};
    int depth = 0; // of brackets in the list, as of templates and default values
    int end = 0;
    for (; end < declaration.size() && (depth > 0 || declaration.at(end) != QLatin1Char(')')); ++end) {
        const QChar letter = declaration.at(end);
        depth += QStringLiteral("(<{").contains(letter) ? 1 : 0;
        depth -= QStringLiteral(")>}").contains(letter) ? 1 : 0;
        if (letter == QLatin1Char(',') && depth == 0)
            parameters.append(QString());
        else
            parameters.last() += letter;
    }
    static const QRegularExpression array(pattern(R"(^\s*(const\s|).*\(&(\w+)\)\[\w+\]\s*$)"));
    static const QRegularExpression name(pattern(R"(((?:&&)?\w+)\W*(?:=.*)?$)"),
                                         QRegularExpression::DotMatchesEverythingOption);
    for (QString &parameter : parameters)
        parameter = parameter.contains(array) ? parameter.replace(array, pattern("\\1\\2[]"))
                                              : name.match(parameter).captured(1);
    if (declaration.mid(end).contains(QRegularExpression(pattern(R"(^\)\s*const\b)"))))
        parameters.append(QStringLiteral("const"));
    parameters.removeAll(QString());
    return QLatin1Char('(') + parameters.join(QLatin1String(", ")) + QLatin1Char(')');
}

/// Goes through declarations, with the scopes that are open.
class Reader
{
public:
    QStringList read(const QString &code)
    {
        for (const QChar letter : bare(code)) {
            if (letter == QLatin1Char('{')) {
                open();
            } else if (letter == QLatin1Char('}')) {
                close();
            } else if (letter == QLatin1Char(';')) {
                note();
                m_statement.clear();
            } else if (letter == QLatin1Char(':')) {
                m_statement += letter;
                takeAccess();
            } else {
                m_statement += letter;
            }
        }
        return names();
    }

private:
    struct Scope
    {
        enum Kind { Namespace, Class, Other } kind;
        QString className;
        bool isPublic;
        QString statement; ///< goes on behind it when it is neither
    };

    void open()
    {
        static const QRegularExpression type(
            pattern(R"((?:^|\s)(class|struct)\s+(QUIRE_EXPORT\s+)?(\w+)(?:\s+final)?\s*(?:$|:[^:]))"));
        const QRegularExpressionMatch match = type.match(m_statement);
        if (m_statement.contains(QRegularExpression(pattern(R"(^\s*namespace\b)")))) {
            m_scopes.append({Scope::Namespace, QString(), true, QString()});
        } else if (match.hasMatch() && isSeen()) {
            const bool exported = !match.captured(2).isEmpty();
            m_scopes.append({Scope::Class, exported ? match.captured(3) : QString(),
                             match.captured(1) == QLatin1String("struct"), QString()});
        } else {
            m_scopes.append({Scope::Other, QString(), false, m_statement});
        }
        m_statement.clear();
    }

    void close()
    {
        if (m_scopes.isEmpty())
            return;
        const Scope scope = m_scopes.takeLast();
        m_statement = scope.statement;
        if (scope.kind != Scope::Other || !m_statement.contains(QLatin1Char('(')))
            return;
        note(); // behind a function's body comes the next declaration
        m_statement.clear();
    }

    /// Whether what is declared here is for hosts.
    bool isSeen() const
    {
        return m_scopes.isEmpty() || (m_scopes.last().kind != Scope::Other && m_scopes.last().isPublic);
    }

    void takeAccess()
    {
        static const QRegularExpression label(pattern(R"(^\s*(public|protected|private):$)"));
        const QRegularExpressionMatch match = label.match(m_statement);
        if (!match.hasMatch() || m_scopes.isEmpty())
            return;
        m_scopes.last().isPublic = match.captured(1) == QLatin1String("public");
        m_statement.clear();
    }

    /// Notes what the statement declares, if that is a function.
    void note()
    {
        static const QRegularExpression function(pattern(R"((operator\s*[^\s\w(]+|~?\w+)\s*\()"));
        static const QRegularExpression none(pattern(R"(^\s*(?:friend|using|typedef|static_assert)\b|=\s*delete\s*$)"));
        const QRegularExpressionMatch match = function.match(m_statement);
        if (!isSeen() || !match.hasMatch() || m_statement.contains(none))
            return;
        const bool inClass = !m_scopes.isEmpty() && m_scopes.last().kind == Scope::Class;
        const QString parameters = parametersIn(m_statement.mid(match.capturedEnd()));
        if (!inClass && m_statement.contains(QLatin1String("QUIRE_EXPORT")))
            m_found.append({match.captured(1), parameters});
        else if (inClass && !m_scopes.last().className.isEmpty())
            m_found.append({m_scopes.last().className + QLatin1String("::") + match.captured(1), parameters});
    }

    /// The names of what was found; those of overloads with their parameters.
    QStringList names() const
    {
        QStringList all;
        QHash<QString, int> times;
        for (const Declared &one : m_found) {
            const auto shares = [&one](const Declared &other) { return other.name == one.name; };
            const bool isOverloaded = std::count_if(m_found.begin(), m_found.end(), shares) > 1;
            const QString name = isOverloaded ? one.name + one.parameters : one.name;
            const int same = ++times[name]; // the types differ then
            all.append(same == 1 ? name : name + QStringLiteral(" %1").arg(same));
        }
        all.sort();
        return all;
    }

    struct Declared
    {
        QString name;
        QString parameters; ///< "(first, second)"
    };

    QString m_statement;
    QVector<Scope> m_scopes;
    QVector<Declared> m_found;
};

} // namespace

QStringList operationsIn(const QString &declarations)
{
    return Reader().read(declarations);
}

QStringList publicOperations()
{
    const QString folder = QStringLiteral(QUIRE_SOURCES "/");
    QStringList all;
    static const QRegularExpression include(pattern(R"(#include <quire/([^>]*)>)"));
    QRegularExpressionMatchIterator headers = include.globalMatch(contents(folder + QLatin1String("Quire.h")));
    while (headers.hasNext())
        all += operationsIn(contents(folder + headers.next().captured(1)));
    all.sort();
    return all;
}

} // namespace Failing
