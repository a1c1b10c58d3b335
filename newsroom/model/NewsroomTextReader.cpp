#include "NewsroomTextReader.h"

#include "StoryReader.h"

namespace Newsroom {

namespace {

bool isComment(const QString &line)
{
    return line.trimmed().startsWith(QLatin1Char('#'));
}

bool hasValue(const NameValue &word)
{
    return !word.value.isNull();
}

} // namespace

NewsroomTextReader::NewsroomTextReader(Model *model, const QString &path, const QString &text)
    : m_model(model)
    , m_lines(StoryReader::lines(text))
    , m_levels{{-1, path, 0}}
{}

bool NewsroomTextReader::fail(const QString &what)
{
    m_error = QStringLiteral("line %1: %2").arg(m_line).arg(what);
    return false;
}

bool NewsroomTextReader::refused(Refusal refusal, const QString &what)
{
    return refusal == Refusal::None || fail(what + QLatin1String(": ") + description(refusal));
}

bool NewsroomTextReader::read()
{
    while (m_line < m_lines.size()) {
        const QString &line = m_lines.at(m_line++);
        if (!isBlank(line) && !isComment(line) && !readLine(line))
            return false;
    }
    return true;
}

bool NewsroomTextReader::readLine(const QString &line)
{
    QVector<NameValue> words;
    if (!split(line, &words))
        return false;
    const int indent = indentOf(line);
    while (m_levels.last().indent >= indent)
        m_levels.removeLast();
    const QString kind = words.takeFirst().name;
    if (words.isEmpty() && kind != QLatin1String("story"))
        return fail(QStringLiteral("\"%1\" needs a name").arg(kind));
    if (kind == QLatin1String("directory"))
        return readDirectory(indent, words);
    if (kind == QLatin1String("queue"))
        return readQueue(indent, words);
    if (kind == QLatin1String("story"))
        return readStory(indent, words);
    if (kind == QLatin1String("form"))
        return readForm(indent, words);
    if (kind == QLatin1String("blob"))
        return readBlob(indent, words);
    if (kind == QLatin1String("user"))
        return readUser(words);
    if (kind == QLatin1String("server"))
        return readServer(words);
    return fail(QStringLiteral("\"%1\" is not known here").arg(kind));
}

bool NewsroomTextReader::readServer(const QVector<NameValue> &words)
{
    SystemValues values = m_model->system();
    values.serverName = words.first().name;
    for (const NameValue &word : words.mid(1)) {
        bool known = true;
        if (word.name == QLatin1String("alias"))
            values.aliases.append(word.value);
        else if (word.name == QLatin1String("read-rate"))
            known = toNumber(word, &values.readRate);
        else if (word.name == QLatin1String("word-length"))
            known = toNumber(word, &values.wordLength);
        else if (word.name == QLatin1String("session-limit"))
            known = toNumber(word, &values.sessionLimit);
        else if (word.name == QLatin1String("offline"))
            values.offline = true;
        else
            known = fail(QStringLiteral("\"%1\" is no word for a server").arg(word.name));
        if (!known)
            return false;
    }
    m_model->setSystem(values);
    return true;
}

bool NewsroomTextReader::readUser(const QVector<NameValue> &words)
{
    User user;
    user.name = words.first().name;
    for (const NameValue &word : words.mid(1)) {
        bool known = true;
        if (word.name == QLatin1String("password"))
            user.password = word.value;
        else if (word.name == QLatin1String("full"))
            user.fullName = word.value;
        else if (word.name == QLatin1String("mail"))
            user.mailQueue = word.value;
        else if (word.name == QLatin1String("device"))
            user.device = word.value;
        else if (word.name == QLatin1String("number"))
            known = toNumber(word, &user.number);
        else if (word.name == QLatin1String("rights"))
            known = toNumber(word, &user.rights);
        else if (word.name == QLatin1String("read-only"))
            user.mayWrite = false;
        else if (word.name == QLatin1String("superuser"))
            user.superuser = true;
        else
            known = fail(QStringLiteral("\"%1\" is no word for a user").arg(word.name));
        if (!known)
            return false;
    }
    return refused(m_model->setUser(user), user.name);
}

bool NewsroomTextReader::readForm(int indent, const QVector<NameValue> &words)
{
    const QString name = words.first().name;
    return refused(m_model->setForm({name, takeBlock(indent).join(QLatin1Char('\n'))}), name);
}

bool NewsroomTextReader::readBlob(int indent, const QVector<NameValue> &words)
{
    m_model->setBlob(words.first().name, takeBlock(indent).join(QLatin1Char('\n')).toUtf8());
    return true;
}

bool NewsroomTextReader::readDirectory(int indent, const QVector<NameValue> &words)
{
    const QString path = childPath(m_levels.last().path, words.first().name);
    Flags flags;
    for (const NameValue &word : words.mid(1)) {
        if (!flags.set(word.name))
            return fail(QStringLiteral("\"%1\" is no flag").arg(word.name));
    }
    if (m_levels.last().queueNumber != 0)
        return fail(QStringLiteral("a queue has no directories"));
    m_levels.append({indent, path, 0});
    return refused(m_model->addDirectory(path, flags), path);
}

bool NewsroomTextReader::readQueue(int indent, const QVector<NameValue> &words)
{
    const QString path = childPath(m_levels.last().path, words.first().name);
    QueueSettings settings;
    for (const NameValue &word : words.mid(1)) {
        bool known = true;
        if (word.name == QLatin1String("form"))
            settings.formName = word.value;
        else if (word.name == QLatin1String("number"))
            known = toNumber(word, &settings.number);
        else if (word.name == QLatin1String("read-only"))
            settings.readOnly = true;
        else if (word.name == QLatin1String("purge-locked"))
            settings.purgeLocked = true;
        else
            known = settings.flags.set(word.name) || fail(QStringLiteral("\"%1\" is no flag").arg(word.name));
        if (!known)
            return false;
    }
    if (m_levels.last().queueNumber != 0)
        return fail(QStringLiteral("a queue has no queues"));
    const Answer<qint32> number = m_model->addQueue(path, settings);
    m_levels.append({indent, path, number.value});
    return refused(number.refusal, path);
}

bool NewsroomTextReader::readStory(int indent, const QVector<NameValue> &words)
{
    Model::NewStory story;
    story.queueNumber = m_levels.last().queueNumber;
    if (story.queueNumber == 0)
        return fail(QStringLiteral("a story stands in a queue, indented below it"));
    QString lockedBy;
    qint32 lockType = 1;
    for (const NameValue &word : words) {
        bool known = true;
        if (word.name == QLatin1String("id")) {
            known = StoryId::fromUnique(word.value, &story.id) || toNumber(word, &story.id.part1);
            if (known && !word.value.contains(QLatin1Char(':')))
                story.id.part2 = story.queueNumber;
        } else if (word.name == QLatin1String("revision")) {
            known = toNumber(word, &story.revision);
        } else if (word.name == QLatin1String("form")) {
            story.formName = word.value;
        } else if (word.name == QLatin1String("locked-by")) {
            lockedBy = word.value;
        } else if (word.name == QLatin1String("lock-type")) {
            known = toNumber(word, &lockType);
        } else if (!Zeko::isName(word.name)) {
            known = fail(QStringLiteral("\"%1\" can be no attribute's name").arg(word.name));
        } else if (hasValue(word)) {
            story.text.setMeta(word.name, word.value);
        } else {
            known = fail(QStringLiteral("\"%1\" needs a value").arg(word.name));
        }
        if (!known)
            return false;
    }
    const int start = m_line;
    const QStringList lines = takeBlock(indent);
    int i = 0;
    for (; i < lines.size() && !isBlank(lines.at(i)); ++i) {
        m_line = start + i + 1;
        if (!readField(lines.at(i), &story.text))
            return false;
    }
    m_line = start + lines.size();
    if (!readBody(lines.mid(i), &story.text))
        return false;
    if (story.text.metaValue(QStringLiteral("words")).isEmpty())
        story.text.setMeta(QStringLiteral("words"), QString::number(story.text.wordCount()));
    return addStory(story, lockedBy, lockType);
}

bool NewsroomTextReader::addStory(const Model::NewStory &story, const QString &lockedBy, qint32 lockType)
{
    const Answer<StoryPointer> added = m_model->addStory(story);
    if (!added)
        return refused(added.refusal, QStringLiteral("story"));
    if (!lockedBy.isEmpty())
        m_model->lockElsewhere(added.value->id().part1, lockedBy, lockType);
    return true;
}

/// "id: value" or "id[name=value name=value]: value".
bool NewsroomTextReader::readField(const QString &line, StoryText *text)
{
    const int bracket = line.indexOf(QLatin1Char('['));
    int colon = line.indexOf(QLatin1Char(':'));
    QString id = line.left(colon);
    QVector<NameValue> attributes;
    if (bracket > 0 && bracket < colon) {
        const int close = line.indexOf(QLatin1Char(']'), bracket);
        colon = line.indexOf(QLatin1Char(':'), qMax(close, 0));
        if (close < 0 || !split(line.mid(bracket + 1, close - bracket - 1), &attributes))
            return fail(QStringLiteral("the attributes of a field have no end"));
        id = line.left(bracket);
    }
    if (colon <= 0 || id.trimmed().isEmpty())
        return fail(QStringLiteral("\"%1\" is no field; an empty line comes before the text").arg(line));
    for (const NameValue &attribute : qAsConst(attributes)) {
        if (!Zeko::isName(attribute.name))
            return fail(QStringLiteral("\"%1\" can be no attribute's name").arg(attribute.name));
    }
    if (text->field(id.trimmed()) != nullptr)
        return fail(QStringLiteral("the field \"%1\" stands twice").arg(id));
    text->fields.append({id.trimmed(), line.mid(colon + 1).trimmed(), attributes});
    return true;
}

bool NewsroomTextReader::readBody(const QStringList &lines, StoryText *text)
{
    QString paragraph;
    for (int i = 0; i <= lines.size(); ++i) {
        const QString line = i < lines.size() ? lines.at(i).trimmed() : QString();
        if (!line.isEmpty()) {
            paragraph += paragraph.isEmpty() ? line : QLatin1Char(' ') + line;
            continue;
        }
        if (paragraph.startsWith(QLatin1Char('<')))
            text->body += paragraph;
        else if (!paragraph.isEmpty())
            text->body += QLatin1String("<p>") + Zeko::escapeText(paragraph) + QLatin1String("</p>");
        paragraph.clear();
    }
    return Zeko::isWellFormed(text->body) || fail(QStringLiteral("the markup of the body is not well-formed"));
}

/// The lines that are further indented than \a indent, and the empty ones between them, without the indentation of the
/// first.
QStringList NewsroomTextReader::takeBlock(int indent)
{
    QStringList block;
    int width = -1;
    int end = m_line;
    for (int i = m_line; i < m_lines.size(); ++i) {
        const QString &line = m_lines.at(i);
        if (!isBlank(line) && indentOf(line) <= indent)
            break;
        if (!isBlank(line)) {
            if (width < 0)
                width = indentOf(line);
            end = i + 1;
        }
        block.append(isBlank(line) ? QString() : line.mid(qMin(width, indentOf(line))));
    }
    block = block.mid(0, end - m_line);
    m_line = end;
    return block;
}

int NewsroomTextReader::indentOf(const QString &line)
{
    int indent = 0;
    while (indent < line.size() && line.at(indent) == QLatin1Char(' '))
        ++indent;
    return indent;
}

/// Words and name=value pairs; double quotes keep blanks together. A word without "=" has a null value.
bool NewsroomTextReader::split(const QString &line, QVector<NameValue> *words)
{
    int pos = 0;
    for (;;) {
        while (pos < line.size() && line.at(pos).isSpace())
            ++pos;
        if (pos >= line.size())
            return true;
        NameValue word;
        QString *part = &word.name;
        bool quoted = false;
        for (; pos < line.size() && (quoted || !line.at(pos).isSpace()); ++pos) {
            const QChar c = line.at(pos);
            if (c == QLatin1Char('"')) {
                quoted = !quoted;
            } else if (c == QLatin1Char('=') && !quoted && part == &word.name) {
                part = &word.value;
                word.value = QLatin1String("");
            } else {
                part->append(c);
            }
        }
        if (quoted)
            return fail(QStringLiteral("a quote has no end"));
        words->append(word);
    }
}

bool NewsroomTextReader::toNumber(const NameValue &word, qint32 *number)
{
    bool ok = false;
    *number = word.value.toInt(&ok);
    return ok || fail(QStringLiteral("\"%1\" is no number").arg(word.value));
}

} // namespace Newsroom
